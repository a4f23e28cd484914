#pragma once

#include <QString>

// The two procedures every part of the program uses to reach its data files. The argument
// order is file, section, key, then the default or the value.

// Reads one key; at most 254 characters come back. A missing file, section or key gives
// the default (with its trailing blanks removed).
QString ReadINI(const QString &fileName, const QString &section, const QString &key,
                const QString &defaultValue);

// Writes one key. The file receives the value as given, line breaks included; a caller
// that passes a variable gets it back with every line break turned into a space. A write that
// fails tells the caller nothing; it is noted for the window's report (SaveFailure.h).
void WriteINI(const QString &fileName, const QString &section, const QString &key, QString &value);
void WriteINI(const QString &fileName, const QString &section, const QString &key,
              const QString &value);
