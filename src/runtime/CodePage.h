#pragma once

#include <QByteArray>

namespace rt
{

// The ANSI code page Windows gives a user of the language named by a POSIX locale
// ("ru_RU.UTF-8" is 1251, "zh_TW" 950). Languages Windows has no ANSI code page for, and
// those of Western Europe, get 1252.
int codePageForLocale(const QByteArray &locale);

// 932, 936, 949 and 950: characters of one or two bytes.
bool isDoubleByteCodePage(int codePage);

// The code page of the user's language: LC_ALL, LC_CTYPE or LANG, the first that is set.
int systemCodePage();

} // namespace rt
