// A writer process adds events to a large store and is killed at random moments; the store on
// disk must always be the complete file of before or after one of its writes.

#include "Fixtures.h"
#include "store/DataStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

namespace
{

constexpr int kEvents = 3000; // about 250 KB
constexpr int kRounds = 200;
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

// Adds events until killed; stops by itself after a while should nobody be left to kill it.
int runWriter(const QString &folder)
{
    rt::setProgramFolderForTest(folder);
    std::puts("ready");
    std::fflush(stdout);
    QElapsedTimer alive;
    alive.start();
    for (int n = kEvents + 1; alive.elapsed() < 20000; ++n)
        store::writeNewEvent(n, eventRecord(n));
    return 0;
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
        int roundsWritten = 0;
        int killedMidWrite = 0; // the write's temporary file was left behind
        for (int round = 0; round < kRounds; ++round) {
            writeBytes(path, initial);
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(), {"--writer", dir.path()});
            QVERIFY(writer.waitForReadyRead());
            QThread::usleep(random.bounded(25000));
            writer.kill(); // SIGKILL
            QVERIFY(writer.waitForFinished());

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
            roundsWritten += now != initial;
            const QStringList left = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
            for (const QString &name : left) {
                if (name != QLatin1String("Data.ini") && QFile::remove(dir.filePath(name)))
                    ++killedMidWrite;
            }
        }
        qInfo("%d of %d rounds wrote, %d were killed in the middle of a write", roundsWritten,
              kRounds, killedMidWrite);
        QVERIFY(roundsWritten > kRounds / 2);
        QVERIFY(killedMidWrite > 0);
    }
};

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--writer") == 0)
        return runWriter(QString::fromLocal8Bit(argv[2]));
    QCoreApplication app(argc, argv);
    TestCrashSafety test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_crashsafety.moc"
