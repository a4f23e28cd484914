#include "DataTable.h"
#include "Fixtures.h"
#include "store/AtomicFile.h"
#include "store/DataStore.h"
#include "store/ProfileEngine.h"
#include "store/SaveFailure.h"
#include "store/ini.h"

#include <cerrno>

using namespace store;

class TestDataStore : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:
    void init() { removeFile(files::dataIni()); }

    void newEventWritesCountFirst()
    {
        writeNewEvent(1, {"7/29/2004", "9:00 AM", "Dentist", "Health"});
        QCOMPARE(TestFolder::data(), crlf("[count]\nc=1\n[1]\nDate=7/29/2004\n"
                                          "Time=9:00 AM\nMemo=Dentist\nCat=Health\n"));
    }

    void newRecurring_data()
    {
        columns<QString, QByteArray>("type", "keys");
        QTest::newRow("daily") << kDaily << QByteArray("Type=Daily\n");
        QTest::newRow("weekly") << kWeekly << QByteArray("Type=Weekly\nDay=d\n");
        QTest::newRow("monthly") << kMonthly << QByteArray("Type=Monthly\nDay=d\n");
        QTest::newRow("yearly") << kYearly << QByteArray("Type=Yearly\nDay=d\nMonth=mo\n");
    }
    void newRecurring()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, keys);
        writeNewRecurring(3, {type, "d", "mo", "t", "m", "c"});
        QCOMPARE(TestFolder::data(),
                 crlf("[rcount]\nc=3\n[r3]\n" + keys + "Time=t\nMemo=m\nCat=c\n"));
    }

    // Later events move down one; the last one's section stays behind.
    void removeEvent_data()
    {
        // held: the event each section holds afterwards
        columns<int, QList<int>>("k", "held");
        QTest::newRow("2 of 4") << 2 << QList<int>{1, 3, 4, 4};
        QTest::newRow("last") << 4 << QList<int>{1, 2, 3, 4};
    }
    void removeEvent()
    {
        QFETCH(int, k);
        QFETCH(QList<int>, held);
        const auto section = [](int n, int of) {
            return crlf(
                QString("[%1]\nDate=%2\nTime=t%2\nMemo=m%2\nCat=c%2\n").arg(n).arg(of).toLatin1());
        };
        QList<EventRecord> events(1);
        QByteArray before = crlf("[count]\nc=4\n"), after = crlf("[count]\nc=3\n");
        for (int i = 1; i <= 4; ++i) {
            const QString n = QString::number(i);
            events.append({n, "t" + n, "m" + n, "c" + n});
            before += section(i, i);
            after += section(i, held[i - 1]);
        }
        writeBytes(files::dataIni(), before);
        store::removeEvent(events, k);
        QCOMPARE(TestFolder::data(), after);
    }

    void removeRecurringKeyOrder()
    {
        QList<RecurringEvent> events(1);
        events.append({kDaily, "", "", "t1", "m1", "c1"});
        events.append({kWeekly, "Monday", "", "t2", "m2", "c2"});
        store::removeRecurring(events, 1);
        QCOMPARE(TestFolder::data(),
                 crlf("[rcount]\nc=1\n[r1]\nType=Weekly\nDay=Monday\nMonth=\nTime=t2\nCat=c2\n"
                      "Memo=m2\n"));
    }

    void categories()
    {
        TestFolder::setData("[Categories]\nc=2\n1=Anything\n1c=255\n2=Work\n2c=16711680\n");
        writeNewCategory(2, "Health");
        writeCategoryColours({0, 65280, -1, 42});
        QCOMPARE(TestFolder::data(),
                 crlf("[Categories]\nc=3\n1=Anything\n1c=65280\n2=Work\n2c=-1\n3=Health\n"
                      "3c=42\n"));
        const Model model = loadModel();
        QCOMPARE(model.categoryNames, QStringList({"", "More", "Work", "Health"}));
        QCOMPARE(model.categoryColours, QStringList({"", "65280", "-1", "42"}));
    }

    // One code a character in the code page: double-byte as one signed code, others '?'.
    void password_data()
    {
        columns<int, QString, QStringList, QString>("codePage", "password", "codes", "readBack");
        QTest::newRow("1252") << 1252 << QString("Ab\u20ac\U0001F600")
                              << QStringList{"65", "98", "128", "63"} << QString("Ab\u20ac?");
        QTest::newRow("1251") << 1251 << QString("\u041f\u0430\u0440\u043e\u043b\u044c")
                              << QStringList{"207", "224", "240", "238", "235", "252"}
                              << QString("\u041f\u0430\u0440\u043e\u043b\u044c");
        QTest::newRow("932") << 932 << QString("\u6b6fa") << QStringList{"-29035", "97"}
                             << QString("\u6b6fa");
    }
    void password()
    {
        QFETCH(int, codePage);
        QFETCH(QString, password);
        QFETCH(QStringList, codes);
        rt::setAnsiCodePageForTest(codePage);
        writePassword("Secret");
        writePassword(password);
        const QString back = readPassword();
        rt::setAnsiCodePageForTest(1252);
        QTEST(back, "readBack");
        QCOMPARE(readCount(kPasswordCountSection), codes.size());
        for (int k = 0; k < codes.size(); ++k)
            QCOMPARE(ReadINI(files::dataIni(), kPasswordSection, QString::number(k + 1), ""),
                     codes[k]);
        // The longer password's last key stays.
        QCOMPARE(ReadINI(files::dataIni(), kPasswordSection, "6", ""),
                 codes.size() == 6 ? "252" : "116");
    }

    // A write that fails changes nothing on disk; the change's first failure is reported once.
    void failedWriteIsReportedOnce()
    {
        TestFolder::setData("[count]\nc=1\n");
        const QByteArray before = TestFolder::data();
        rt::MsgBoxRecorder boxes;
        atomicfile::setWriteErrorForTest(ENOSPC);
        writeNewEvent(2, {"7/29/2004", "9:00 AM", "Dentist", "Health"});
        atomicfile::setWriteErrorForTest(0);
        QCOMPARE(TestFolder::data(), before);
        afterChange();
        afterChange();
        QCOMPARE(shownBoxes(boxes), "ORVA could not save to " +
                                        QDir::toNativeSeparators(files::dataIni()) +
                                        ": the disk is full|48");

        // Once a write succeeds again, an earlier failure is no longer news.
        atomicfile::setWriteErrorForTest(EROFS);
        writeNewEvent(2, {"7/29/2004", "9:00 AM", "Dentist", "Health"});
        atomicfile::setWriteErrorForTest(0);
        writeNewEvent(2, {"7/29/2004", "9:00 AM", "Dentist", "Health"});
        afterChange();
        QCOMPARE(boxes.calls.size(), 1);
    }

    // Two calendars adding events at once: count and write stay together, so none is lost.
    void twoWritersAddingEventsKeepThemAll()
    {
        QVERIFY(inChildProcesses(2, [](int w) {
            for (int n = 1; n <= 100; ++n) {
                const ChangeScope scope(files::dataIni());
                writeNewEvent(readCount(kCountSection) + 1,
                              {"7/29/2004", "9:00 AM", QString("%1-%2").arg(w).arg(n), "W"});
            }
            return true;
        }));
        QSet<QString> memos;
        for (int n = 1; n <= readCount(kCountSection); ++n)
            memos.insert(ReadINI(files::dataIni(), eventSection(n), kMemoKey, ""));
        QCOMPARE(readCount(kCountSection), 200);
        QCOMPARE(memos.size(), 200);
    }

    // Keys that are no character codes add nothing.
    void damagedPasswordReadsAsNone()
    {
        TestFolder::setData("[pcount]\nc=2\n[pass]\n1=x\n2=999\n");
        QCOMPARE(readPassword(), QString());
    }

    // Damaged counts read as fewer or empty items; the store fuzzer tries arbitrary bytes.
    void damagedStores_data()
    {
        columns<QByteArray, int>("file", "events");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("no counts") << crlf("[1]\nDate=7/29/2004\n") << 0;
        QTest::newRow("count past sections") << crlf("[count]\nc=50\n[1]\nDate=7/29/2004\n") << 50;
        QTest::newRow("negative count") << crlf("[count]\nc=-5\n") << 0;
        QTest::newRow("overflowing count") << crlf("[count]\nc=99999999999\n") << 0;
        QTest::newRow("huge count") << crlf("[count]\nc=2000000000\n") << kMaxItems;
        QTest::newRow("a date that is no date")
            << crlf("[count]\nc=2\n[1]\nDate=7/29/2004\n[2]\nDate=not a date\n") << 2;
        QTest::newRow("cut line") << QByteArray("[count]\r\nc=1\r\n[1]\r\nDate=7/2") << 1;
    }
    void damagedStores()
    {
        QFETCH(QByteArray, file);
        writeBytes(files::dataIni(), file);
        const Model m = loadModel();
        QTEST(m.eventCount(), "events");
        for (int i = 2; i <= m.eventCount(); ++i)
            QCOMPARE(m.events[i].date, 0.0);
    }
};

QTEST_GUILESS_MAIN(TestDataStore)
#include "tst_datastore.moc"
