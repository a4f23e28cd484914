#include "store/ProfileText.h"

namespace store::profiletext
{
namespace
{

char16_t foldChar(char16_t c)
{
    if (c < 0x80)
        return c >= u'a' && c <= u'z' ? char16_t(c - (u'a' - u'A')) : c;
    const char32_t upper = QChar::toUpper(char32_t(c));
    return upper <= 0xFFFF ? char16_t(upper) : c;
}

// FNV-1a over the folded characters.
quint64 nameHash(QStringView name)
{
    quint64 h = 0xcbf29ce484222325ULL;
    for (const QChar c : name) {
        h ^= foldChar(c.unicode());
        h *= 0x100000001b3ULL;
    }
    return h;
}

quint32 finishHash(quint64 h)
{
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    return quint32(h);
}

} // namespace

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

QStringView trimBlanks(QStringView s)
{
    qsizetype begin = 0;
    qsizetype end = s.size();
    while (begin < end && isBlank(s[begin]))
        ++begin;
    while (end > begin && isBlank(s[end - 1]))
        --end;
    return s.sliced(begin, end - begin);
}

bool hasLineBreak(QStringView s)
{
    return s.contains(u'\r') || s.contains(u'\n');
}

bool sameName(QStringView a, QStringView b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const char16_t x = a[i].unicode();
        const char16_t y = b[i].unicode();
        if (x != y && foldChar(x) != foldChar(y))
            return false;
    }
    return true;
}

quint32 sectionHash(QStringView name)
{
    return finishHash(nameHash(name));
}

quint32 keyHash(qsizetype section, QStringView name)
{
    return finishHash(nameHash(name) + quint64(section) * 0x9e3779b97f4a7c15ULL);
}

// Lines are short: one pass over the characters is cheaper than a library search for each
// thing looked for.
Classified classify(QStringView line)
{
    const qsizetype n = line.size();
    qsizetype first = 0;
    while (first < n && isBlank(line[first]))
        ++first;
    if (first == n || line[first] == QChar(0) || line[first] == u';')
        return {};
    qsizetype close = -1; // the last ']'
    qsizetype eq = -1;    // the first '='
    for (qsizetype i = first; i < n && line[i] != QChar(0); ++i) {
        if (line[i] == u']')
            close = i;
        else if (line[i] == u'=' && eq < 0)
            eq = i;
    }
    if (line[first] == u'[' && close > first)
        return {Kind::Header, trimBlanks(line.sliced(first + 1, close - first - 1))};
    if (eq < 0)
        return {};
    return {Kind::Key, trimBlanks(line.sliced(first, eq - first))};
}

KeyLine splitKeyLine(QStringView keyLine)
{
    const qsizetype n = keyLine.size();
    qsizetype eq = -1;
    qsizetype end = 0;
    for (; end < n && keyLine[end] != QChar(0); ++end) {
        if (keyLine[end] == u'=' && eq < 0)
            eq = end;
    }
    return {trimBlanks(keyLine.first(eq)), trimBlanks(keyLine.sliced(eq + 1, end - eq - 1))};
}

QStringView stripQuotes(QStringView value)
{
    if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
        value.back() == value.front())
        return value.sliced(1, value.size() - 2);
    return value;
}

QStringView untilNul(QStringView s)
{
    const qsizetype nul = s.indexOf(QChar(0));
    return nul < 0 ? s : s.first(nul);
}

} // namespace store::profiletext
