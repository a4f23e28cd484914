#include "mainwindow/DayView.h"

#include "runtime/DateText.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"

namespace dayview
{

QString file_name_of(const QString &text, QChar separator)
{
    QString s = text;
    const qsizetype n = text.size();
    for (qsizetype k = 1; k <= n; ++k) {
        const qsizetype at = s.indexOf(separator, k - 1);
        if (at < 0)
            return s.mid(1);
        s = s.mid(at);
    }
    return {};
}

QString caption(const QString &text)
{
    const QString shown = store::isAction(text) ? file_name_of(text) : text;
    return shown.left(15) + QStringLiteral("...");
}

QList<Item> itemsOn(rt::Date date, const store::Model &model, int displayedYear)
{
    QList<Item> items;
    auto add = [&items](const QString &text, bool recurring, int number) {
        items.append({caption(text), text, recurring, number});
    };

    for (int i = 1; i <= model.eventCount(); ++i) {
        if (model.events[i].date == date)
            add(model.events[i].memo, false, i);
    }
    const QString weekday = rt::WeekdayName(rt::Weekday(date));
    for (int i = 1; i <= model.recurringCount(); ++i) {
        const store::RecurringEvent &e = model.recurring[i];
        if (e.type == store::kWeekly) {
            if (weekday == e.day)
                add(e.memo, true, i);
        } else if (e.type == store::kMonthly) {
            if (rt::numberEqualsText(rt::Day(date), e.day))
                add(e.memo, true, i);
        } else if (e.type == store::kYearly) {
            const QString text = e.month + QLatin1Char('/') + e.day + QLatin1Char('/') +
                                 QString::number(displayedYear);
            if (rt::CDate(text) == date)
                add(e.memo, true, i);
        } else if (e.type == store::kDaily) {
            add(e.memo, true, i);
        }
    }
    return items;
}

QList<Target> n1Targets(const QString &caption, const QString &text, const store::Model &model)
{
    QList<Target> targets;
    auto plain = [](const QString &t) { return t.left(15) + QStringLiteral("..."); };
    auto asAction = [](const QString &t) {
        return store::isAction(t) ? file_name_of(t).left(15) + QStringLiteral("...") : QString();
    };

    for (int i = 1; i <= model.eventCount(); ++i) {
        const QString &memo = model.events[i].memo;
        if ((caption == plain(memo) || (store::isAction(memo) && caption == asAction(memo))) &&
            text == memo)
            targets.append({false, i});
    }
    for (int i = 1; i <= model.recurringCount(); ++i) {
        const QString &memo = model.recurring[i].memo;
        if (caption == plain(memo) && text == memo) {
            targets.append({true, i});
        } else if (store::isAction(memo) && caption == asAction(memo)) {
            // A recurring action is looked up among the one-off events of the same number.
            if (i > model.eventCount())
                throw rt::RuntimeError::subscriptOutOfRange();
            if (text == model.events[i].memo)
                targets.append({false, i});
        }
    }
    return targets;
}

} // namespace dayview
