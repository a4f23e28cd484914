#include "mainwindow/EventLookup.h"

namespace eventlookup
{

bool check_memo(const store::Model &model, const QString &memo)
{
    for (int i = 1; i <= model.eventCount(); ++i) {
        if (model.events[i].memo == memo)
            return false;
    }
    for (int i = 1; i <= model.recurringCount(); ++i) {
        if (model.recurring[i].memo == memo)
            return false;
    }
    return true;
}

QStringList fFind(const store::Model &model, const QString &keyword)
{
    QStringList found;
    auto consider = [&](const QString &memo) {
        if (!memo.isEmpty() && memo.contains(keyword, Qt::CaseInsensitive))
            found.append(memo);
    };
    for (int i = 1; i <= model.eventCount(); ++i)
        consider(model.events[i].memo);
    for (int i = 1; i <= model.recurringCount(); ++i)
        consider(model.recurring[i].memo);
    return found;
}

std::optional<Found> modi(const store::Model &model, const QString &text)
{
    auto shows = [&text](const QString &memo) {
        return memo == text || (store::isAction(memo) && store::actionPath(memo) == text);
    };
    for (int i = 1; i <= model.eventCount(); ++i) {
        if (shows(model.events[i].memo))
            return Found{false, i};
    }
    for (int i = 1; i <= model.recurringCount(); ++i) {
        if (shows(model.recurring[i].memo))
            return Found{true, i};
    }
    return std::nullopt;
}

} // namespace eventlookup
