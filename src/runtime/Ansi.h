#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace rt
{

// Windows-1252, the code page of the store. Characters it cannot hold become '?'.
// Bytes 0x81, 0x8D, 0x8F, 0x90 and 0x9D map to the control characters of the same code,
// so every byte survives a round trip.
QByteArray toAnsi(QStringView text);
QString fromAnsi(const QByteArray &bytes);
QString fromAnsi(const char *data, qsizetype size);

} // namespace rt
