#pragma once

#include "runtime/Ansi.h"
#include "runtime/Locale.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RuntimeError.h"
#include "store/DataStore.h"
#include "store/Files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// Runs work(0) .. work(count - 1) in as many child processes at once; true when each started
// and ended with its work returning true.
template <typename Work> bool inChildProcesses(int count, Work work)
{
    std::vector<pid_t> children;
    bool ok = true;
    for (int w = 0; w < count && ok; ++w) {
        const pid_t pid = ::fork();
        if (pid == 0)
            ::_exit(work(w) ? 0 : 1);
        ok = pid > 0;
        if (ok)
            children.push_back(pid);
    }
    for (const pid_t pid : children) {
        int status = 0;
        ok = ::waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
             ok;
    }
    return ok;
}

inline QByteArray readBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The store sees a change made by another program within a millisecond: the helpers that
// change files as another program would wait that long.
inline void waitUntilSeen()
{
    QThread::msleep(2);
}

inline void writeBytes(const QString &path, const QByteArray &bytes)
{
    {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(f.write(bytes), bytes.size());
    }
    waitUntilSeen();
}

inline void removeFile(const QString &path)
{
    QFile::remove(path);
    waitUntilSeen();
}

// Text with "\n" line ends as the CRLF bytes the store holds.
inline QByteArray crlf(QByteArray text)
{
    return text.replace("\n", "\r\n");
}

// One event's stored texts: "date|time|memo|cat", or for a recurring one
// "type|day|month|time|memo|cat".
inline QString eventText(int n)
{
    const store::EventRecord e = store::readEventRecord(n);
    return QStringList{e.date, e.time, e.memo, e.cat}.join('|');
}
inline QString recurringText(int n)
{
    const store::RecurringEvent r = store::readRecurringEvent(n);
    return QStringList{r.type, r.day, r.month, r.time, r.memo, r.cat}.join('|');
}

// A combo box's entries.
template <typename List> QStringList entries(const List *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->itemText(i);
    return texts;
}

// The boxes shown, one a line: "prompt|style", and "|title" where it is not the program's.
inline QString shownBoxes(const rt::MsgBoxRecorder &boxes)
{
    QStringList lines;
    for (const rt::MsgBoxCall &call : boxes.calls) {
        lines << call.prompt + '|' + QString::number(call.style) +
                     (call.title == "ORVA Calendar" ? QString() : '|' + call.title);
    }
    return lines.join('\n');
}

// A program folder of its own, the en_US locale and its code page, for tests that read and
// write Data.ini.
class TestFolder
{
public:
    TestFolder()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
        rt::setAnsiCodePageForTest(1252);
    }
    ~TestFolder() { rt::setProgramFolderForTest({}); }

    // Data.ini as bytes, and set from text with "\n" line ends.
    static QByteArray data() { return readBytes(files::dataIni()); }
    static void setData(const QByteArray &text) { writeBytes(files::dataIni(), crlf(text)); }

    QTemporaryDir dir;
};

// The program's end, thrown instead of leaving the process.
struct Ended {
    int exitCode;
};

// Runs f; the exit code of the end it reached, or -1 where the program would go on.
template <typename F> int exitCodeOf(F f)
{
    rt::setEndForTest([](int exitCode) { throw Ended{exitCode}; });
    int exitCode = -1;
    try {
        f();
    } catch (const Ended &ended) {
        exitCode = ended.exitCode;
    }
    rt::setEndForTest({});
    return exitCode;
}
