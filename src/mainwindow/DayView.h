#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QList>
#include <QString>

// What the day popup lists and what a chosen item opens, apart from the menu widgets.
namespace dayview
{

// Action paths separate their folders with the system's own character.
#ifdef Q_OS_WIN
inline constexpr char16_t kPathSeparator = u'\\';
#else
inline constexpr char16_t kPathSeparator = u'/';
#endif

// The name an action is listed under: the text from its last separator on, found with a
// start position that grows by one each round; without a separator, the text less its first
// character.
QString file_name_of(const QString &text, QChar separator = QChar(kPathSeparator));

// The popup caption of an event text: its first 15 characters (of the file name for an
// action) and "...".
QString caption(const QString &text);

struct Item {
    QString caption;
    QString text; // the full stored text
    bool recurring = false;
    int number = 0; // the event's number among the one-off or the recurring events
};

// The events of a day, one-off first, then recurring. Yearly dates are built in the year the
// calendar shows, not the clicked date's year.
QList<Item> itemsOn(rt::Date date, const store::Model &model, int displayedYear);

// The dialogs a chosen item opens, in order: modi(n) for a one-off event, RModi(n) for a
// recurring one. Every matching event counts.
struct Target {
    bool recurring = false;
    int number = 0;
    bool operator==(const Target &) const = default;
};
QList<Target> n1Targets(const QString &caption, const QString &text, const store::Model &model);

} // namespace dayview
