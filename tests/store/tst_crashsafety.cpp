// A writer process is killed at random moments while it rewrites a large store key by key;
// the store on disk must always be a complete file, either before or after some write.

#include "Fixtures.h"
#include "store/ini.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QThread>

namespace
{

constexpr int kSections = 4000;
constexpr int kCounterEvery = 400;

// About 400 KB: numbered event sections, some with a counter the writer changes.
QByteArray initialStore()
{
    QByteArray out;
    for (int s = 0; s < kSections; ++s) {
        out += "[" + QByteArray::number(s) + "]\r\nDate=38197\r\nTime=09:00\r\n";
        out += "Memo=" + QByteArray(60, char('a' + s % 26)) + "\r\n";
        if (s % kCounterEvery == 0)
            out += "counter=v0\r\n";
    }
    return out + "[end]\r\nmarker=intact\r\n";
}

// Writes until killed; stops by itself after a while should nobody be left to kill it.
int runWriter(const QString &path)
{
    QElapsedTimer alive;
    alive.start();
    for (quint64 i = 1; alive.elapsed() < 20000; ++i) {
        const QString section =
            QString::number(int(i % (kSections / kCounterEvery)) * kCounterEvery);
        const QString value = QLatin1Char('v') + QString::number(i) + QString(int(i % 13), u'x');
        WriteINI(path, section, QStringLiteral("counter"), value);
    }
    return 0;
}

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

private slots:
    void killedWriterLeavesACompleteStore()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Data.ini");
        const QByteArray initial = initialStore();
        writeBytes(path, initial);
        // Every counter back at its first value gives the first store again.
        const QRegularExpression counter(QStringLiteral("counter=v\\d+x*\r\n"));

        QRandomGenerator random(7);
        QElapsedTimer clock;
        clock.start();
        int changedRounds = 0;
        QByteArray previous = initial;
        for (int round = 0; round < 30 && clock.elapsed() < 9000; ++round) {
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(), {"--writer", path});
            QVERIFY(writer.waitForStarted());
            QThread::msleep(20 + random.bounded(120));
            writer.kill(); // SIGKILL
            QVERIFY(writer.waitForFinished());

            const QByteArray now = readBytes(path);
            QCOMPARE(QString::fromLatin1(now).replace(counter, "counter=v0\r\n").toLatin1(),
                     initial);
            changedRounds += now != previous;
            previous = now;
        }
        QVERIFY(changedRounds > 0);
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
