#include "DataTable.h"
#include "Fixtures.h"
#include "backup/Backups.h"
#include "backup/Summary.h"
#include "backup/frmRestore.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "store/ini.h"

#include <QTreeWidget>

namespace
{

QList<backup::Copy> copiesAt(const QStringList &stamps)
{
    QList<backup::Copy> copies;
    for (const QString &stamp : stamps)
        copies.append({{}, QDateTime::fromString(stamp, "yyyy-MM-dd HH:mm"), 1});
    return copies;
}

void setClock(const char *when)
{
    const rt::Date at = rt::CDate(QString::fromLatin1(when));
    rt::Clock::setSource([at] { return at; });
}

QStringList names()
{
    QStringList found;
    for (const backup::Copy &copy : backup::copies())
        found << QFileInfo(copy.path).fileName();
    return found;
}

} // namespace

class TstBackups : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        rt::Clock::setSource({});
        backup::setWriteForTest({});
    }

    void fileNames_data()
    {
        // taken: empty for no copy
        columns<QString, QString, int>("name", "taken", "sequence");
        const auto row = [](const char *name, const char *file, const char *taken, int sequence) {
            QTest::newRow(name) << QString(file) << QString(taken) << sequence;
        };
        row("first of its second", "Data 2026-11-24 09-30-05.ini", "2026-11-24 09:30:05", 1);
        row("third of its second", "Data 2026-11-24 09-30-05 3.ini", "2026-11-24 09:30:05", 3);
        row("no such day", "Data 2026-02-30 09-30-05.ini", "", 0);
        row("the user's own file", "Data.ini", "", 0);
        row("a copy being written", ".copy.part", "", 0);
    }
    void fileNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, taken);
        QFETCH(int, sequence);
        backup::Copy copy;
        QCOMPARE(backup::parseFileName(name, copy), !taken.isEmpty());
        if (taken.isEmpty())
            return;
        QCOMPARE(copy.taken.toString("yyyy-MM-dd HH:mm:ss"), taken);
        QCOMPARE(copy.sequence, sequence);
        QCOMPARE(backup::fileName(copy.taken, copy.sequence), name);
    }

    // The 50 newest stay, and the newest of each of the last 60 days.
    void rotation_data()
    {
        columns<QStringList, QList<int>>("newestFirst", "pruned");
        QStringList sameDay;
        for (int i = 0; i < 53; ++i)
            sameDay << QString("2026-11-24 %1:%2")
                           .arg(23 - i / 60, 2, 10, QChar('0'))
                           .arg(59 - i % 60, 2, 10, QChar('0'));
        QTest::newRow("53 on one day: the oldest 3 go") << sameDay << QList<int>{50, 51, 52};

        QStringList daily = sameDay.mid(0, 50);
        daily << "2026-11-23 10:00"
              << "2026-11-23 09:00"  // a day's newest stays, its older not
              << "2026-09-26 10:00"  // 59 days back: kept
              << "2026-09-25 10:00"; // 60 days back: gone
        QTest::newRow("beyond 50: a day's newest within 60 days") << daily << QList<int>{51, 53};
        QTest::newRow("fewer than 50: all stay")
            << QStringList{"2020-01-01 10:00", "2019-01-01 10:00"} << QList<int>{};
    }
    void rotation()
    {
        QFETCH(QStringList, newestFirst);
        QTEST(backup::prunable(copiesAt(newestFirst), QDate(2026, 11, 24)), "pruned");
    }

    void copiesAreKeptOnceAndPruned()
    {
        TestFolder folder;
        TestFolder::setData("[count]\nc=0\n");
        setClock("11/24/2026 9:30:05 AM");
        QVERIFY(backup::keepCopy());
        QVERIFY(backup::keepCopy()); // unchanged: no second copy
        QCOMPARE(names(), QStringList{"Data 2026-11-24 09-30-05.ini"});
        WriteINI(files::dataIni(), "count", "c", "1");
        QVERIFY(backup::keepCopy());
        QCOMPARE(names(),
                 (QStringList{"Data 2026-11-24 09-30-05 2.ini", "Data 2026-11-24 09-30-05.ini"}));
        QCOMPARE(readBytes(backup::copies().first().path), TestFolder::data());

        for (int i = 2; i < 60; ++i) {
            WriteINI(files::dataIni(), "count", "c", QString::number(i));
            QVERIFY(backup::keepCopy());
        }
        QCOMPARE(backup::copies().size(), 50);
        QVERIFY(!QFile::exists(QDir(backup::folder()).filePath(".copy.part")));
    }

    // A copy that cannot be made never stops the change, and is told once a run.
    void failedCopies()
    {
        TestFolder folder;
        TestFolder::setData("[count]\nc=0\n");
        writeBytes(backup::folder(), "a file where the folder would be");
        rt::MsgBoxRecorder boxes;
        for (const char *count : {"1", "2"}) {
            backup::beforeChange();
            WriteINI(files::dataIni(), "count", "c", count);
        }
        QCOMPARE(TestFolder::data(), crlf("[count]\nc=2\n"));
        QCOMPARE(boxes.calls.size(), 1);
        QVERIFY(boxes.calls[0].prompt.contains(QDir::toNativeSeparators(backup::folder())));
        QCOMPARE(boxes.calls[0].style, int(rt::vbExclamation));

        QFile::remove(backup::folder());
        backup::setWriteForTest(
            [](const QString &, const QByteArray &) { return QString("No space left on device"); });
        QString error;
        QVERIFY(!backup::keepCopy(&error));
        QCOMPARE(error, QString("No space left on device"));
        QVERIFY(backup::copies().isEmpty());
    }

    // The window asks first, warns of another password, and keeps the store it replaces.
    void restoreWindowAsks()
    {
        TestFolder folder;
        TestFolder::setData("[pcount]\nc=1\n[pass]\n1=65\n");
        QVERIFY(backup::keepCopy());
        WriteINI(files::dataIni(), "pass", "1", "66");
        const QByteArray now = TestFolder::data();
        frmRestore window;
        rt::MsgBoxRecorder boxes;
        boxes.nextAnswers = {rt::vbNo};
        window.cmdRestore_Click();
        QCOMPARE(boxes.calls.size(), 1);
        QVERIFY(boxes.calls[0].prompt.contains("a different password from the one in force now"));
        QCOMPARE(TestFolder::data(), now);

        boxes.nextAnswers = {rt::vbYes};
        window.lstCopies()->setCurrentItem(window.lstCopies()->topLevelItem(0));
        window.cmdRestore_Click();
        QCOMPARE(window.result(), int(QDialog::Accepted));
        QCOMPARE(TestFolder::data(), crlf("[pcount]\nc=1\n[pass]\n1=65\n"));
        QCOMPARE(readBytes(backup::copies().first().path), now);
    }

    void summary_data()
    {
        columns<QByteArray, QByteArray, QString>("copy", "current", "text");
        const auto row = [](const char *name, const QByteArray &copy, const QByteArray &current,
                            const char *text) {
            QTest::newRow(name) << copy << current << QString(text);
        };
        const QByteArray now = "[count]\nc=12\n[rcount]\nc=1\n[Categories]\nc=4\n";
        const QByteArray pass = "[pcount]\nc=1\n[pass]\n1=";
        row("more recurring", "[count]\nc=12\n[rcount]\nc=3\n[Categories]\nc=4\n", now,
            "12 events, 3 recurring; 2 more recurring than now");
        row("fewer of each kind", "[count]\nc=1\n[rcount]\nc=0\n[Categories]\nc=3\n", now,
            "1 event, 0 recurring; 11 fewer events than now, 1 fewer recurring than now, 1 fewer "
            "category than now");
        row("the same file", now, now, "12 events, 1 recurring; the same as now");
        row("same counts, other texts", now + "[1]\nMemo=x\n", now,
            "12 events, 1 recurring; as many as now, with other details");
        row("damaged counts read as none", "[count]\nc=lots\n", "[count]\nc=0\n",
            "0 events, 0 recurring; as many as now, with other details");
        row("an older password", now + pass + "65\n", now + pass + "66\n",
            "12 events, 1 recurring; another password");
        row("no password", now, now + pass + "66\n", "12 events, 1 recurring; no password");
    }

    void summary()
    {
        QFETCH(QByteArray, copy);
        QFETCH(QByteArray, current);
        TestFolder folder;
        const QString copyPath = folder.dir.filePath("copy.ini");
        writeBytes(copyPath, crlf(copy));
        TestFolder::setData(current);
        QTEST(backup::summary(backup::readContents(copyPath),
                              backup::readContents(files::dataIni()), copy == current),
              "text");
    }
};

QTEST_MAIN(TstBackups)

#include "tst_backups.moc"
