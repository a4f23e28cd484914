#include "dialogs/frmDaily.h"

#include "dialogs/ZOrder.h"

#include <QEvent>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{

constexpr int kNumberRole = Qt::UserRole;

QString listText(const QString &memo)
{
    const QString shown = store::isAction(memo) ? store::actionPath(memo) : memo;
    return shown.left(30) + QStringLiteral("...");
}

} // namespace

frmDaily::frmDaily(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDaily"));
    setWindowTitle(QStringLiteral("Daily Events"));
    ListView1 = new QTreeWidget(this);
    ListView1->setObjectName(QStringLiteral("ListView1"));
    ListView1->setToolTip(QStringLiteral("Click the event to modify it."));
    ListView1->setAccessibleName(QStringLiteral("Daily events"));
    ListView1->setRootIsDecorated(false);
    ListView1->setUniformRowHeights(true);
    ListView1->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ListView1);
    resize(420, 300);
    connect(ListView1, &QTreeWidget::itemClicked, this, &frmDaily::ListView1_ItemClick);
    // Enter on an event opens it as a click does.
    connect(ListView1, &QTreeWidget::itemActivated, this, &frmDaily::ListView1_ItemClick);
    Form_Load();
}

void frmDaily::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

bool frmDaily::eventFilter(QObject *watched, QEvent *event)
{
    // The time takes three tenths of the list, the memo the rest.
    if (watched == ListView1 && event->type() == QEvent::Resize)
        ListView1->setColumnWidth(0, ListView1->contentsRect().width() * 3 / 10);
    return QDialog::eventFilter(watched, event);
}

void frmDaily::Form_Load()
{
    ListView1->clear();
    ListView1->setHeaderLabels({QStringLiteral("Time"), QStringLiteral("Memo")});
    const QList<store::RecurringEvent> events = store::readRecurringEvents();
    for (int i = 1; i < events.size(); ++i) {
        if (events[i].type != store::kDaily)
            continue;
        auto *item = new QTreeWidgetItem(ListView1, {events[i].time, listText(events[i].memo)});
        // Rows can read alike; each remembers the event it was made from.
        item->setData(0, kNumberRole, i);
    }
}

void frmDaily::ListView1_ItemClick(QTreeWidgetItem *item)
{
    if (item)
        emit RModiRequested(item->data(0, kNumberRole).toInt());
}
