#pragma once

#include <QString>

// What a copy of Data.ini holds, told in words beside what the current one holds.
namespace backup
{

struct Contents {
    int events = 0;
    int recurring = 0;
    int categories = 0;
    bool password = false;
    QString passwordCodes; // the stored codes, to tell one password from another
};

// Counts read the way the calendar reads them: a count that is no number is none.
Contents readContents(const QString &file);

// "12 events, 3 recurring; 2 more recurring than now". `sameBytes` when the files are equal.
QString summary(const Contents &copy, const Contents &current, bool sameBytes);

// Whether restoring the copy brings back another password than the one in force.
bool changesPassword(const Contents &copy, const Contents &current);

} // namespace backup
