#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace rt
{

// The store's ANSI code page: the one Windows chooses for the user's language (CodePage.h),
// read from the environment at the first conversion.
int ansiCodePage();
// Pins a code page, for tests; 0 reads the environment again.
void setAnsiCodePageForTest(int codePage);

// Text to bytes of the code page and back. A character the code page cannot hold becomes
// '?', and `lossless`, where given, is then false. Every byte survives a round trip: a byte
// the code page leaves undefined reads as a character of its own (a C1 control for 0x80-0x9F,
// a private-use character above), which writes back as that byte.
QByteArray toAnsi(QStringView text, bool *lossless = nullptr);
QString fromAnsi(const QByteArray &bytes);
QString fromAnsi(const char *data, qsizetype size);
void appendFromAnsi(QString &out, const char *data, qsizetype size);

} // namespace rt
