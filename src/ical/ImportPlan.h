#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QList>
#include <QString>

// What the events of an iCalendar file become in the store, before and while they are written.
namespace ical
{

enum class Kind { OneOff, Daily, Weekly, Monthly, Yearly, NotImported };

struct Item {
    int source = 0;  // the event's place in the file, from 1
    QString summary; // as the file has it
    Kind kind = Kind::NotImported;
    rt::Date date = 0; // one-off: its day
    QString time;      // as stored: "9:00 AM", or "00:00" all day
    QString day;       // weekly: the weekday's name; monthly and yearly: the day of the month
    QString month;     // yearly
    QString memo;      // as stored; an action's carries the marker
    QString category;  // the file's; empty takes the one chosen for all
    QString note;      // what changed on the way; why, when it is not imported
    bool chosen = false;
};

// A text as a memo keeps it: line breaks as spaces, blanks trimmed, characters outside the
// store's code page as '?', at most 254 characters. `changes` gets what was changed.
QString storedMemo(const QString &text, QStringList *changes = nullptr);

// "One-off", "Weekly", ...; and the day or rule: "3/14/2026", "every Monday".
QString kindText(Kind kind);
QString whenText(const Item &item);

// Why a chosen item cannot be written as it is, one text per item, empty where it can: a
// memo that is empty, already in the store, or taken by an item before it. Actions are not
// checked, as the add dialog checks none.
QStringList problems(const QList<Item> &items, const store::Model &model);

// Writes the chosen items with no problem through the add dialog's writers, in the file's
// order, each raising its count once; `category` for items without one. Categories the store
// lacks are added first, as new categories. Every write reaches the disk at once or none
// does. Gives how many events were written, or -1 when Data.ini could not be written.
int writeItems(const QList<Item> &items, const store::Model &model, const QString &category);

} // namespace ical
