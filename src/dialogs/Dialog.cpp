#include "dialogs/Dialog.h"

#include "backup/Backups.h"
#include "dialogs/DialogSupport.h"
#include "dialogs/ZOrder.h"
#include "mainwindow/EventLookup.h"
#include "runtime/DateText.h"
#include "runtime/MsgBox.h"
#include "runtime/Numbers.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"
#include "store/SaveFailure.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

namespace
{

const QString kTimeTip = QStringLiteral(
    "Select from the list or enter a time(HH:MM AM/PM). All Day reminds you every time the "
    "system or the program starts at the selected day.");
const QString kAllDay = QStringLiteral("All Day");
const QString kTimeHint = QStringLiteral("HH:MM AM/PM");

// The stored time and the action path go through a 16-bit position counter on writing;
// the marker takes three of its places.
constexpr int kLongestText = 32767;

template <typename W> W *named(QWidget *parent, const char *name)
{
    auto *widget = new W(parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QRadioButton *option(QWidget *parent, const char *name, const QString &caption)
{
    auto *button = named<QRadioButton>(parent, name);
    button->setText(caption);
    return button;
}

QComboBox *combo(QWidget *parent, const char *name, bool editable)
{
    auto *box = named<QComboBox>(parent, name);
    box->setEditable(editable);
    return box;
}

// A caption names the field beside it for screen readers.
QLabel *label(QWidget *parent, const QString &caption, QWidget *field = nullptr)
{
    auto *l = new QLabel(caption, parent);
    l->setBuddy(field);
    return l;
}

// Part of a typed time: at most two characters, none counting as 0, a whole number in range.
bool partInRange(const QString &part, int low, int high)
{
    if (part.size() > 2)
        return false;
    std::int16_t value = 0;
    if (!part.isEmpty() && !rt::tryCInt(part, value))
        return false;
    return value >= low && value <= high;
}

} // namespace

Dialog::Dialog(const store::Model &mainWindowModel, rt::Date selectedDate, QWidget *parent)
    : QDialog(parent), mainWindowModel_(mainWindowModel)
{
    setObjectName(QStringLiteral("Dialog"));
    setWindowTitle(QStringLiteral("Add Event..."));
    createControls();
    Form_Load(selectedDate);
}

void Dialog::createControls()
{
    Option1 = option(this, "Option1", QStringLiteral("Select Date :"));
    DTPicker1 = dialogs::newDatePicker(this, "DTPicker1");
    cmbtime = combo(this, "cmbtime", true);
    cmbtime->setToolTip(kTimeTip);
    Option2 = option(this, "Option2", QStringLiteral("Select Recurrence :"));

    Frame1 = named<QGroupBox>(this, "Frame1");
    Optdaily = option(Frame1, "Optdaily", QStringLiteral("Daily"));
    optWeekly = option(Frame1, "optWeekly", QStringLiteral("Weekly"));
    optMonthly = option(Frame1, "optMonthly", QStringLiteral("Monthly"));
    optYearly = option(Frame1, "optYearly", QStringLiteral("Yearly"));
    txtday = combo(Frame1, "txtday", false);
    txtday1 = combo(Frame1, "txtday1", false);
    txtmonth = combo(Frame1, "txtmonth", false);
    cmbtime2 = combo(Frame1, "cmbtime2", true);
    cmbtime2->setToolTip(kTimeTip);
    Frame1->setAccessibleName(QStringLiteral("Recurrence"));
    txtday1->setAccessibleName(QStringLiteral("Weekday"));

    cmbcat = combo(this, "cmbcat", false);
    cmbcat->setToolTip(QStringLiteral("Select from the list or enter a New one."));
    cmbcat1 = combo(this, "cmbcat1", false);
    cmbcat1->hide();

    Frame2 = named<QGroupBox>(this, "Frame2");
    Option3 = option(Frame2, "Option3", QStringLiteral("Memo"));
    Option4 = option(Frame2, "Option4", QStringLiteral("Action"));
    txtmemo = named<QLineEdit>(Frame2, "txtmemo");
    txtmemo->setToolTip(QStringLiteral("Should be a unique one."));
    txtmemo->setAccessibleName(QStringLiteral("Memo"));
    Frame2->setAccessibleName(QStringLiteral("Memo or action"));
    txtmemo->setMaxLength(kLongestText);
    txtaction = named<QLineEdit>(Frame2, "txtaction");
    txtaction->setToolTip(QStringLiteral("Type the  path of a file"));
    txtaction->setAccessibleName(QStringLiteral("Action"));
    txtaction->setMaxLength(kLongestText - int(store::kActionMarker.size()));
    cmdbrowse = named<QPushButton>(Frame2, "cmdbrowse");
    cmdbrowse->setText(QStringLiteral("Browse"));
    cmdbrowse->setAutoDefault(false);

    OKButton = named<QPushButton>(this, "OKButton");
    OKButton->setText(QStringLiteral("OK"));
    OKButton->setToolTip(QStringLiteral("save and close."));
    OKButton->setDefault(true);
    CancelButton = named<QPushButton>(this, "CancelButton");
    CancelButton->setText(QStringLiteral("Cancel"));
    CancelButton->setAutoDefault(false);

    // One-off event: date and time.
    auto *single = new QGridLayout;
    single->addWidget(label(this, QStringLiteral("Date :"), DTPicker1), 0, 0);
    single->addWidget(DTPicker1, 0, 1);
    single->addWidget(label(this, QStringLiteral("Time :"), cmbtime), 1, 0);
    single->addWidget(cmbtime, 1, 1);
    single->addWidget(label(this, kTimeHint), 1, 2);
    single->setColumnMinimumWidth(0, 60);
    single->setColumnStretch(1, 1);

    // Recurring event: the kind, then its day, month and time.
    auto *kinds = new QHBoxLayout;
    for (QRadioButton *kind : {Optdaily, optWeekly, optMonthly, optYearly})
        kinds->addWidget(kind);
    auto *recurring = new QGridLayout(Frame1);
    recurring->addLayout(kinds, 0, 0, 1, 4);
    recurring->addWidget(label(Frame1, QStringLiteral("Day :"), txtday), 1, 0);
    // The weekday list takes the place of the day list.
    recurring->addWidget(txtday, 1, 1);
    recurring->addWidget(txtday1, 1, 1);
    recurring->addWidget(label(Frame1, QStringLiteral("Month :"), txtmonth), 1, 2);
    recurring->addWidget(txtmonth, 1, 3);
    recurring->addWidget(label(Frame1, QStringLiteral("Time :"), cmbtime2), 2, 0);
    recurring->addWidget(cmbtime2, 2, 1);
    recurring->addWidget(label(Frame1, kTimeHint), 2, 2, 1, 2);
    recurring->setColumnStretch(1, 1);

    auto *category = new QHBoxLayout;
    category->addWidget(label(this, QStringLiteral("Category :"), cmbcat));
    category->addWidget(cmbcat, 1);

    auto *text = new QGridLayout(Frame2);
    text->addWidget(Option3, 0, 0);
    text->addWidget(txtmemo, 0, 1, 1, 2);
    text->addWidget(Option4, 1, 0);
    text->addWidget(txtaction, 1, 1);
    text->addWidget(cmdbrowse, 1, 2);
    text->setColumnStretch(1, 1);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKButton);
    buttons->addWidget(CancelButton);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Option1);
    layout->addLayout(single);
    layout->addWidget(Option2);
    layout->addWidget(Frame1);
    layout->addLayout(category);
    layout->addWidget(Frame2);
    layout->addLayout(buttons);
    setMinimumWidth(420);

    const QList<QWidget *> tabOrder{Option1,   DTPicker1,  cmbtime,   Option2,  Optdaily,
                                    optWeekly, optMonthly, optYearly, txtday,   txtday1,
                                    txtmonth,  cmbtime2,   cmbcat,    Option3,  txtmemo,
                                    Option4,   txtaction,  cmdbrowse, OKButton, CancelButton};
    for (qsizetype i = 1; i < tabOrder.size(); ++i)
        setTabOrder(tabOrder[i - 1], tabOrder[i]);

    auto onChecked = [this](QRadioButton *button, void (Dialog::*handler)()) {
        connect(button, &QRadioButton::toggled, this, [this, handler](bool checked) {
            if (checked)
                (this->*handler)();
        });
    };
    onChecked(Option1, &Dialog::Option1_Click);
    onChecked(Option2, &Dialog::Option2_Click);
    onChecked(Optdaily, &Dialog::Optdaily_Click);
    onChecked(optWeekly, &Dialog::optWeekly_Click);
    onChecked(optMonthly, &Dialog::optMonthly_Click);
    onChecked(optYearly, &Dialog::optYearly_Click);
    onChecked(Option3, &Dialog::Option3_Click);
    onChecked(Option4, &Dialog::Option4_Click);
    connect(txtmonth, &QComboBox::currentIndexChanged, this, &Dialog::txtmonth_Click);
    connect(cmbcat, &QComboBox::activated, this, &Dialog::cmbcat_Click);
    connect(cmdbrowse, &QPushButton::clicked, this, &Dialog::cmdbrowse_Click);
    connect(OKButton, &QPushButton::clicked, this, &Dialog::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, &Dialog::CancelButton_Click);
}

void Dialog::Form_Load(rt::Date selectedDate)
{
    Option1->setChecked(true);
    Fill_Cmbtime();
    Fill_cmbCat();
    Fill_Cmbtime2();
    dialogs::setPickerDate(DTPicker1, selectedDate);
    Optdaily->setChecked(true);
    for (int month = 1; month <= 12; ++month)
        txtmonth->addItem(QString::number(month));
    Fill_Weekly();
    Option3->setChecked(true);
}

void Dialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
    // The text is what a user types first; the date and time come ready.
    (Option4->isChecked() ? txtaction : txtmemo)->setFocus();
}

void Dialog::done(int result)
{
    modiMode_ = false;
    rmodiMode_ = false;
    QDialog::done(result);
}

void Dialog::Fill_Cmbtime()
{
    cmbtime->addItem(kAllDay);
    for (const char *half : {"AM", "PM"}) {
        for (int hour = 1; hour <= 12; ++hour)
            cmbtime->addItem(QStringLiteral("%1:00 %2").arg(hour).arg(QLatin1String(half)));
    }
}

void Dialog::Fill_Cmbtime2()
{
    for (int i = 1; i < cmbtime->count(); ++i)
        cmbtime2->addItem(cmbtime->itemText(i));
}

void Dialog::Fill_cmbCat()
{
    cmbcat->clear();
    cmbcat1->clear();
    const QStringList names = store::readCategoryNames();
    categoryCount_ = int(names.size()) - 1;
    // Category 1 marks days of several categories; no event belongs to it.
    categoryNames_ = names.mid(2);
    dialogs::fillCategoryLists(cmbcat, cmbcat1, categoryNames_);
    shownCategory_ = 0;
}

void Dialog::Fill_Weekly()
{
    for (const QString &day : store::kWeekdayNames)
        txtday1->addItem(day);
}

void Dialog::fillDays(int days)
{
    txtday->clear();
    for (int day = 1; day <= days; ++day)
        txtday->addItem(QString::number(day));
    txtday->setCurrentIndex(0);
}

// The one-off controls and the recurrence controls are enabled in turn.
void Dialog::enableRecurrence(bool recurring)
{
    for (QWidget *w : std::initializer_list<QWidget *>{Optdaily, optWeekly, optMonthly, optYearly,
                                                       txtday, txtday1, txtmonth, cmbtime2})
        w->setEnabled(recurring);
    DTPicker1->setEnabled(!recurring);
    cmbtime->setEnabled(!recurring);
}

void Dialog::Option1_Click()
{
    enableRecurrence(false);
}

void Dialog::Option2_Click()
{
    enableRecurrence(true);
    if (Optdaily->isChecked())
        Optdaily_Click();
    else
        Optdaily->setChecked(true);
}

void Dialog::Optdaily_Click()
{
    txtday1->hide();
    txtday->show();
    txtday->setEnabled(false);
    txtday1->setEnabled(false);
    txtmonth->setEnabled(false);
}

void Dialog::optWeekly_Click()
{
    txtday->hide();
    txtday1->show();
    txtday1->setEnabled(true);
    txtmonth->setEnabled(false);
}

void Dialog::optMonthly_Click()
{
    txtday1->hide();
    txtday->show();
    txtday->setEnabled(true);
    txtmonth->setEnabled(false);
}

void Dialog::optYearly_Click()
{
    txtday1->hide();
    txtday->show();
    txtday->setEnabled(true);
    txtmonth->setEnabled(true);
}

void Dialog::Option3_Click()
{
    txtmemo->setEnabled(true);
    txtaction->setEnabled(false);
    cmdbrowse->setEnabled(false);
}

void Dialog::Option4_Click()
{
    txtmemo->setEnabled(false);
    txtaction->setEnabled(true);
    cmdbrowse->setEnabled(true);
}

void Dialog::txtmonth_Click()
{
    const int month = txtmonth->currentText().toInt();
    if (month == 2)
        fillDays(29); // any year's February, so a yearly event can fall on the 29th
    else if (month == 4 || month == 6 || month == 9 || month == 11)
        fillDays(30);
    else
        fillDays(31);
}

void Dialog::cmbcat_Click()
{
    if (cmbcat->currentText() != dialogs::kNewCategory) {
        shownCategory_ = cmbcat->currentIndex();
        return;
    }
    if (dialogs::addCategory(categoryNames_, categoryCount_) == 0) {
        cmbcat->setCurrentIndex(shownCategory_);
        return;
    }
    Fill_cmbCat();
}

bool Dialog::hasCategory()
{
    // Only "New.." is left to choose when the store has no category yet: ask for one rather
    // than file the event under a name nothing paints.
    if (cmbcat->currentText() != dialogs::kNewCategory)
        return true;
    if (dialogs::addCategory(categoryNames_, categoryCount_) == 0)
        return false;
    Fill_cmbCat();
    return true;
}

void Dialog::cmdbrowse_Click()
{
    QFileDialog browse(this, QStringLiteral("Browse"), txtaction->text(),
                       QStringLiteral("All Files (*)"));
    browse.setFileMode(QFileDialog::ExistingFile);
    // Sizes, kinds and dates are shown whole, however the locale writes them, and the name
    // takes the rest of a list wide enough for long names.
    browse.resize(900, 520);
    if (auto *list = browse.findChild<QTreeView *>(); list && list->header()) {
        QHeaderView *header = list->header();
        header->setStretchLastSection(false);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int column = 1; column < header->count(); ++column)
            header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    }
    const QString path =
        browse.exec() == QDialog::Accepted ? browse.selectedFiles().value(0) : QString();
    if (!path.isEmpty())
        txtaction->setText(QDir::toNativeSeparators(path));
}

bool Dialog::isValidTime(const QString &time)
{
    // What the user typed is kept upper-cased, valid or not.
    cmbtime->setEditText(cmbtime->currentText().toUpper());
    cmbtime2->setEditText(cmbtime2->currentText().toUpper());

    const QString t = time.toUpper().trimmed();
    const qsizetype colon = t.indexOf(QLatin1Char(':'));
    if (colon < 0 || !partInRange(t.left(colon), 1, 12))
        return false;
    const QString rest = t.mid(colon + 1);
    qsizetype letter = rest.indexOf(QLatin1Char('A'));
    if (letter < 0)
        letter = rest.indexOf(QLatin1Char('P'));
    if (letter < 0)
        return false;
    return partInRange(rest.left(letter).trimmed(), 0, 59);
}

bool Dialog::inputIsValid(QComboBox *time)
{
    if (time->currentText().toUpper() != kAllDay.toUpper() && !isValidTime(time->currentText())) {
        rt::MsgBox(QStringLiteral("You should type a valid time!"), rt::vbCritical);
        return false;
    }
    if (Option3->isChecked() && txtmemo->text().isEmpty()) {
        rt::MsgBox(QStringLiteral("You should type a Memo!"));
        return false;
    }
    if (Option4->isChecked() && txtaction->text().isEmpty()) {
        rt::MsgBox(QStringLiteral("You should type an action!"));
        return false;
    }
    if (Option3->isChecked() &&
        !eventlookup::check_memo(mainWindowModel_, txtmemo->text().trimmed())) {
        rt::MsgBox(QStringLiteral("Memo already exists!"));
        return false;
    }
    return true;
}

QString Dialog::timeToStore(const QComboBox *time) const
{
    const QString text = time->currentText();
    return text.toUpper() == kAllDay.toUpper() ? store::kAllDayTime : text;
}

QString Dialog::memoToStore() const
{
    return Option4->isChecked() ? store::actionMemo(txtaction->text()) : txtmemo->text();
}

QString Dialog::recurrenceType() const
{
    if (optWeekly->isChecked())
        return store::kWeekly;
    if (optMonthly->isChecked())
        return store::kMonthly;
    if (optYearly->isChecked())
        return store::kYearly;
    return store::kDaily;
}

void Dialog::OKButton_Click()
{
    const bool single = Option1->isChecked();
    // A changed event is written as it stands; only a new one is checked.
    if (!modiMode_ && !rmodiMode_ && (!inputIsValid(single ? cmbtime : cmbtime2) || !hasCategory()))
        return;
    backup::beforeChange();
    // Another calendar writing the same store waits until the count read here is written.
    const store::ChangeScope scope(files::dataIni());
    if (single) {
        const store::EventRecord event{rt::CStr(dialogs::pickerDate(DTPicker1)),
                                       timeToStore(cmbtime), memoToStore(), cmbcat->currentText()};
        const int count = store::readCount(store::kCountSection);
        if (modiMode_)
            store::writeModifiedEvent(number_, count, event);
        else
            store::writeNewEvent(count + 1, event);
    } else {
        const QString type = recurrenceType();
        const store::RecurringEvent event{type,
                                          type == store::kWeekly ? txtday1->currentText()
                                                                 : txtday->currentText(),
                                          txtmonth->currentText(),
                                          timeToStore(cmbtime2),
                                          memoToStore(),
                                          cmbcat->currentText()};
        if (rmodiMode_)
            store::writeModifiedRecurring(number_, event);
        else
            store::writeNewRecurring(store::readCount(store::kRecurringCountSection) + 1, event);
    }
    store::afterChange();
    accept();
}

void Dialog::CancelButton_Click()
{
    reject();
}

void Dialog::showTime(QComboBox *time, const QString &stored)
{
    time->setEditText(stored == store::kAllDayTime ? kAllDay : stored);
}

void Dialog::showMemo(const QString &stored)
{
    if (store::isAction(stored)) {
        Option4->setChecked(true);
        txtaction->setText(store::actionPath(stored));
    } else {
        Option3->setChecked(true);
        txtmemo->setText(stored);
    }
}

void Dialog::showCategory(const QString &name)
{
    int index = cmbcat->findText(name, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (index < 0) {
        // A category that is no longer offered stays the event's own until the user picks
        // another.
        index = cmbcat->count() - 1;
        cmbcat->insertItem(index, name);
    }
    cmbcat->setCurrentIndex(index);
    shownCategory_ = index;
}

void Dialog::modi(int n)
{
    modiMode_ = true;
    number_ = n;
    setWindowTitle(QStringLiteral("Modify..."));
    const store::EventRecord event = store::readEventRecord(n);
    Option1->setChecked(true);
    Option2->setEnabled(false); // the event stays one-off
    showTime(cmbtime, event.time);
    showMemo(event.memo);
    rt::Date date = 0;
    if (rt::tryCDate(event.date, date))
        dialogs::setPickerDate(DTPicker1, date);
    showCategory(event.cat);
}

void Dialog::RModi(int n)
{
    rmodiMode_ = true;
    number_ = n;
    setWindowTitle(QStringLiteral("Modify..."));
    const store::RecurringEvent event = store::readRecurringEvent(n);
    Option2->setChecked(true);
    Option1->setEnabled(false); // the event stays recurring
    if (event.type == store::kWeekly) {
        optWeekly->setChecked(true);
        txtday1->setCurrentText(event.day);
    } else if (event.type == store::kMonthly || event.type == store::kYearly) {
        (event.type == store::kMonthly ? optMonthly : optYearly)->setChecked(true);
        if (event.type == store::kYearly)
            txtmonth->setCurrentText(event.month);
        txtday->setCurrentText(event.day);
    }
    showTime(cmbtime2, event.time);
    showMemo(event.memo);
    showCategory(event.cat);
}
