#include "ical/ImportPlan.h"

#include "mainwindow/EventLookup.h"
#include "runtime/Ansi.h"
#include "runtime/DateText.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"

#include <QDate>
#include <QRegularExpression>
#include <QSet>

namespace ical
{
namespace
{

// What the store reads back of a value.
constexpr qsizetype kLongestMemo = 254;

QString typeOf(Kind kind)
{
    switch (kind) {
    case Kind::Daily:
        return store::kDaily;
    case Kind::Weekly:
        return store::kWeekly;
    case Kind::Monthly:
        return store::kMonthly;
    default:
        return store::kYearly;
    }
}

bool importable(const Item &item, const QString &problem)
{
    return item.chosen && item.kind != Kind::NotImported && problem.isEmpty();
}

// Every category the items need exists afterwards; gives the store's spelling of each.
QString categoryFor(const QString &wanted, QStringList &names)
{
    if (wanted.isEmpty())
        return wanted;
    for (qsizetype i = 2; i < names.size(); ++i) {
        if (names[i].compare(wanted, Qt::CaseInsensitive) == 0)
            return names[i];
    }
    int count = int(names.size()) - 1;
    if (count == 0) {
        store::writeNewCategory(count++, store::kMoreCategory);
        names << store::kMoreCategory;
    }
    store::writeNewCategory(count, wanted);
    names << wanted;
    return wanted;
}

} // namespace

QString storedMemo(const QString &text, QStringList *changes)
{
    static const QRegularExpression lineBreak(QStringLiteral("\r\n|\r|\n"));
    QString memo = QString(text).replace(lineBreak, QStringLiteral(" ")).trimmed();
    if (changes && memo != text.trimmed())
        *changes << QStringLiteral("line breaks became spaces");
    const QString ansi = rt::fromAnsi(rt::toAnsi(memo));
    if (changes && ansi != memo)
        *changes << QStringLiteral("characters the calendar cannot hold became ?");
    if (ansi.size() > kLongestMemo) {
        if (changes)
            *changes << QStringLiteral("memo cut to %1 characters").arg(kLongestMemo);
        return ansi.left(kLongestMemo).trimmed();
    }
    return ansi;
}

QString kindText(Kind kind)
{
    switch (kind) {
    case Kind::OneOff:
        return QStringLiteral("One-off");
    case Kind::NotImported:
        return QStringLiteral("Not imported");
    default:
        return typeOf(kind);
    }
}

QString whenText(const Item &item)
{
    switch (item.kind) {
    case Kind::OneOff:
        return rt::CStr(item.date);
    case Kind::Daily:
        return QStringLiteral("every day");
    case Kind::Weekly:
        return QStringLiteral("every ") + item.day;
    case Kind::Monthly:
        return QStringLiteral("day %1 of every month").arg(item.day);
    case Kind::Yearly:
        return QStringLiteral("every ") +
               QDate(2000, item.month.toInt(), item.day.toInt()).toString(QStringLiteral("MMMM d"));
    case Kind::NotImported:
        break;
    }
    return {};
}

QStringList problems(const QList<Item> &items, const store::Model &model)
{
    QStringList result;
    QSet<QString> taken;
    for (const Item &item : items) {
        QString problem;
        if (item.chosen && item.kind != Kind::NotImported && !store::isAction(item.memo)) {
            const QString memo = item.memo.trimmed();
            if (memo.isEmpty())
                problem = QStringLiteral("no memo: type one to import it");
            else if (!eventlookup::check_memo(model, memo))
                problem = QStringLiteral("memo already exists: rename it to import it");
            else if (taken.contains(memo))
                problem = QStringLiteral("same memo as an event above: rename one");
            taken.insert(memo);
        }
        result << problem;
    }
    return result;
}

int writeItems(const QList<Item> &items, const store::Model &model, const QString &category)
{
    const QStringList blocked = problems(items, model);
    const store::ChangeScope scope(files::dataIni());
    store::WriteBatch batch;
    QStringList names = store::readStoredCategoryNames();
    int events = store::readCount(store::kCountSection);
    int recurring = store::readCount(store::kRecurringCountSection);
    int written = 0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const Item &item = items[i];
        if (!importable(item, blocked[i]))
            continue;
        const QString cat = categoryFor(item.category.isEmpty() ? category : item.category, names);
        if (item.kind == Kind::OneOff)
            store::writeNewEvent(++events, {rt::CStr(item.date), item.time, item.memo, cat});
        else
            store::writeNewRecurring(
                ++recurring, {typeOf(item.kind), item.day, item.month, item.time, item.memo, cat});
        ++written;
    }
    return batch.commit() ? written : -1;
}

} // namespace ical
