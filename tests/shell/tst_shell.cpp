#include "Fixtures.h"
#include "mainwindow/Form1.h"
#include "shell/HelpWindow.h"
#include "shell/Links.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "shell/frmtask.h"
#include "store/Files.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

class TestShell : public QObject
{
    Q_OBJECT

    TestFolder folder;
    QList<QUrl> opened;

    // The first line of text at the top of the help window's view.
    static QString topLine(HelpWindow &help)
    {
        QTextBlock block = help.browser()->cursorForPosition(QPoint(4, 4)).block();
        while (block.isValid() && block.text().trimmed().isEmpty())
            block = block.next();
        return block.text();
    }

private slots:
    void initTestCase()
    {
        links::setOpenForTest([this](const QUrl &url) { opened.append(url); });
    }
    void init() { opened.clear(); }

    void shopLink_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("address");
        const QString page = links::homepage() + QStringLiteral("?id=");
        QTest::newRow("first") << "1" << page + "174";
        QTest::newRow("middle") << "7" << page + "168";
        QTest::newRow("last") << "12" << page + "177";
        QTest::newRow("zero") << "0" << QString();
        QTest::newRow("past the table") << "13" << QString();
        QTest::newRow("padded") << "01" << QString();
    }
    void shopLink()
    {
        QFETCH(QString, id);
        QFETCH(QString, address);
        links::shopLink(id);
        // Rows share the folder: each link replaces the shortcut the last one left.
        QCOMPARE(readBytes(files::tempUrl()),
                 "[internetshortcut]\r\nurl=" + address.toUtf8() + "\r\n");
        // The shortcut is opened even with nothing in it.
        QCOMPARE(opened, QList<QUrl>{QUrl(address)});
    }

    // Every link leads to a page that ships with the program, and the guide names the shop's
    // departments rather than numbering them.
    void linksLeadToShippedPages()
    {
        QFile page(ORVA_DATA_DIR "/homepage.html");
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(page.readAll());
        QCOMPARE(QUrl(links::homepage()).toLocalFile(), files::inProgramFolder("homepage.html"));
        for (int n = 1; n <= 12; ++n) {
            const QUrl shop(links::shopAddress(QString::number(n)));
            QCOMPARE(shop.adjusted(QUrl::RemoveQuery), QUrl(links::homepage()));
            QVERIFY(html.contains(QString("id=\"d%1\"").arg(shop.query().mid(3))));
        }
        QFile guide(ORVA_DATA_DIR "/help.hlp");
        QVERIFY(guide.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(guide.readAll());
        QVERIFY(!QRegularExpression("\"shop:\\d+\">\\d").match(text).hasMatch());
        QCOMPARE(text.count(QRegularExpression("\"shop:\\d+\">\\w")), 12);
    }

    void splashHandsOverToTheTrayAfterTwoSeconds()
    {
        frmSplash splash;
        QVERIFY(!splash.findChild<QLabel *>("Image1")->pixmap().isNull());
        splash.Form_Load();
        QVERIFY(splash.isVisible() && splash.Timer1()->isActive() && !splash.task());
        // The timer's tick, sent rather than waited for, which a busy machine could delay.
        QTimerEvent tick(splash.Timer1()->timerId());
        QCoreApplication::sendEvent(splash.Timer1(), &tick);
        QVERIFY(splash.task());
        QVERIFY(!splash.isVisible());
        QVERIFY(splash.task()->form()->isVisible());
    }

#ifndef Q_OS_WIN
    void noSystemInformationWithoutARegistry()
    {
        rt::MsgBoxRecorder boxes;
        frmAbout().StartSysInfo();
        QCOMPARE(shownBoxes(boxes), "System Information Is Unavailable At This Time|0");
    }
#endif

    void helpOpensAtContentsAndIndex()
    {
        QFile::remove(files::helpHlp());
        QVERIFY(QFile::copy(ORVA_DATA_DIR "/help.hlp", files::helpHlp()));
        HelpWindow help;
        QVERIFY(help.showIndex());
        QVERIFY(help.isVisible());
        QCOMPARE(help.browser()->source().fragment(), QStringLiteral("index"));
        QCOMPARE(topLine(help), QStringLiteral("Index"));
        QVERIFY(help.showContents());
        QCOMPARE(help.browser()->source().fragment(), QStringLiteral("contents"));
        QCOMPARE(topLine(help), QStringLiteral("ORVA Calendar Help"));
        help.anchorClicked(QUrl("#password"));
        QCOMPARE(topLine(help), QStringLiteral("13. The password"));

        help.anchorClicked(QUrl("shop:3"));
        help.anchorClicked(QUrl("homepage:"));
        QCOMPARE(opened, (QList<QUrl>{QUrl(links::shopAddress("3")), QUrl(links::homepage())}));

        QApplication::setActiveWindow(&help);
        QVERIFY(QTest::qWaitForWindowActive(&help));
        QTest::keyClick(help.browser(), Qt::Key_Escape);
        QVERIFY(!help.isVisible());
    }

    void missingHelpIsReported()
    {
        QFile::remove(files::helpHlp());
        rt::MsgBoxRecorder boxes;
        HelpWindow help;
        QVERIFY(!help.showContents());
        QVERIFY(!help.isVisible());
        QCOMPARE(shownBoxes(boxes), "Cannot find the help file " + files::helpHlp() + ".|48");
    }

    void logoOpensTheHomepageOnlyWhileShown()
    {
        Form1 form;
        QSignalSpy homepage(&form, &Form1::homepageRequested);
        auto *picture = form.findChild<QLabel *>("Picture1");
        form.Picture1_Click();
        QCOMPARE(homepage.count(), 0); // the window is not shown yet
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QTest::mouseClick(picture, Qt::LeftButton);
        QCOMPARE(homepage.count(), 1);
        picture->hide();
        form.Picture1_Click();
        QCOMPARE(homepage.count(), 1);
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
