#pragma once

#include "store/DataStore.h"

#include <QString>
#include <QStringList>
#include <optional>

// The main window's searches over the events it holds, used by the event windows.
namespace eventlookup
{

// True when no one-off or recurring event carries exactly this memo. Case counts and dates
// do not: the same memo on another day, or on a recurring event, is taken.
bool check_memo(const store::Model &model, const QString &memo);

// The stored memos that contain the keyword, compared without regard to case: one-off
// events first, then recurring ones, each in the store's order. An empty memo never
// matches; an empty keyword matches every other memo.
QStringList fFind(const store::Model &model, const QString &keyword);

struct Found {
    bool recurring = false;
    int number = 0;
    bool operator==(const Found &) const = default;
};

// The event that modi opens for a text: the first one-off, then recurring, event whose memo
// is the text, or whose action path is (the find window shows actions without the marker).
std::optional<Found> modi(const store::Model &model, const QString &text);

} // namespace eventlookup
