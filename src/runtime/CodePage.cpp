#include "runtime/CodePage.h"

#include <cstdlib>

namespace rt
{
namespace
{

struct LanguageCodePage {
    const char *language;
    int codePage;
};

// Languages by their ISO 639 code; the Chinese scripts and the Latin forms of Cyrillic
// languages depend on more than the language and are decided below.
constexpr LanguageCodePage kLanguages[] = {
    {"cs", 1250}, {"pl", 1250}, {"hu", 1250}, {"sk", 1250},  {"sl", 1250}, {"hr", 1250},
    {"ro", 1250}, {"sq", 1250}, {"bs", 1250}, {"ru", 1251},  {"uk", 1251}, {"be", 1251},
    {"bg", 1251}, {"mk", 1251}, {"sr", 1251}, {"kk", 1251},  {"ky", 1251}, {"tt", 1251},
    {"mn", 1251}, {"ba", 1251}, {"tg", 1251}, {"el", 1253},  {"tr", 1254}, {"az", 1254},
    {"uz", 1254}, {"he", 1255}, {"iw", 1255}, {"yi", 1255},  {"ar", 1256}, {"fa", 1256},
    {"ur", 1256}, {"ps", 1256}, {"ug", 1256}, {"ckb", 1256}, {"lt", 1257}, {"lv", 1257},
    {"et", 1257}, {"vi", 1258}, {"th", 874},  {"ja", 932},   {"ko", 949},
};

} // namespace

int codePageForLocale(const QByteArray &locale)
{
    // language[_territory][.charset][@modifier]
    qsizetype end = locale.size();
    for (const char mark : {'_', '.', '@'}) {
        const qsizetype at = locale.indexOf(mark);
        if (at >= 0 && at < end)
            end = at;
    }
    const QByteArray language = locale.left(end).toLower();
    const qsizetype at = locale.indexOf('@');
    const QByteArray modifier = at < 0 ? QByteArray() : locale.mid(at + 1).toLower();
    if (language == "zh") {
        const QByteArray territory =
            end < locale.size() && locale[end] == '_' ? locale.mid(end + 1, 2) : QByteArray();
        const bool traditional =
            territory == "TW" || territory == "HK" || territory == "MO" || modifier == "hant";
        return traditional ? 950 : 936;
    }
    if (modifier == "latin" && (language == "sr" || language == "uz"))
        return language == "sr" ? 1250 : 1254;
    if (modifier == "cyrillic" && (language == "uz" || language == "az"))
        return 1251;
    for (const LanguageCodePage &entry : kLanguages) {
        if (language == entry.language)
            return entry.codePage;
    }
    return 1252;
}

bool isDoubleByteCodePage(int codePage)
{
    return codePage == 932 || codePage == 936 || codePage == 949 || codePage == 950;
}

int systemCodePage()
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char *value = std::getenv(name);
        if (value && *value)
            return codePageForLocale(QByteArray(value));
    }
    return 1252;
}

} // namespace rt
