#include "runtime/Ansi.h"

#include "runtime/CodePage.h"

#include <QHash>
#include <array>
#include <cerrno>
#include <cstring>
#include <iconv.h>
#include <memory>
#include <mutex>

namespace rt
{
namespace
{

// Bytes 0x80-0x9F of Windows-1252, built in: the code page of most users needs no converter
// of the system's.
constexpr std::array<char16_t, 32> k1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98-9F
};

// The character that stands for a byte the code page leaves undefined.
char16_t undefinedByte(unsigned char b)
{
    return b < 0xA0 ? char16_t(b) : char16_t(0xF700 + b);
}

bool isUndefinedByteMark(char16_t c)
{
    return (c >= 0x80 && c < 0xA0) || (c >= 0xF7A0 && c <= 0xF7FF);
}

class Iconv
{
public:
    Iconv(const char *to, const char *from) : cd_(::iconv_open(to, from)) {}
    ~Iconv()
    {
        if (valid())
            ::iconv_close(cd_);
    }
    Q_DISABLE_COPY_MOVE(Iconv)

    bool valid() const { return cd_ != iconv_t(-1); }

    // Converts what it can; stops at the first sequence it cannot convert.
    std::size_t run(char **in, std::size_t *inLeft, char **out, std::size_t *outLeft)
    {
        return ::iconv(cd_, in, inLeft, out, outLeft);
    }
    void reset() { ::iconv(cd_, nullptr, nullptr, nullptr, nullptr); }

private:
    iconv_t cd_;
};

// One code page. Single-byte ones go through tables (built with the system's converter);
// the double-byte ones of East Asia through the system's converter itself.
class Converter
{
public:
    explicit Converter(int codePage) : codePage_(codePage)
    {
        const QByteArray name = "CP" + QByteArray::number(codePage);
        if (isDoubleByteCodePage(codePage)) {
            decoder_ = std::make_unique<Iconv>("UTF-16LE", name.constData());
            encoder_ = std::make_unique<Iconv>(name.constData(), "UTF-16LE");
            if (decoder_->valid() && encoder_->valid())
                return;
            decoder_.reset();
            encoder_.reset();
            codePage_ = 1252;
        }
        buildTable(name);
    }

    int codePage() const { return codePage_; }

    void decode(QString &out, const char *data, qsizetype size)
    {
        const qsizetype start = out.size();
        if (!decoder_) {
            out.resize(start + size);
            char16_t *dst = reinterpret_cast<char16_t *>(out.data()) + start;
            for (qsizetype i = 0; i < size; ++i)
                dst[i] = toUnicode_[static_cast<unsigned char>(data[i])];
            return;
        }
        const std::lock_guard lock(mutex_);
        out.resize(start + 2 * size); // a character outside the BMP takes two units
        char *in = const_cast<char *>(data);
        std::size_t inLeft = std::size_t(size);
        char *dst = reinterpret_cast<char *>(out.data() + start);
        std::size_t outLeft = std::size_t(4 * size);
        decoder_->reset();
        while (inLeft > 0 && decoder_->run(&in, &inLeft, &dst, &outLeft) == std::size_t(-1)) {
            if (errno == E2BIG)
                break;
            // A sequence the code page does not define: its first byte stands for itself.
            const char16_t c = undefinedByte(static_cast<unsigned char>(*in));
            std::memcpy(dst, &c, 2);
            dst += 2;
            outLeft -= 2;
            ++in;
            --inLeft;
            decoder_->reset();
        }
        decoder_->run(nullptr, nullptr, &dst, &outLeft);
        out.resize((dst - reinterpret_cast<char *>(out.data())) / 2);
    }

    QByteArray encode(QStringView text, bool *lossless)
    {
        QByteArray out;
        out.reserve(text.size() * (decoder_ ? 2 : 1));
        bool complete = true;
        const qsizetype n = text.size();
        for (qsizetype i = 0; i < n;) {
            const char16_t c = text[i].unicode();
            const bool pair = QChar::isHighSurrogate(c) && i + 1 < n &&
                              QChar::isLowSurrogate(text[i + 1].unicode());
            const QStringView one = text.sliced(i, pair ? 2 : 1);
            i += one.size();
            if (c < 0x80) {
                out.append(char(c));
            } else if (!encodeOne(one, out)) {
                out.append('?'); // one character, however many code units it takes
                complete = false;
            }
        }
        if (lossless)
            *lossless = complete;
        return out;
    }

private:
    void buildTable(const QByteArray &name)
    {
        for (int b = 0; b < 0x80; ++b)
            toUnicode_[b] = char16_t(b);
        Iconv table("UTF-16LE", name.constData());
        if (codePage_ == 1252 || !table.valid()) {
            codePage_ = 1252;
            for (int b = 0x80; b < 0x100; ++b)
                toUnicode_[b] = b < 0xA0 ? k1252High[b - 0x80] : char16_t(b);
        } else {
            for (int b = 0x80; b < 0x100; ++b) {
                char byte = char(b);
                char16_t units[2] = {};
                char *in = &byte;
                char *dst = reinterpret_cast<char *>(units);
                std::size_t inLeft = 1;
                std::size_t outLeft = sizeof units;
                table.reset();
                // Some converters hold a letter back until they know no accent follows.
                const bool one = table.run(&in, &inLeft, &dst, &outLeft) != std::size_t(-1) &&
                                 table.run(nullptr, nullptr, &dst, &outLeft) != std::size_t(-1) &&
                                 outLeft == 2;
                toUnicode_[b] = one ? units[0] : undefinedByte(static_cast<unsigned char>(b));
            }
        }
        for (int b = 0x80; b < 0x100; ++b)
            fromUnicode_.insert(toUnicode_[b], char(b));
    }

    bool encodeOne(QStringView one, QByteArray &out)
    {
        if (!encoder_) {
            const auto found = fromUnicode_.constFind(one[0].unicode());
            if (one.size() == 1 && found != fromUnicode_.constEnd()) {
                out.append(*found);
                return true;
            }
            // A letter with its accent in one character, where the code page has them apart
            // (Vietnamese).
            const QString parts = one.toString().normalized(QString::NormalizationForm_D);
            if (parts == one)
                return false;
            QByteArray bytes;
            for (const QChar part : parts) {
                const auto byte = fromUnicode_.constFind(part.unicode());
                if (part.unicode() < 0x80)
                    bytes.append(char(part.unicode()));
                else if (byte != fromUnicode_.constEnd())
                    bytes.append(*byte);
                else
                    return false;
            }
            out.append(bytes);
            return true;
        }
        const std::lock_guard lock(mutex_);
        char bytes[8];
        char *in = reinterpret_cast<char *>(const_cast<QChar *>(one.data()));
        std::size_t inLeft = std::size_t(one.size() * 2);
        char *dst = bytes;
        std::size_t outLeft = sizeof bytes;
        encoder_->reset();
        if (encoder_->run(&in, &inLeft, &dst, &outLeft) != std::size_t(-1) && inLeft == 0) {
            out.append(bytes, dst - bytes);
            return true;
        }
        const char16_t c = one[0].unicode();
        if (one.size() == 1 && isUndefinedByteMark(c)) {
            out.append(char(c < 0xA0 ? c : c - 0xF700));
            return true;
        }
        return false;
    }

    int codePage_;
    std::array<char16_t, 256> toUnicode_{};
    QHash<char16_t, char> fromUnicode_;
    std::unique_ptr<Iconv> decoder_;
    std::unique_ptr<Iconv> encoder_;
    std::mutex mutex_;
};

std::unique_ptr<Converter> g_converter;

Converter &converter()
{
    if (!g_converter)
        g_converter = std::make_unique<Converter>(systemCodePage());
    return *g_converter;
}

} // namespace

int ansiCodePage()
{
    return converter().codePage();
}

void setAnsiCodePageForTest(int codePage)
{
    g_converter = std::make_unique<Converter>(codePage ? codePage : systemCodePage());
}

QByteArray toAnsi(QStringView text, bool *lossless)
{
    return converter().encode(text, lossless);
}

void appendFromAnsi(QString &out, const char *data, qsizetype size)
{
    converter().decode(out, data, size);
}

QString fromAnsi(const char *data, qsizetype size)
{
    QString out;
    appendFromAnsi(out, data, size);
    return out;
}

QString fromAnsi(const QByteArray &bytes)
{
    return fromAnsi(bytes.constData(), bytes.size());
}

} // namespace rt
