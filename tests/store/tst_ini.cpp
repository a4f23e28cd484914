#include "runtime/ProgramFolder.h"
#include "runtime/RuntimeError.h"
#include "store/Files.h"
#include "store/ini.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestIni : public QObject
{
    Q_OBJECT

    QTemporaryDir dir_;
    QString file_;

    QByteArray bytes() const
    {
        QFile f(file_);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }

private slots:
    void init()
    {
        file_ = dir_.filePath(QStringLiteral("Data.ini"));
        QFile::remove(file_);
    }

    void readCutsAt254Characters()
    {
        WriteINI(file_, "S", "k", QString(300, u'x'));
        QCOMPARE(ReadINI(file_, "S", "k", "d"), QString(254, u'x'));
    }

    void readGivesTheDefault()
    {
        QCOMPARE(ReadINI(file_, "S", "k", "def"), QString("def"));
        WriteINI(file_, "S", "j", QString("1"));
        QCOMPARE(ReadINI(file_, "S", "k", "  d e f  "), QString("  d e f"));
        QCOMPARE(ReadINI(file_, "T", "j", QString()), QString(""));
        QCOMPARE(ReadINI(file_, "s", "J", QString()), QString("1"));
    }

    void writeStoresLineBreaksAndCleansTheVariable()
    {
        QString value("a\r\nb\nc\rd");
        WriteINI(file_, "S", "k", value);
        QCOMPARE(value, QString("a  b c d"));
        QCOMPARE(bytes(), QByteArray("[S]\r\nk=a\r\nb\nc\rd\r\n"));
        QCOMPARE(ReadINI(file_, "S", "k", "d"), QString("a"));

        const QString fixed("x\r\ny");
        WriteINI(file_, "S", "j", fixed);
        QCOMPARE(fixed, QString("x\r\ny"));
        QCOMPARE(bytes(), QByteArray("[S]\r\nk=a\r\nj=x\r\ny\r\nb\nc\rd\r\n"));
    }

    void overlongValueOverflowsBeforeWriting()
    {
        QString longest(32767, u'\n');
        WriteINI(file_, "S", "k", longest);
        QCOMPARE(longest, QString(32767, u' '));
        QCOMPARE(bytes().size(), qsizetype(5 + 2 + 32767 + 2));

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
            QCOMPARE(bytes(), QByteArray("<missing>"));
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
