#include "runtime/Numbers.h"

#include "runtime/Locale.h"
#include "runtime/RuntimeError.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace rt
{
namespace
{

enum class Fault { None, TypeMismatch, Overflow };

struct Conversion {
    double value = 0;
    Fault fault = Fault::None;
};

bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

int digitValue(QChar c, int radix)
{
    return int(QStringView(u"0123456789ABCDEF").first(radix).indexOf(c.toUpper()));
}

// The digits of a decimal number, kept as text so that the conversion to double rounds once.
struct Decimal {
    bool negative = false;
    std::string whole;
    std::string fraction;
    long long exponent = 0; // saturates far beyond any double's range
};

// Empty when the number is too large for a double; one too small becomes 0.
std::optional<double> toDouble(const Decimal &d)
{
    const std::string text = (d.whole.empty() ? std::string("0") : d.whole) + '.' + d.fraction +
                             'e' + std::to_string(d.exponent);
    double value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec ==
        std::errc::result_out_of_range) {
        // The place of the first significant digit tells overflow from underflow.
        const auto first = d.whole.find_first_not_of('0');
        const long long magnitude =
            first != std::string::npos
                ? static_cast<long long>(d.whole.size() - first) - 1 + d.exponent
                : -static_cast<long long>(d.fraction.find_first_not_of('0')) - 1 + d.exponent;
        if (magnitude > 0)
            return std::nullopt;
        value = 0;
    }
    return d.negative ? -value : value;
}

// Hexadecimal and octal values that fill the width's top bit are negative: &HFFFF is -1 as a
// 16-bit number.
double twosComplement(double value, int bits)
{
    const double span = std::ldexp(1.0, bits);
    return value >= span / 2 ? value - span : value;
}

class Cursor
{
public:
    explicit Cursor(QStringView text) : text_(text) {}

    bool atEnd() const { return pos_ >= text_.size(); }
    QChar peek(qsizetype ahead = 0) const
    {
        return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : QChar();
    }
    void skip() { ++pos_; }
    void skipBlanks()
    {
        while (peek().isSpace())
            ++pos_;
    }
    bool take(QChar c)
    {
        if (peek() != c)
            return false;
        ++pos_;
        return true;
    }
    bool take(const QString &token)
    {
        if (token.isEmpty() || !text_.sliced(pos_).startsWith(token))
            return false;
        pos_ += token.size();
        return true;
    }
    bool takeSign(bool &negative)
    {
        if (peek() != QLatin1Char('+') && peek() != QLatin1Char('-'))
            return false;
        negative = peek() == QLatin1Char('-');
        ++pos_;
        return true;
    }
    void takeDigits(std::string &digits)
    {
        for (; isAsciiDigit(peek()); ++pos_)
            digits += char(peek().unicode());
    }

    // An exponent marker with an optionally signed run of digits; anything less is left.
    bool takeExponent(QStringView markers, long long &exponent)
    {
        const qsizetype signLength =
            peek(1) == QLatin1Char('+') || peek(1) == QLatin1Char('-') ? 1 : 0;
        if (!markers.contains(peek()) || !isAsciiDigit(peek(1 + signLength)))
            return false;
        const bool negative = peek(1) == QLatin1Char('-');
        pos_ += 1 + signLength;
        for (exponent = 0; isAsciiDigit(peek()); ++pos_) {
            if (exponent < 1'000'000)
                exponent = exponent * 10 + (peek().unicode() - '0');
        }
        if (negative)
            exponent = -exponent;
        return true;
    }

    // "&H" or "&O" and the digits after it, counted in `digits`.
    bool takeRadixNumber(double &value, qsizetype &digits)
    {
        const QChar kind = peek(1).toUpper();
        const int radix = kind == QLatin1Char('H') ? 16 : kind == QLatin1Char('O') ? 8 : 0;
        if (peek() != QLatin1Char('&') || radix == 0)
            return false;
        pos_ += 2;
        value = 0;
        digits = 0;
        for (int digit; (digit = digitValue(peek(), radix)) >= 0; ++pos_, ++digits)
            value = value * radix + digit;
        return true;
    }

private:
    QStringView text_;
    qsizetype pos_ = 0;
};

// What may stand around a number: blanks, one sign or a pair of parentheses, one currency
// symbol. Each call reads one side.
struct Affixes {
    bool sign = false;
    bool negative = false;
    bool currency = false;
    bool openParen = false;
    bool closeParen = false;

    void read(Cursor &in, const RtLocale &locale, bool leading)
    {
        for (;;) {
            if (in.peek().isSpace())
                in.skip();
            else if (!sign && !openParen && in.takeSign(negative))
                sign = true;
            else if (!currency && in.take(locale.currencySymbol))
                currency = true;
            else if (leading && !sign && !openParen && in.take(QLatin1Char('(')))
                openParen = true;
            else if (!leading && openParen && !closeParen && in.take(QLatin1Char(')')))
                closeParen = true;
            else
                return;
        }
    }
};

// Text to number the way CDbl reads it; hexadecimal and octal values at the given width.
Conversion convert(QStringView text, int radixBits)
{
    const RtLocale &locale = RtLocale::current();
    Cursor in(text);
    Affixes affixes;
    affixes.read(in, locale, true);

    double radixValue = 0;
    qsizetype radixDigits = 0;
    if (in.takeRadixNumber(radixValue, radixDigits)) {
        in.skipBlanks();
        if (radixDigits == 0 || !in.atEnd() || affixes.sign || affixes.currency ||
            affixes.openParen)
            return {0, Fault::TypeMismatch};
        if (radixValue >= std::ldexp(1.0, radixBits))
            return {0, Fault::Overflow};
        return {twosComplement(radixValue, radixBits)};
    }

    Decimal number;
    in.takeDigits(number.whole);
    while (!number.whole.empty() && in.take(locale.thousandsSeparator)) {
        if (!isAsciiDigit(in.peek()))
            return {0, Fault::TypeMismatch};
        in.takeDigits(number.whole);
    }
    if (in.take(locale.decimalSeparator))
        in.takeDigits(number.fraction);
    if (number.whole.empty() && number.fraction.empty())
        return {0, Fault::TypeMismatch};
    in.takeExponent(u"eE", number.exponent);

    affixes.read(in, locale, false);
    if (!in.atEnd() || affixes.openParen != affixes.closeParen)
        return {0, Fault::TypeMismatch};
    number.negative = affixes.negative || affixes.openParen;
    const std::optional<double> value = toDouble(number);
    if (!value)
        return {0, Fault::Overflow};
    return {*value};
}

// Whole numbers round half to even before the range check, so 32767.5 overflows CInt.
template <typename Int> Conversion convertWhole(const QString &text)
{
    Conversion result = convert(text, std::numeric_limits<Int>::digits + 1);
    if (result.fault == Fault::None) {
        result.value = std::nearbyint(result.value);
        if (result.value < std::numeric_limits<Int>::min() ||
            result.value > std::numeric_limits<Int>::max())
            result.fault = Fault::Overflow;
    }
    return result;
}

// CDbl reads hexadecimal text as a Long, the widest whole type.
Conversion convertDouble(const QString &text)
{
    return convert(text, 32);
}

template <typename T> T checked(const Conversion &result)
{
    if (result.fault == Fault::Overflow)
        throw RuntimeError::overflow();
    if (result.fault == Fault::TypeMismatch)
        throw RuntimeError::typeMismatch();
    return T(result.value);
}

template <typename T> bool assignIfValid(const Conversion &result, T &field)
{
    if (result.fault != Fault::None)
        return false;
    field = T(result.value);
    return true;
}

} // namespace

std::int32_t CLng(const QString &text)
{
    return checked<std::int32_t>(convertWhole<std::int32_t>(text));
}

std::int16_t CInt(const QString &text)
{
    return checked<std::int16_t>(convertWhole<std::int16_t>(text));
}

double CDbl(const QString &text)
{
    return checked<double>(convertDouble(text));
}

bool tryCLng(const QString &text, std::int32_t &field)
{
    return assignIfValid(convertWhole<std::int32_t>(text), field);
}

bool tryCInt(const QString &text, std::int16_t &field)
{
    return assignIfValid(convertWhole<std::int16_t>(text), field);
}

bool tryCDbl(const QString &text, double &field)
{
    return assignIfValid(convertDouble(text), field);
}

double Val(const QString &text)
{
    QString compact = text;
    compact.remove(QLatin1Char(' ')).remove(QLatin1Char('\t')).remove(QLatin1Char('\n'));
    Cursor in(compact);

    // A hexadecimal or octal value is an Integer when it fits one, else a Long.
    double radixValue = 0;
    qsizetype radixDigits = 0;
    if (in.takeRadixNumber(radixValue, radixDigits)) {
        if (radixValue < 0x10000)
            return twosComplement(radixValue, 16);
        if (radixValue < 0x100000000)
            return twosComplement(radixValue, 32);
        return radixValue;
    }

    Decimal number;
    in.takeSign(number.negative);
    in.takeDigits(number.whole);
    if (in.take(QLatin1Char('.')))
        in.takeDigits(number.fraction);
    if (number.whole.empty() && number.fraction.empty())
        return 0;
    // The older "1d3" is an exponent as well as "1e3".
    in.takeExponent(u"eEdD", number.exponent);
    const std::optional<double> value = toDouble(number);
    if (!value)
        return number.negative ? -HUGE_VAL : HUGE_VAL;
    return *value;
}

bool numberEqualsText(double number, const QString &text)
{
    return CDbl(text) == number;
}

} // namespace rt
