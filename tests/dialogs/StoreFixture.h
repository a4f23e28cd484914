#pragma once

#include "runtime/Clock.h"
#include "runtime/Locale.h"
#include "runtime/ProgramFolder.h"
#include "store/Files.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// A program folder of its own, en_US, and a fixed clock, for tests that look at Data.ini.
class StoreFixture
{
public:
    StoreFixture()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
        rt::Clock::setSource([] { return rt::DateSerial(2004, 7, 29) + 0.5; });
    }
    ~StoreFixture()
    {
        rt::Clock::setSource({});
        rt::setProgramFolderForTest({});
    }

    // Text with "\n" line ends, as the CRLF bytes the store holds.
    static QByteArray crlf(const QByteArray &text)
    {
        return QByteArray(text).replace("\n", "\r\n");
    }

    static QByteArray data()
    {
        QFile f(files::dataIni());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    static void setData(const QByteArray &text)
    {
        QFile f(files::dataIni());
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(crlf(text));
    }

    QTemporaryDir dir;
};
