#include "backup/Summary.h"

#include "runtime/Numbers.h"
#include "store/DataStore.h"
#include "store/ini.h"

#include <QStringList>
#include <algorithm>

namespace backup
{
namespace
{

int count(const QString &file, const QString &section)
{
    std::int32_t n = 0;
    rt::tryCLng(ReadINI(file, section, store::kCountKey, QString()), n);
    return std::clamp(n, 0, store::kMaxItems);
}

QString plural(int n, const char *one, const char *many)
{
    return QString::number(n) + QLatin1Char(' ') + QLatin1String(n == 1 ? one : many);
}

// "2 more recurring than now", "1 event fewer than now"; nothing when equal.
QString difference(int copy, int current, const char *one, const char *many)
{
    if (copy == current)
        return {};
    const int by = std::abs(copy - current);
    return copy > current ? QString::number(by) + QStringLiteral(" more ") +
                                QLatin1String(by == 1 ? one : many) + QStringLiteral(" than now")
                          : QString::number(by) + QStringLiteral(" fewer ") +
                                QLatin1String(by == 1 ? one : many) + QStringLiteral(" than now");
}

} // namespace

Contents readContents(const QString &file)
{
    Contents contents;
    contents.events = count(file, store::kCountSection);
    contents.recurring = count(file, store::kRecurringCountSection);
    contents.categories = count(file, store::kCategoriesSection);
    const QString length =
        ReadINI(file, store::kPasswordCountSection, store::kCountKey, QStringLiteral("0"));
    contents.password = length != QLatin1String("0") && !length.isEmpty();
    if (contents.password) {
        QStringList codes;
        for (int k = 1; k <= count(file, store::kPasswordCountSection); ++k)
            codes << ReadINI(file, store::kPasswordSection, QString::number(k), QString());
        contents.passwordCodes = codes.join(QLatin1Char(','));
    }
    return contents;
}

bool changesPassword(const Contents &copy, const Contents &current)
{
    return copy.password != current.password || copy.passwordCodes != current.passwordCodes;
}

QString summary(const Contents &copy, const Contents &current, bool sameBytes)
{
    QString text = plural(copy.events, "event", "events") + QStringLiteral(", ") +
                   QString::number(copy.recurring) + QStringLiteral(" recurring");
    QStringList differences;
    for (const QString &part :
         {difference(copy.events, current.events, "event", "events"),
          difference(copy.recurring, current.recurring, "recurring", "recurring"),
          difference(copy.categories, current.categories, "category", "categories")}) {
        if (!part.isEmpty())
            differences << part;
    }
    if (changesPassword(copy, current)) {
        differences << (!copy.password     ? QStringLiteral("no password")
                        : current.password ? QStringLiteral("another password")
                                           : QStringLiteral("a password"));
    }
    if (sameBytes)
        differences << QStringLiteral("the same as now");
    else if (differences.isEmpty())
        differences << QStringLiteral("as many as now, with other details");
    return text + QStringLiteral("; ") + differences.join(QStringLiteral(", "));
}

} // namespace backup
