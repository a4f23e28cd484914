// A writer process adds events to a large store and is killed at random moments; the store on
// disk must always be the complete file of before or after one of its writes, and a temporary
// file left behind no more readable than the store.

#include "Fixtures.h"
#include "store/DataStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>
#include <csignal>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define ORVA_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVA_SANITIZED 1
#endif
#endif

namespace
{

#ifdef ORVA_SANITIZED
// Every write is several times slower under the sanitizers, and a busy machine makes it worse;
// the plain build kills the writer in full.
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
constexpr int kEvents = 3000; // about 250 KB
constexpr int kRounds = kSanitized ? 30 : 200;
const char *const kKeys[] = {"Date", "Time", "Memo", "Cat"};

store::EventRecord eventRecord(int n)
{
    return {QStringLiteral("7/29/2004"), QStringLiteral("9:00"),
            QStringLiteral("Memo %1 ").arg(n) + QString(40, u'm'), QStringLiteral("Work")};
}

// Data.ini after the writer's first `writes` writes. Each new event is five writes: the count,
// then its keys in order, the first of them with the section's header.
QByteArray storeAfter(int writes)
{
    const int started = (writes + 4) / 5;
    QByteArray out = "[count]\r\nc=" + QByteArray::number(kEvents + started) + "\r\n";
    for (int n = 1; n <= kEvents + started; ++n) {
        const int keys = n <= kEvents + started - 1 ? 4 : writes - 5 * (started - 1) - 1;
        if (keys == 0)
            break;
        const store::EventRecord e = eventRecord(n);
        const QString values[] = {e.date, e.time, e.memo, e.cat};
        out += "[" + QByteArray::number(n) + "]\r\n";
        for (int k = 0; k < keys; ++k)
            out += kKeys[k] + ('=' + values[k].toLatin1()) + "\r\n";
    }
    return out;
}

// Forks a writer that adds events to the store in `folder` until it is killed, and reports
// each event on the pipe it returns in `report`. A fork, not a new program, so that a round
// costs the writes and not a start-up.
pid_t startWriter(const QString &folder, int &report)
{
    int fds[2];
    if (::pipe(fds) != 0)
        return -1;
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(fds[0]);
        rt::setProgramFolderForTest(folder);
        for (int n = kEvents + 1;; ++n) {
            store::writeNewEvent(n, eventRecord(n)); // five writes
            if (::write(fds[1], "e", 1) != 1)
                ::_exit(1); // nobody is left to kill it
        }
    }
    ::close(fds[1]);
    report = fds[0];
    return pid;
}

bool waitForEvent(int report)
{
    pollfd p{report, POLLIN, 0};
    char c;
    return ::poll(&p, 1, 10000) == 1 && ::read(report, &c, 1) == 1;
}

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

private slots:
    void killedWriterLeavesACompleteStore()
    {
        // In memory where there is a /dev/shm: a kill, unlike a power cut, does not care
        // whether the data reached the disk, and a writer that waits on the disk for each
        // fsync is seldom caught between two writes.
        QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                              ? QStringLiteral("/dev/shm/tst_crashsafety-XXXXXX")
                              : QString());
        const QString path = dir.filePath("Data.ini");
        const QByteArray initial = storeAfter(0);
        QRandomGenerator random(7);
        int killedMidWrite = 0; // the write's temporary file was left behind
        for (int round = 0; round < kRounds; ++round) {
            writeBytes(path, initial);
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
            int report = -1;
            const pid_t writer = startWriter(dir.path(), report);
            QVERIFY(writer > 0);
            // The kill comes at a random moment within the next event, however fast this
            // machine writes: after 0 to 2 events, somewhere in the time one takes.
            const int events = int(random.bounded(3));
            QElapsedTimer oneEvent;
            bool reported = true;
            for (int seen = 0; seen <= events && reported; ++seen) {
                oneEvent.start();
                reported = waitForEvent(report);
            }
            QThread::usleep(random.bounded(oneEvent.nsecsElapsed() / 1000 + 1));
            ::kill(writer, SIGKILL);
            QVERIFY(::waitpid(writer, nullptr, 0) == writer);
            ::close(report);
            QVERIFY(reported);

            const QByteArray now = readBytes(path);
            const int started = now.mid(11, now.indexOf('\r', 11) - 11).toInt() - kEvents;
            bool complete = false;
            for (int writes = qMax(0, 5 * started - 4); writes <= 5 * started && !complete;
                 ++writes)
                complete = now == storeAfter(writes);
            QVERIFY2(complete, qPrintable(QStringLiteral("round %1: %2 bytes, %3 events begun")
                                              .arg(round)
                                              .arg(now.size())
                                              .arg(started)));
            const QStringList left = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
            for (const QString &name : left) {
                if (!name.startsWith(QLatin1String(".Data.ini.tmp-")))
                    continue;
                struct stat st = {};
                QCOMPARE(::stat(QFile::encodeName(dir.filePath(name)).constData(), &st), 0);
                QCOMPARE(st.st_mode & 077, 0u);
                if (QFile::remove(dir.filePath(name)))
                    ++killedMidWrite;
            }
        }
        qInfo("%d of %d writers were killed in the middle of a write", killedMidWrite, kRounds);
        if (!kSanitized) // too few rounds there to be sure of one
            QVERIFY(killedMidWrite > 0);
    }
};

QTEST_GUILESS_MAIN(TestCrashSafety)
#include "tst_crashsafety.moc"
