#include "ical/frmImport.h"

#include "backup/Backups.h"
#include "dialogs/DialogSupport.h"
#include "runtime/MsgBox.h"
#include "store/SaveFailure.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>

using namespace ical;

namespace
{

enum Column { Event, Becomes, When, Time, Memo, Category, Note };

// A trap or a problem is shown in red, so it is never missed.
const QColor kWarning(170, 0, 0);

} // namespace

frmImport::frmImport(ical::Calendar calendar, const store::Model &model, const QString &fileName,
                     int year, QWidget *parent)
    : QDialog(parent), calendar_(std::move(calendar)), model_(model)
{
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Import from iCalendar - ") + fileName);
    resize(1000, 560);

    lblFile = new QLabel(this);
    lblFile->setObjectName(QStringLiteral("lblFile"));
    lstEvents = new QTreeWidget(this);
    lstEvents->setObjectName(QStringLiteral("lstEvents"));
    lstEvents->setRootIsDecorated(false);
    lstEvents->setAlternatingRowColors(true);
    lstEvents->setHeaderLabels({QStringLiteral("Event"), QStringLiteral("Becomes"),
                                QStringLiteral("Date"), QStringLiteral("Time"),
                                QStringLiteral("Memo"), QStringLiteral("Category"),
                                QStringLiteral("Note")});
    // Only the memo is the user's to change.
    lstEvents->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(lstEvents, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *row) {
        if (row->flags() & Qt::ItemIsEditable)
            lstEvents->editItem(row, Memo);
    });
    connect(lstEvents, &QTreeWidget::itemChanged, this, &frmImport::lstEvents_Changed);

    cmbcat = new QComboBox(this);
    cmbcat->setObjectName(QStringLiteral("cmbcat"));
    cmbcat->setToolTip(QStringLiteral("Select from the list or enter a New one."));
    connect(cmbcat, &QComboBox::activated, this, &frmImport::cmbcat_Click);
    txtFrom = new QSpinBox(this);
    txtFrom->setObjectName(QStringLiteral("txtFrom"));
    txtTo = new QSpinBox(this);
    txtTo->setObjectName(QStringLiteral("txtTo"));
    for (QSpinBox *box : {txtFrom, txtTo}) {
        box->setRange(1900, 9998);
        box->setGroupSeparatorShown(false);
        connect(box, &QSpinBox::editingFinished, this, &frmImport::txtFrom_Change);
    }
    txtFrom->setValue(year);
    txtTo->setValue(year + 1);
    lblCount = new QLabel(this);
    lblCount->setObjectName(QStringLiteral("lblCount"));
    OKButton = new QPushButton(QStringLiteral("&Import"), this);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setDefault(true);
    connect(OKButton, &QPushButton::clicked, this, &frmImport::OKButton_Click);
    CancelButton = new QPushButton(QStringLiteral("Cancel"), this);
    CancelButton->setObjectName(QStringLiteral("CancelButton"));
    connect(CancelButton, &QPushButton::clicked, this, &QDialog::reject);

    auto *options = new QGridLayout;
    options->addWidget(new QLabel(QStringLiteral("Category for events without one :"), this), 0, 0);
    options->addWidget(cmbcat, 0, 1);
    options->addWidget(new QLabel(QStringLiteral("Rules the calendar cannot repeat, as one-off "
                                                 "events from :"),
                                  this),
                       1, 0);
    auto *years = new QHBoxLayout;
    years->addWidget(txtFrom);
    years->addWidget(new QLabel(QStringLiteral("to"), this));
    years->addWidget(txtTo);
    years->addStretch();
    options->addLayout(years, 1, 1);
    options->setColumnStretch(2, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblCount, 1);
    buttons->addWidget(OKButton);
    buttons->addWidget(CancelButton);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblFile);
    layout->addWidget(lstEvents, 1);
    layout->addLayout(options);
    layout->addLayout(buttons);

    lblFile->setText(
        QStringLiteral("Events in %1%2. Tick those to import; double-click a memo "
                       "to rename it.")
            .arg(fileName, calendar_.eventsLeftOut
                               ? QStringLiteral(" (%1 more left out: only the first %2 are read)")
                                     .arg(calendar_.eventsLeftOut)
                                     .arg(kMostEvents)
                               : QString()));
    Fill_cmbCat();
    txtFrom_Change();
}

void frmImport::Fill_cmbCat()
{
    cmbcat->clear();
    const QStringList names = store::readCategoryNames();
    categories_ = names.mid(2);
    cmbcat->addItems(categories_);
    cmbcat->addItem(dialogs::kNewCategory);
    cmbcat->setCurrentIndex(0);
    shownCategory_ = 0;
}

void frmImport::cmbcat_Click()
{
    if (cmbcat->currentText() != dialogs::kNewCategory) {
        shownCategory_ = cmbcat->currentIndex();
        return;
    }
    const int added =
        dialogs::addCategory(categories_, store::readCount(store::kCategoriesSection));
    if (added == 0) {
        cmbcat->setCurrentIndex(shownCategory_);
        return;
    }
    Fill_cmbCat();
    cmbcat->setCurrentIndex(added - 2);
    shownCategory_ = added - 2;
}

void frmImport::txtFrom_Change()
{
    if (txtTo->value() < txtFrom->value())
        txtTo->setValue(txtFrom->value());
    // Ten years at most: each day written out is an event of its own.
    if (txtTo->value() > txtFrom->value() + 9)
        txtTo->setValue(txtFrom->value() + 9);
    items_ = plan(calendar_, {txtFrom->value(), txtTo->value()});
    fillList();
}

void frmImport::fillList()
{
    filling_ = true;
    lstEvents->clear();
    for (const Item &item : items_) {
        auto *row = new QTreeWidgetItem(lstEvents);
        row->setText(Event, item.summary);
        row->setText(Becomes, kindText(item.kind));
        row->setText(When, whenText(item));
        row->setText(Time, item.kind == Kind::NotImported    ? QString()
                           : item.time == store::kAllDayTime ? QStringLiteral("All Day")
                                                             : item.time);
        row->setText(Memo, item.memo);
        row->setText(Category, item.category);
        if (item.kind == Kind::NotImported) {
            row->setFlags(Qt::ItemIsSelectable);
        } else {
            row->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable |
                          Qt::ItemIsEditable);
            row->setCheckState(Event, item.chosen ? Qt::Checked : Qt::Unchecked);
        }
    }
    for (int c = Event; c < Note; ++c)
        lstEvents->resizeColumnToContents(c);
    lstEvents->setColumnWidth(Event, std::min(lstEvents->columnWidth(Event), 200));
    lstEvents->setColumnWidth(Memo, std::min(lstEvents->columnWidth(Memo), 220));
    filling_ = false;
    showProblems();
}

void frmImport::showProblems()
{
    filling_ = true;
    const QStringList problems = ical::problems(items_, model_);
    int chosen = 0;
    for (qsizetype i = 0; i < items_.size(); ++i) {
        QTreeWidgetItem *row = lstEvents->topLevelItem(int(i));
        const Item &item = items_[i];
        const QString &problem = problems[i];
        row->setText(Note, problem.isEmpty()     ? item.note
                           : item.note.isEmpty() ? problem
                                                 : problem + QStringLiteral("; ") + item.note);
        const bool warn =
            !problem.isEmpty() || item.kind == Kind::NotImported || !item.note.isEmpty();
        row->setForeground(Note, warn ? QBrush(kWarning) : QBrush());
        row->setToolTip(Note, row->text(Note));
        if (item.chosen && item.kind != Kind::NotImported && problem.isEmpty())
            ++chosen;
    }
    lblCount->setText(
        QStringLiteral("%1 of %2 events will be imported.").arg(chosen).arg(items_.size()));
    filling_ = false;
}

void frmImport::lstEvents_Changed(QTreeWidgetItem *row, int column)
{
    if (filling_)
        return;
    Item &item = items_[lstEvents->indexOfTopLevelItem(row)];
    if (column == Event) {
        item.chosen = row->checkState(Event) == Qt::Checked;
    } else if (column == Memo) {
        item.memo = store::isAction(item.memo) ? item.memo : storedMemo(row->text(Memo));
        filling_ = true;
        row->setText(Memo, item.memo);
    }
    showProblems();
}

void frmImport::OKButton_Click()
{
    const QStringList problems = ical::problems(items_, model_);
    bool needsCategory = false;
    for (qsizetype i = 0; i < items_.size(); ++i)
        needsCategory =
            needsCategory || (items_[i].chosen && problems[i].isEmpty() &&
                              items_[i].kind != Kind::NotImported && items_[i].category.isEmpty());
    if (needsCategory && cmbcat->currentText() == dialogs::kNewCategory) {
        rt::MsgBox(QStringLiteral("Choose a category for the events without one."));
        return;
    }
    backup::beforeChange();
    written_ = writeItems(items_, model_, cmbcat->currentText());
    // Names the file and the reason when it could not be written; the window stays open then,
    // nothing imported.
    store::afterChange();
    if (written_ >= 0)
        accept();
}
