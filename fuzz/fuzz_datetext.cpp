// Text to date in a few pinned locales. Whatever parses must be a date the calendar can hold,
// and the text CStr makes of it must parse back to the same value.
//
// Input: one byte choosing the locale, then the text as UTF-8.

#include "FuzzSupport.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "runtime/Locale.h"

#include <array>

namespace
{

constexpr std::array kLocales = {"en_US", "en_GB", "de_DE", "fr_FR", "ja_JP", "sv_SE"};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Texts without a year take this one.
    rt::Clock::setSource([] { return rt::DateSerial(2026, 11, 22) + 0.5; });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return -1;
    static int pinned = -1;
    const int locale = data[0] % int(kLocales.size());
    if (locale != pinned) {
        rt::RtLocale::setForTest(QLocale(QLatin1String(kLocales[locale])));
        pinned = locale;
    }
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));

    const auto date = rt::parseDate(text);
    FUZZ_CHECK(date.has_value() == rt::IsDate(text), "IsDate disagrees on %s",
               shown(text).constData());
    if (!date)
        return 0;
    FUZZ_CHECK(rt::Year(*date) >= 100 && rt::Year(*date) <= 9999, "%s gave %.17g",
               shown(text).constData(), *date);

    const QString written = rt::CStr(*date);
    const auto again = rt::parseDate(written);
    FUZZ_CHECK(again && *again == *date, "[%s] %s gave %.17g, written %s, read back %.17g",
               kLocales[locale], shown(text).constData(), *date, shown(written).constData(),
               again ? *again : -1e300);
    return 0;
}
