#include "store/ini.h"

#include "runtime/RuntimeError.h"
#include "store/ProfileEngine.h"
#include "store/SaveFailure.h"

namespace
{

// The buffer the reader hands to Windows holds 255 characters, the terminator included.
constexpr int kReadBufferSize = 255;

// Positions in a value are counted in a signed 16-bit integer.
constexpr qsizetype kLongestValue = 32767;

void checkLength(const QString &value)
{
    if (value.size() > kLongestValue)
        throw rt::RuntimeError::overflow();
}

void write(const QString &fileName, const QString &section, const QString &key,
           const QString &value)
{
    int error = 0;
    store::writePrivateProfileString(section, key, value, fileName, &error);
    store::noteWrite(fileName, error);
}

} // namespace

QString ReadINI(const QString &fileName, const QString &section, const QString &key,
                const QString &defaultValue)
{
    QString result;
    store::getPrivateProfileString(section, key, defaultValue, result, kReadBufferSize, fileName);
    return result;
}

void WriteINI(const QString &fileName, const QString &section, const QString &key, QString &value)
{
    checkLength(value);
    const QString copy = value; // the file gets the value as it was passed
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'\n' || value[i] == u'\r')
            value[i] = u' ';
    }
    write(fileName, section, key, copy);
}

void WriteINI(const QString &fileName, const QString &section, const QString &key,
              const QString &value)
{
    checkLength(value);
    write(fileName, section, key, value);
}
