#pragma once

#include <QString>
#include <QStringView>

// How the profile functions read a line: blanks, names without regard to case, headers, key
// lines and quotes.
namespace store::profiletext
{

bool isBlank(QChar c);
QStringView trimBlanks(QStringView s);
bool hasLineBreak(QStringView s);

// Section and key names compare without regard to case, character by character, so that
// neither a lookup nor the parse needs a folded copy of a name; names that compare equal
// hash alike.
bool sameName(QStringView a, QStringView b);
quint32 sectionHash(QStringView name);
quint32 keyHash(qsizetype section, QStringView name);

enum class Kind { Other, Header, Key };

struct Classified {
    Kind kind = Kind::Other;
    QStringView name; // the section or key name, blanks trimmed
};

// What the reader sees of a line ends at a NUL.
Classified classify(QStringView line);

struct KeyLine {
    QStringView name;  // everything before the first '=', blanks trimmed
    QStringView value; // everything after it, blanks trimmed
};

KeyLine splitKeyLine(QStringView keyLine);
QStringView stripQuotes(QStringView value);

// A string argument as the functions take it: up to its first NUL.
QStringView untilNul(QStringView s);

} // namespace store::profiletext
