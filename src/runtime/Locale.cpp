#include "runtime/Locale.h"

#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace rt
{
namespace
{

std::optional<RtLocale> &pinned()
{
    static std::optional<RtLocale> locale;
    return locale;
}

// Letters of a Qt format string outside its quoted literals.
QString formatLetters(const QString &format)
{
    QString letters;
    bool quoted = false;
    for (const QChar c : format) {
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (!quoted)
            letters += c;
    }
    return letters;
}

void readDateFormat(const QString &format, RtLocale &out)
{
    const QString f = formatLetters(format);
    const qsizetype d = f.indexOf(QLatin1Char('d'));
    const qsizetype m = f.indexOf(QLatin1Char('M'));
    const qsizetype y = f.indexOf(QLatin1Char('y'));
    if (y >= 0 && y < m && y < d)
        out.dateOrder = RtLocale::Order::YearMonthDay;
    else if (d >= 0 && d < m)
        out.dateOrder = RtLocale::Order::DayMonthYear;
    else
        out.dateOrder = RtLocale::Order::MonthDayYear;
    out.dayLeadingZero = f.contains(QLatin1String("dd"));
    out.monthLeadingZero = f.contains(QLatin1String("MM"));

    // The separator is the first run of non-letters after the first field.
    const qsizetype first =
        std::min({d < 0 ? f.size() : d, m < 0 ? f.size() : m, y < 0 ? f.size() : y});
    qsizetype i = first;
    while (i < f.size() && f[i].isLetter())
        ++i;
    qsizetype j = i;
    while (j < f.size() && !f[j].isLetter())
        ++j;
    const QString separator = f.mid(i, j - i).trimmed();
    if (!separator.isEmpty())
        out.dateSeparator = separator.left(1);
}

void readTimeFormat(const QString &format, RtLocale &out)
{
    const QString f = formatLetters(format);
    out.twelveHour = f.contains(QLatin1Char('A')) || f.contains(QLatin1Char('a'));
    out.hourLeadingZero = f.contains(QLatin1String("hh")) || f.contains(QLatin1String("HH"));
    const qsizetype h = f.indexOf(QRegularExpression(QStringLiteral("[hH]")));
    if (h >= 0) {
        qsizetype i = h;
        while (i < f.size() && (f[i] == QLatin1Char('h') || f[i] == QLatin1Char('H')))
            ++i;
        if (i < f.size() && !f[i].isLetter() && !f[i].isSpace())
            out.timeSeparator = f[i];
    }
}

} // namespace

RtLocale RtLocale::fromQLocale(const QLocale &requested)
{
    const bool plain = requested.language() == QLocale::C;
    const QLocale locale = plain ? QLocale(QLocale::English, QLocale::UnitedStates) : requested;

    RtLocale out;
    readDateFormat(locale.dateFormat(QLocale::ShortFormat), out);
    readTimeFormat(locale.timeFormat(QLocale::LongFormat), out);
    if (!locale.amText().isEmpty())
        out.amText = locale.amText();
    if (!locale.pmText().isEmpty())
        out.pmText = locale.pmText();
    out.decimalSeparator = locale.decimalPoint();
    out.thousandsSeparator = locale.groupSeparator();
    out.currencySymbol = locale.currencySymbol();

    // Qt counts weekdays from Monday; the run-time from Sunday.
    for (int day = 0; day < 7; ++day)
        out.weekdayNames << locale.dayName(day == 0 ? 7 : day, QLocale::LongFormat);
    out.firstDayOfWeek = locale.firstDayOfWeek() % 7 + 1;
    for (int month = 1; month <= 12; ++month) {
        out.monthNames << locale.monthName(month, QLocale::LongFormat);
        out.monthShortNames << locale.monthName(month, QLocale::ShortFormat);
    }
    return out;
}

const RtLocale &RtLocale::current()
{
    if (pinned())
        return *pinned();
    static const RtLocale system = fromQLocale(QLocale::system());
    return system;
}

void RtLocale::setForTest(const QLocale &locale)
{
    pinned() = fromQLocale(locale);
}

void RtLocale::resetToSystem()
{
    pinned().reset();
}

} // namespace rt
