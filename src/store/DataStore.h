#pragma once

#include "runtime/Colors.h"
#include "runtime/DateText.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <optional>

// The layout of Data.ini: which sections and keys hold what, read and written key by key
// through ReadINI/WriteINI. No window spells a section or key name itself.
namespace store
{

// Sections and keys.
inline const QString kCountSection = QStringLiteral("count");
inline const QString kRecurringCountSection = QStringLiteral("rcount");
inline const QString kCategoriesSection = QStringLiteral("Categories");
inline const QString kPasswordCountSection = QStringLiteral("pcount");
inline const QString kPasswordSection = QStringLiteral("pass");
inline const QString kCountKey = QStringLiteral("c");
inline const QString kDateKey = QStringLiteral("Date");
inline const QString kTimeKey = QStringLiteral("Time");
inline const QString kMemoKey = QStringLiteral("Memo");
inline const QString kCatKey = QStringLiteral("Cat");
inline const QString kTypeKey = QStringLiteral("Type");
inline const QString kDayKey = QStringLiteral("Day");
inline const QString kMonthKey = QStringLiteral("Month");

// A memo that starts with the marker is an action: the rest is the path to open.
inline const QString kActionMarker = QStringLiteral("&**");
// The time of an all-day event.
inline const QString kAllDayTime = QStringLiteral("00:00");

// The "Day" of a weekly event, Sunday first.
inline const std::array<QString, 7> &kWeekdayNames = rt::kEnglishWeekdays;

inline const QString kDaily = QStringLiteral("Daily");
inline const QString kWeekly = QStringLiteral("Weekly");
inline const QString kMonthly = QStringLiteral("Monthly");
inline const QString kYearly = QStringLiteral("Yearly");

// Category 1 is always called this in memory; its colour marks days of several categories.
inline const QString kMoreCategory = QStringLiteral("More");
// The colour "More" gets when the program creates it: light grey, on which the blue day
// numbers and the red of today both read.
inline const QString kMoreColour = QStringLiteral("14737632");

QString eventSection(int n);     // "7"
QString recurringSection(int n); // "r7"
QString colourKey(int n);        // "7c"

bool isAction(const QString &memo);
QString actionPath(const QString &memo); // the memo without the marker
QString actionMemo(const QString &path); // the marker and the path

// Counts above this are damage, not data: the loader reads at most this many items.
constexpr int kMaxItems = 100000;

// One event as the loader holds it.
struct Event {
    rt::Date date = 0;
    rt::Date time = 0;
    QString memo;
    QString cat;
};

// A recurring event: every field as the text stored.
struct RecurringEvent {
    QString type;
    QString day;
    QString month;
    QString time;
    QString memo;
    QString cat;
};

// The whole store in memory. Every list keeps the store's numbering: element 0 is an unused
// placeholder and item n sits at index n, so list.size() - 1 is the count.
struct Model {
    QStringList categoryColours; // decimal text; "" where the stored value was no number
    QStringList categoryNames;   // element 1 is always "More"
    QList<RecurringEvent> recurring;
    QList<Event> events;

    int categoryCount() const { return int(categoryNames.size()) - 1; }
    int recurringCount() const { return int(recurring.size()) - 1; }
    int eventCount() const { return int(events.size()) - 1; }
};

// A category's colour text as a number; empty where it is no number.
std::optional<rt::WinColor> colourValue(const QString &text);
// The colour of each category name: that of the last category of the exact name whose
// colour is a number; 0 for a name without one.
class CategoryColours
{
public:
    explicit CategoryColours(const Model &model);
    rt::WinColor of(const QString &name) const { return byName_.value(name, 0); }

private:
    QHash<QString, rt::WinColor> byName_;
};

// Reading, with errors ignored: a count that is no number reads as no items, a value that
// does not convert stays at zero. Each reads the current Data.ini of the program folder.
int readCount(const QString &section);
QStringList readCategoryColours();
QList<RecurringEvent> readRecurringEvents();
QList<Event> readEvents();
QStringList readCategoryNames();       // keys 2.. only; element 1 is "More"
QStringList readStoredCategoryNames(); // keys 1.. as stored, key 1 included
Model loadModel();                     // all of the above, in the loader's order

// The text of one stored event, as the writers take it.
struct EventRecord {
    QString date;
    QString time;
    QString memo;
    QString cat;
};

// One item's stored texts, for the windows that edit it.
EventRecord readEventRecord(int n);
RecurringEvent readRecurringEvent(int n);

// A new one-off event n: the count first, then Date, Time, Memo and Cat.
void writeNewEvent(int n, const EventRecord &event);
// A new recurring event n: the count first, then Type, Day (not for Daily), Month (Yearly
// only), Time, Memo and Cat.
void writeNewRecurring(int n, const RecurringEvent &event);
// A modified one-off event n: Date and Time into section n, the memo into section
// count + 1, Cat into section n. The count is not written.
void writeModifiedEvent(int n, int count, const EventRecord &event);
// A modified recurring event n: n is written as the recurring count, then the keys as for
// a new one.
void writeModifiedRecurring(int n, const RecurringEvent &event);

// Removal of item k: the lowered count, then every later item moved down by one. The old
// last section stays in the file. `events`/`recurring` use the store's numbering.
void removeEvent(const QList<EventRecord> &events, int k);
void removeRecurring(const QList<RecurringEvent> &recurring, int k);

// Categories.
// count + 1, the name, its colour ("0" for a category the user adds)
void writeNewCategory(int count, const QString &name, const QString &colour = QStringLiteral("0"));
void writeCategoryColours(const QList<std::int32_t> &colours); // element 0 unused

// The password: its length under "pcount", one character code per key under "pass".
// Characters go through the store's code page: one it cannot hold is kept as '?'.
QString readPassword();      // "" when the count is "0" or missing
QString readPasswordCount(); // the stored text, "0" when missing
void writePassword(const QString &password);
// The one write to Pass.ini: its count set to "0". Nothing reads that file.
void writePassIniCount();

} // namespace store
