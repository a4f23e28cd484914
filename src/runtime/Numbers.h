#pragma once

#include <QString>
#include <cstdint>

namespace rt
{

// Text to number, as CLng, CInt and CDbl read it in the current locale. They raise
// "Type mismatch" (13) for text that is no number and "Overflow" (6) for one out of range.
std::int32_t CLng(const QString &text);
std::int16_t CInt(const QString &text);
double CDbl(const QString &text);

// "Errors ignored" forms: on failure the field keeps its value and false comes back.
bool tryCLng(const QString &text, std::int32_t &field);
bool tryCInt(const QString &text, std::int16_t &field);
bool tryCDbl(const QString &text, double &field);

// Val never fails: it reads the longest number at the start of the text (blanks skipped,
// only "." as decimal point) and gives 0 where there is none.
double Val(const QString &text);

// A number compared with text: the text is converted with CDbl (so " 5" and "05" equal 5).
// Raises "Type mismatch" when the text is no number.
bool numberEqualsText(double number, const QString &text);

} // namespace rt
