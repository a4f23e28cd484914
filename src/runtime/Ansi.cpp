#include "runtime/Ansi.h"

#include <array>

namespace rt
{
namespace
{

// Bytes 0x80-0x9F of Windows-1252. The five bytes the code page leaves undefined map to
// the control character of the same code, so every byte has a character of its own.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98-9F
};

char fromUnicode(char32_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (std::size_t i = 0; i < kHigh.size(); ++i) {
        if (kHigh[i] == c)
            return static_cast<char>(0x80 + i);
    }
    return '?';
}

} // namespace

QByteArray toAnsi(QStringView text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    char *dst = out.data();
    const char16_t *src = reinterpret_cast<const char16_t *>(text.utf16());
    const qsizetype n = text.size();
    qsizetype used = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = src[i];
        if (QChar::isHighSurrogate(c) && i + 1 < n && QChar::isLowSurrogate(src[i + 1])) {
            ++i; // one character outside the code page, however many code units it takes
            dst[used++] = '?';
        } else {
            dst[used++] = fromUnicode(c);
        }
    }
    out.truncate(used);
    return out;
}

QString fromAnsi(const char *data, qsizetype size)
{
    QString out(size, Qt::Uninitialized);
    char16_t *dst = reinterpret_cast<char16_t *>(out.data());
    for (qsizetype i = 0; i < size; ++i) {
        const auto b = static_cast<unsigned char>(data[i]);
        dst[i] = (b >= 0x80 && b < 0xA0) ? kHigh[b - 0x80] : char16_t(b);
    }
    return out;
}

QString fromAnsi(const QByteArray &bytes)
{
    return fromAnsi(bytes.constData(), bytes.size());
}

} // namespace rt
