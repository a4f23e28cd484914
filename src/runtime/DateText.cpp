#include "runtime/DateText.h"

#include "runtime/Clock.h"
#include "runtime/Locale.h"
#include "runtime/RuntimeError.h"

#include <QVarLengthArray>
#include <array>
#include <cmath>

namespace rt
{
namespace
{

// A piece of the text: a run of digits or a run of letters, with the separator that stood
// before it (0 for none, ' ' for blanks only, else the one separator character).
struct Token {
    bool number = false;
    QStringView text;
    int value = 0;
    QChar separatorBefore;
};

struct Tokens {
    QVarLengthArray<Token, 12> items;
    QChar trailingSeparator;
};

// The locale's separators are single characters.
bool isSeparator(QChar c, const QString &separator)
{
    return !separator.isEmpty() && c == separator.front();
}

bool isSeparatorChar(QChar c, const RtLocale &locale)
{
    switch (c.unicode()) {
    case u'/':
    case u'-':
    case u',':
    case u':':
    case u'.':
        return true;
    default:
        return isSeparator(c, locale.dateSeparator) || isSeparator(c, locale.timeSeparator);
    }
}

std::optional<Tokens> tokenize(QStringView text, const RtLocale &locale)
{
    Tokens out;
    QChar separator;
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text[i];
        if (c.isSpace()) {
            if (separator.isNull())
                separator = QLatin1Char(' ');
            ++i;
        } else if (isSeparatorChar(c, locale)) {
            if (!separator.isNull() && separator != QLatin1Char(' '))
                return std::nullopt; // two separators in a row
            separator = c;
            ++i;
        } else if (c.isDigit() || c.isLetter()) {
            const bool digits = c.isDigit();
            qsizetype j = i;
            while (j < text.size() && (digits ? text[j].isDigit() : text[j].isLetter()))
                ++j;
            Token token{digits, text.sliced(i, j - i), 0, separator};
            if (digits) {
                if (token.text.size() > 9)
                    return std::nullopt;
                token.value = token.text.toInt();
            }
            out.items.append(token);
            separator = QChar();
            i = j;
        } else {
            return std::nullopt;
        }
    }
    out.trailingSeparator = separator == QLatin1Char(' ') ? QChar() : separator;
    return out;
}

bool isTimeSeparator(QChar c, const RtLocale &locale)
{
    if (c == QLatin1Char(':') || isSeparator(c, locale.timeSeparator))
        return true;
    return c == QLatin1Char('.') && locale.dateSeparator != QLatin1String(".");
}

bool isDateSeparator(QChar c, const RtLocale &locale)
{
    if (c.isNull() || c == QLatin1Char(' ') || c == QLatin1Char('/') || c == QLatin1Char('-') ||
        c == QLatin1Char(','))
        return true;
    return isSeparator(c, locale.dateSeparator) && !isTimeSeparator(c, locale);
}

// 1 for AM, 2 for PM, 0 for neither.
int amPmOf(QStringView word, const RtLocale &locale)
{
    auto is = [word](QStringView text) { return word.compare(text, Qt::CaseInsensitive) == 0; };
    if (is(u"AM") || is(u"A") || is(locale.amText))
        return 1;
    if (is(u"PM") || is(u"P") || is(locale.pmText))
        return 2;
    return 0;
}

int monthOf(QStringView word, const RtLocale &locale)
{
    for (int m = 0; m < 12; ++m) {
        if (word.compare(locale.monthNames.value(m), Qt::CaseInsensitive) == 0 ||
            word.compare(locale.monthShortNames.value(m), Qt::CaseInsensitive) == 0)
            return m + 1;
    }
    return 0;
}

bool isDayName(QStringView word, const RtLocale &locale)
{
    for (const QString &name : locale.weekdayNames) {
        if (word.compare(name, Qt::CaseInsensitive) == 0 ||
            word.compare(QStringView(name).left(3), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

struct TimeOfDay {
    qsizetype first = -1; // token range [first, last]
    qsizetype last = -1;
    double fraction = 0;
};

// Finds the time in the tokens: h:m, h:m:s, or a lone hour, each with an optional AM/PM.
// Empty optional: the text is no valid date/time; first == -1: there is no time.
std::optional<TimeOfDay> findTime(const Tokens &tokens, const RtLocale &locale)
{
    const auto &t = tokens.items;
    if (!t.isEmpty() && isTimeSeparator(t[0].separatorBefore, locale))
        return std::nullopt; // ":30"
    TimeOfDay time;
    qsizetype start = -1;
    for (qsizetype i = 0; i + 1 < t.size(); ++i) {
        if (t[i].number && isTimeSeparator(t[i + 1].separatorBefore, locale)) {
            start = i;
            break;
        }
    }
    QVarLengthArray<int, 4> fields;
    qsizetype next = 0;
    if (start >= 0) {
        next = start;
        do {
            if (!t[next].number || t[next].text.size() > 2)
                return std::nullopt;
            fields.append(t[next].value);
            ++next;
        } while (next < t.size() && isTimeSeparator(t[next].separatorBefore, locale));
        if (fields.size() > 3)
            return std::nullopt;
        if (next == t.size() && isTimeSeparator(tokens.trailingSeparator, locale))
            return std::nullopt; // "9:"
    } else {
        // A lone hour counts only with AM/PM after it.
        for (qsizetype i = 0; i + 1 < t.size(); ++i) {
            if (t[i].number && !t[i + 1].number && amPmOf(t[i + 1].text, locale) &&
                t[i].text.size() <= 2) {
                start = i;
                fields.append(t[i].value);
                next = i + 1;
                break;
            }
        }
        if (start < 0)
            return time;
    }
    int amPm = 0;
    if (next < t.size() && !t[next].number &&
        (t[next].separatorBefore.isNull() || t[next].separatorBefore == QLatin1Char(' '))) {
        amPm = amPmOf(t[next].text, locale);
        if (amPm)
            ++next;
    }
    while (fields.size() < 3)
        fields.append(0);
    int hour = fields[0];
    if (hour > 23 || fields[1] > 59 || fields[2] > 59)
        return std::nullopt;
    if (amPm == 1 && hour == 12)
        hour = 0;
    else if (hour < 12 && amPm == 2)
        hour += 12;
    time.first = start;
    time.last = next - 1;
    time.fraction = (hour * 3600 + fields[1] * 60 + fields[2]) / 86400.0;
    return time;
}

int windowYear(int year)
{
    return year < 50 ? 2000 + year : year < 100 ? 1900 + year : year;
}

std::optional<Date> makeDate(int year, int month, int day)
{
    if (year < 0 || year > 9999)
        return std::nullopt;
    year = windowYear(year);
    if (year < 100 || !isValidDate(year, month, day))
        return std::nullopt;
    return DateSerial(year, month, day);
}

enum Field { M, D, Y };

std::optional<Date> threeNumbers(int a, int b, int c, RtLocale::Order order)
{
    using Orders = std::array<std::array<Field, 3>, 4>;
    static constexpr Orders monthFirst = {{{M, D, Y}, {Y, M, D}, {D, M, Y}, {Y, D, M}}};
    static constexpr Orders dayFirst = {{{D, M, Y}, {Y, M, D}, {M, D, Y}, {Y, D, M}}};
    static constexpr Orders yearFirst = {{{Y, M, D}, {M, D, Y}, {D, M, Y}, {Y, D, M}}};
    const Orders &orders = order == RtLocale::Order::MonthDayYear   ? monthFirst
                           : order == RtLocale::Order::DayMonthYear ? dayFirst
                                                                    : yearFirst;
    const int values[3] = {a, b, c};
    for (const auto &fields : orders) {
        int part[3] = {};
        for (int i = 0; i < 3; ++i)
            part[fields[i]] = values[i];
        if (const auto date = makeDate(part[Y], part[M], part[D]))
            return date;
    }
    return std::nullopt;
}

std::optional<Date> twoNumbers(int a, int b, RtLocale::Order order)
{
    const int thisYear = Year(Clock::Now());
    const bool dayFirst = order == RtLocale::Order::DayMonthYear;
    const auto monthDay = makeDate(thisYear, dayFirst ? b : a, dayFirst ? a : b);
    if (monthDay)
        return monthDay;
    if (const auto other = makeDate(thisYear, dayFirst ? a : b, dayFirst ? b : a))
        return other;
    if (const auto monthYear = makeDate(b, a, 1))
        return monthYear;
    return makeDate(a, b, 1);
}

// One month name with one or two numbers: the numbers are the day and/or the year.
std::optional<Date> withMonthName(int month, const QVarLengthArray<int, 4> &numbers)
{
    if (numbers.size() == 1) {
        if (const auto day = makeDate(Year(Clock::Now()), month, numbers[0]))
            return day;
        return makeDate(numbers[0], month, 1);
    }
    if (const auto dayYear = makeDate(numbers[1], month, numbers[0]))
        return dayYear;
    return makeDate(numbers[0], month, numbers[1]);
}

// The date tokens [first, first + count). The first one's separator is not looked at: it is
// the start of the text or what parted the date from the time.
std::optional<Date> parseDatePart(const Token *tokens, qsizetype count, const RtLocale &locale)
{
    QVarLengthArray<int, 4> numbers;
    int month = 0;
    for (qsizetype i = 0; i < count; ++i) {
        const Token &token = tokens[i];
        if (i > 0 && !isDateSeparator(token.separatorBefore, locale))
            return std::nullopt;
        if (token.number) {
            if (numbers.size() == 3)
                return std::nullopt;
            numbers.append(token.value);
        } else if (const int m = monthOf(token.text, locale); m && !month) {
            month = m;
        } else if (!isDayName(token.text, locale)) {
            return std::nullopt;
        }
    }
    if (month) {
        if (numbers.isEmpty() || numbers.size() > 2)
            return std::nullopt;
        return withMonthName(month, numbers);
    }
    if (numbers.size() == 3)
        return threeNumbers(numbers[0], numbers[1], numbers[2], locale.dateOrder);
    if (numbers.size() == 2)
        return twoNumbers(numbers[0], numbers[1], locale.dateOrder);
    return std::nullopt;
}

bool separatesDateAndTime(QChar c)
{
    return c.isNull() || c == QLatin1Char(' ') || c == QLatin1Char(',');
}

QString twoDigits(int n)
{
    return QString::number(n).rightJustified(2, QLatin1Char('0'));
}

QString dateText(Date whole, const RtLocale &locale)
{
    const int y = Year(whole);
    const int m = Month(whole);
    const int d = Day(whole);
    const QString day = locale.dayLeadingZero ? twoDigits(d) : QString::number(d);
    const QString month = locale.monthLeadingZero ? twoDigits(m) : QString::number(m);
    const QString year = QString::number(y).rightJustified(4, QLatin1Char('0'));
    const QString &sep = locale.dateSeparator;
    switch (locale.dateOrder) {
    case RtLocale::Order::DayMonthYear:
        return day + sep + month + sep + year;
    case RtLocale::Order::YearMonthDay:
        return year + sep + month + sep + day;
    case RtLocale::Order::MonthDayYear:
        break;
    }
    return month + sep + day + sep + year;
}

QString timeText(int seconds, const RtLocale &locale, bool withSeconds = true)
{
    const int h = seconds / 3600;
    QString rest = locale.timeSeparator + twoDigits(seconds / 60 % 60);
    if (withSeconds)
        rest += locale.timeSeparator + twoDigits(seconds % 60);
    if (!locale.twelveHour)
        return (locale.hourLeadingZero ? twoDigits(h) : QString::number(h)) + rest;
    const int h12 = h % 12 == 0 ? 12 : h % 12;
    return (locale.hourLeadingZero ? twoDigits(h12) : QString::number(h12)) + rest +
           QLatin1Char(' ') + (h < 12 ? locale.amText : locale.pmText);
}

} // namespace

std::optional<Date> parseDate(const QString &text)
{
    const RtLocale &locale = RtLocale::current();
    const QString trimmed = text.trimmed();
    const auto tokens = tokenize(trimmed, locale);
    if (!tokens || tokens->items.isEmpty())
        return std::nullopt;
    // Separators part fields; one that opens or closes the text leaves a field out, as in
    // "/4/2026" or "7/29/2004/".
    if (const QChar first = tokens->items.front().separatorBefore;
        (!first.isNull() && first != QLatin1Char(' ')) ||
        (!tokens->trailingSeparator.isNull() && isDateSeparator(tokens->trailingSeparator, locale)))
        return std::nullopt;
    const auto time = findTime(*tokens, locale);
    if (!time)
        return std::nullopt;
    const auto &all = tokens->items;
    if (time->first < 0)
        return parseDatePart(all.data(), all.size(), locale);

    // The date stands wholly before or wholly after the time.
    const qsizetype before = time->first;
    const qsizetype after = all.size() - time->last - 1;
    if (before && after)
        return std::nullopt;
    if (!before && !after)
        return time->fraction;
    const qsizetype first = before ? 0 : time->last + 1;
    if (!separatesDateAndTime(all[before ? time->first : first].separatorBefore))
        return std::nullopt;
    const auto date = parseDatePart(all.data() + first, before ? before : after, locale);
    if (!date)
        return std::nullopt;
    // Before 30 December 1899 the whole part is negative and the time still counts forward
    // from its midnight: 6:00 on day -2 is -2.25.
    return *date < 0 ? *date - time->fraction : *date + time->fraction;
}

bool IsDate(const QString &text)
{
    return parseDate(text).has_value();
}

Date CDate(const QString &text)
{
    if (const auto date = parseDate(text))
        return *date;
    throw RuntimeError::typeMismatch();
}

bool tryCDate(const QString &text, Date &field)
{
    const auto date = parseDate(text);
    if (date)
        field = *date;
    return date.has_value();
}

QString CStr(Date value)
{
    const RtLocale &locale = RtLocale::current();
    double whole = std::trunc(value);
    int seconds = int(std::floor(std::fabs(value - whole) * 86400.0 + 0.5));
    if (seconds >= 86400) {
        seconds -= 86400;
        whole += value < 0 ? -1 : 1;
    }
    if (whole == 0)
        return timeText(seconds, locale);
    if (seconds == 0)
        return dateText(whole, locale);
    return dateText(whole, locale) + QLatin1Char(' ') + timeText(seconds, locale);
}

QString ShortTimeText(Date value)
{
    const double fraction = std::fabs(value - std::trunc(value));
    const int minutes = int(std::floor(fraction * 1440.0 + 0.5)) % 1440;
    return timeText(minutes * 60, RtLocale::current(), false);
}

QString WeekdayName(int n)
{
    const RtLocale &locale = RtLocale::current();
    return locale.weekdayNames.value((locale.firstDayOfWeek - 1 + n - 1) % 7);
}

} // namespace rt
