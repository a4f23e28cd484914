#include "runtime/ProgramFolder.h"
#include "shell/Links.h"
#include "store/Files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestLinks : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    QList<QUrl> opened;

    static QByteArray tempUrl()
    {
        QFile f(files::tempUrl());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private slots:
    void initTestCase()
    {
        rt::setProgramFolderForTest(dir.path());
        links::setOpenForTest([this](const QUrl &url) { opened.append(url); });
    }
    void init() { opened.clear(); }

    void shopLink_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("address");
        const QString page = links::kShopDepartment + QStringLiteral("?id=");
        QTest::newRow("first") << "1" << page + "174";
        QTest::newRow("middle") << "7" << page + "168";
        QTest::newRow("last") << "12" << page + "177";
        QTest::newRow("zero") << "0" << QString();
        QTest::newRow("past the table") << "13" << QString();
        QTest::newRow("padded") << "01" << QString();
        QTest::newRow("empty") << "" << QString();
    }
    void shopLink()
    {
        QFETCH(QString, id);
        QFETCH(QString, address);
        links::shopLink(id);
        QCOMPARE(tempUrl(), "[internetshortcut]\r\nurl=" + address.toUtf8() + "\r\n");
        // The shortcut is opened even with nothing in it.
        QCOMPARE(opened, QList<QUrl>{QUrl(address)});
    }

    void twoLinksInARowLeaveTheLast()
    {
        links::shopLink(QStringLiteral("2"));
        links::shopLink(QStringLiteral("11"));
        QCOMPARE(tempUrl(),
                 "[internetshortcut]\r\nurl=" + links::shopAddress("11").toUtf8() + "\r\n");
        QCOMPARE(opened,
                 (QList<QUrl>{QUrl(links::shopAddress("2")), QUrl(links::shopAddress("11"))}));
    }

    void homepageWritesNoShortcut()
    {
        QFile::remove(files::tempUrl());
        links::openHomepage();
        QCOMPARE(opened, QList<QUrl>{QUrl(links::kHomepage)});
        QVERIFY(!QFile::exists(files::tempUrl()));
    }
};

QTEST_GUILESS_MAIN(TestLinks)
#include "tst_links.moc"
