#pragma once

#include "runtime/Locale.h"
#include "runtime/ProgramFolder.h"
#include "store/Files.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

// Writes a Data.ini of `events` one-off events spread over 2026 and `recurring` recurring
// events of every kind, over seven categories, as the program itself would have written it.
inline void writeBenchStore(const QString &path, int events, int recurring)
{
    static const char *const cats[] = {"More",   "Work",    "Personal", "Birthday",
                                       "Health", "Holiday", "Bills"};
    static const char *const days[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                       "Thursday", "Friday", "Saturday"};
    QByteArray out = "[Categories]\r\nc=7\r\n";
    for (int i = 1; i <= 7; ++i)
        out += QByteArray::number(i) + '=' + cats[i - 1] + "\r\n" + QByteArray::number(i) +
               "c=" + QByteArray::number(0x102030 * i) + "\r\n";
    out += "[rcount]\r\nc=" + QByteArray::number(recurring) + "\r\n";
    for (int n = 1; n <= recurring; ++n) {
        out += "[r" + QByteArray::number(n) + "]\r\n";
        switch (n % 4) {
        case 0:
            out += "Type=Daily\r\n";
            break;
        case 1:
            out += QByteArray("Type=Weekly\r\nDay=") + days[n % 7] + "\r\n";
            break;
        case 2:
            out += "Type=Monthly\r\nDay=" + QByteArray::number(n % 31 + 1) + "\r\n";
            break;
        default:
            out += "Type=Yearly\r\nDay=" + QByteArray::number(n % 28 + 1) +
                   "\r\nMonth=" + QByteArray::number(n % 12 + 1) + "\r\n";
        }
        out += "Time=9:00 AM\r\nMemo=Recurring reminder " + QByteArray::number(n) +
               "\r\nCat=" + cats[n % 6 + 1] + "\r\n";
    }
    out += "[count]\r\nc=" + QByteArray::number(events) + "\r\n";
    for (int n = 1; n <= events; ++n) {
        out += "[" + QByteArray::number(n) + "]\r\nDate=" + QByteArray::number(n % 12 + 1) + '/' +
               QByteArray::number(n % 28 + 1) + "/2026\r\nTime=" +
               (n % 5 ? QByteArray::number(n % 12 + 1) + ":30 PM" : QByteArray("00:00")) +
               "\r\nMemo=Event number " + QByteArray::number(n) + "\r\nCat=" + cats[n % 6 + 1] +
               "\r\n";
    }
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(out);
}

// A throwaway program folder, in en_US, holding the benchmark store of 10,000 one-off and
// 1,000 recurring events.
struct BenchProgramFolder {
    QTemporaryDir dir;
    BenchProgramFolder()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale(QLocale::English, QLocale::UnitedStates));
        writeBenchStore(files::dataIni(), 10000, 1000);
    }
};
