#include "mainwindow/DayView.h"

#include "runtime/RuntimeError.h"
#include "store/Recurrence.h"

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

namespace
{

QString shortened(const QString &text)
{
    return text.left(15) + QStringLiteral("...");
}

} // namespace

QString caption(const QString &text)
{
    return shortened(store::isAction(text) ? file_name_of(text) : text);
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
    for (int i = 1; i <= model.recurringCount(); ++i) {
        if (recurrence::inDayPopup(model.recurring[i], date, displayedYear))
            add(model.recurring[i].memo, true, i);
    }
    return items;
}

QList<Target> n1Targets(const QString &caption, const QString &text, const store::Model &model)
{
    QList<Target> targets;
    for (int i = 1; i <= model.eventCount(); ++i) {
        const QString &memo = model.events[i].memo;
        if ((caption == shortened(memo) ||
             (store::isAction(memo) && caption == shortened(file_name_of(memo)))) &&
            text == memo)
            targets.append({false, i});
    }
    for (int i = 1; i <= model.recurringCount(); ++i) {
        const QString &memo = model.recurring[i].memo;
        if (caption == shortened(memo) && text == memo) {
            targets.append({true, i});
        } else if (store::isAction(memo) && caption == shortened(file_name_of(memo))) {
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
