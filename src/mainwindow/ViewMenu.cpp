#include "mainwindow/ViewMenu.h"

#include "mainwindow/MenuItems.h"

#include <algorithm>
#include <functional>

namespace
{

// A check item whose handler does the toggling itself, as a direct call would.
void onToggle(QAction *action, std::function<void()> handler)
{
    QObject::connect(action, &QAction::triggered, action, [action, handler] {
        action->setChecked(!action->isChecked());
        handler();
    });
}

QAction *checkItem(QMenu *menu, const QString &name, const QString &caption,
                   const QKeySequence &shortcut = {})
{
    QAction *action = addMenuItem(menu, name, caption, shortcut);
    action->setCheckable(true);
    return action;
}

} // namespace

ViewMenu::ViewMenu(QMenu *view) : QObject(view), view_(view)
{
    connect(addMenuItem(view, QStringLiteral("allevents"), QStringLiteral("All Events")),
            &QAction::triggered, this, &ViewMenu::allevents_Click);
    connect(addMenuItem(view, QStringLiteral("None"), QStringLiteral("None"),
                        QKeySequence(Qt::CTRL | Qt::Key_N)),
            &QAction::triggered, this, &ViewMenu::None_Click);
    QMenu *rec = view->addMenu(QStringLiteral("Recurrence"));
    rec->setObjectName(QStringLiteral("rec"));
    connect(addMenuItem(rec, QStringLiteral("Daily"), QStringLiteral("Daily"),
                        QKeySequence(Qt::CTRL | Qt::Key_D)),
            &QAction::triggered, this, &ViewMenu::dailyRequested);
    weekly_ = checkItem(rec, QStringLiteral("weekly"), QStringLiteral("Weekly"),
                        QKeySequence(Qt::CTRL | Qt::Key_W));
    mon_ = checkItem(rec, QStringLiteral("mon"), QStringLiteral("Monthly"),
                     QKeySequence(Qt::CTRL | Qt::Key_M));
    yearly_ = checkItem(rec, QStringLiteral("yearly"), QStringLiteral("Yearly"),
                        QKeySequence(Qt::CTRL | Qt::Key_Y));
    onToggle(weekly_, [this] { weekly_Click(); });
    onToggle(mon_, [this] { mon_Click(); });
    onToggle(yearly_, [this] { yearly_Click(); });
    QAction *first = checkItem(view, QStringLiteral("v1_1"), QString());
    first->setVisible(false);
    v1_ = {nullptr, first};
}

void ViewMenu::load(const QStringList &names)
{
    names_ = names;
    const int items = std::min(lastCategory(), kLastItem);
    while (v1_.size() > items + 1)
        delete v1_.takeLast();
    const bool checked = v1_[1]->isChecked();
    for (int i = 2; i <= items; ++i) {
        if (i == v1_.size()) {
            QAction *item = checkItem(view_, QStringLiteral("v1_%1").arg(i), QString());
            onToggle(item, [this, i] { v1_Click(i); });
            v1_.append(item);
        }
        v1_[i]->setText(menuText(names_[i]));
        v1_[i]->setChecked(checked);
    }
}

QAction *ViewMenu::item(int index) const
{
    return v1_[index > kLastItem ? 1 : index];
}

bool ViewMenu::categoryShown(int index) const
{
    return item(index)->isChecked();
}

// The hidden item has no caption: its number paints the events of no category.
QString ViewMenu::categoryCaption(int index) const
{
    return index == 1 ? QString() : names_.value(index);
}

void ViewMenu::showCategory(int index)
{
    item(index)->setChecked(true);
}

QAction *ViewMenu::kindItem(Kind kind) const
{
    switch (kind) {
    case Kind::Weekly:
        return weekly_;
    case Kind::Monthly:
        return mon_;
    case Kind::Yearly:
        break;
    }
    return yearly_;
}

bool ViewMenu::kindShown(Kind kind) const
{
    return kindItem(kind)->isChecked();
}

void ViewMenu::showKind(Kind kind)
{
    kindItem(kind)->setChecked(true);
}

void ViewMenu::allevents_Click()
{
    for (QAction *item : v1_.mid(1))
        item->setChecked(true);
    emit repaintRequested();
}

void ViewMenu::None_Click()
{
    for (QAction *item : v1_.mid(1))
        item->setChecked(false);
    for (QAction *item : {weekly_, mon_, yearly_})
        item->setChecked(false);
    emit repaintRequested();
}

void ViewMenu::v1_Click(int index)
{
    QAction *item = v1_.value(index);
    item->setChecked(!item->isChecked());
    emit repaintRequested();
}

void ViewMenu::weekly_Click()
{
    weekly_->setChecked(!weekly_->isChecked());
    emit repaintRequested();
}

void ViewMenu::yearly_Click()
{
    yearly_->setChecked(!yearly_->isChecked());
    emit repaintRequested();
}

void ViewMenu::mon_Click()
{
    if (mon_->isChecked()) {
        mon_->setChecked(false);
        emit repaintRequested();
        return;
    }
    emit monthlyRequested();
}
