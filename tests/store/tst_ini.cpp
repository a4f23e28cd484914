#include "Fixtures.h"
#include "runtime/RuntimeError.h"
#include "store/ini.h"

class TestIni : public QObject
{
    Q_OBJECT

    QTemporaryDir dir_;
    QString file_;

private slots:
    void init()
    {
        file_ = dir_.filePath(QStringLiteral("Data.ini"));
        QFile::remove(file_);
    }

    // The reader's buffer holds 254 characters and the terminator.
    void readCutsAt254Characters()
    {
        WriteINI(file_, "S", "k", QString(300, u'x'));
        QCOMPARE(ReadINI(file_, "S", "k", "d"), QString(254, u'x'));
        QCOMPARE(ReadINI(file_, "S", "j", "  d e f  "), QString("  d e f"));
    }

    void writeStoresLineBreaksAndCleansTheVariable()
    {
        QString value("a\r\nb\nc\rd");
        WriteINI(file_, "S", "k", value);
        QCOMPARE(value, QString("a  b c d"));
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=a\r\nb\nc\rd\r\n"));
        QCOMPARE(ReadINI(file_, "S", "k", "d"), QString("a"));

        const QString fixed("x\r\ny");
        WriteINI(file_, "S", "j", fixed);
        QCOMPARE(fixed, QString("x\r\ny"));
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=a\r\nj=x\r\ny\r\nb\nc\rd\r\n"));
    }

    void overlongValueOverflowsBeforeWriting()
    {
        QString longest(32767, u'\n');
        WriteINI(file_, "S", "k", longest);
        QCOMPARE(longest, QString(32767, u' '));
        QCOMPARE(readBytes(file_).size(), qsizetype(5 + 2 + 32767 + 2));

        QFile::remove(file_);
        QString tooLong(32768, u'\n');
        for (int pass = 0; pass < 2; ++pass) {
            try {
                if (pass == 0)
                    WriteINI(file_, "S", "k", tooLong);
                else
                    WriteINI(file_, "S", "k", std::as_const(tooLong));
                QFAIL("no overflow");
            } catch (const rt::RuntimeError &error) {
                QCOMPARE(error.number(), 6);
            }
            QCOMPARE(tooLong, QString(32768, u'\n'));
            QVERIFY(!QFile::exists(file_));
        }
    }

    void pathsAreUsedAsGiven()
    {
        rt::setProgramFolderForTest(dir_.path() + "/");
        const QString doubled = files::dataIni();
        QVERIFY(doubled.endsWith("//Data.ini"));
        WriteINI(doubled, "count", "c", QString("3"));
        QCOMPARE(ReadINI(file_, "count", "c", "0"), QString("3"));
        rt::setProgramFolderForTest(QString());
    }
};

QTEST_GUILESS_MAIN(TestIni)
#include "tst_ini.moc"
