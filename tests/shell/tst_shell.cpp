#include "Fixtures.h"
#include "mainwindow/Form1.h"
#include "shell/HelpWindow.h"
#include "shell/Links.h"
#include "shell/SingleInstance.h"
#include "shell/TrayClicks.h"
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

using Reason = QSystemTrayIcon::ActivationReason;
Q_DECLARE_METATYPE(QList<Reason>)

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

    // Every link leads to a shipped page, and the guide names the shop's departments.
    void linksLeadToShippedPages()
    {
        const QString html = QString::fromUtf8(readBytes(ORVA_DATA_DIR "/homepage.html"));
        QCOMPARE(QUrl(links::homepage()).toLocalFile(), files::inProgramFolder("homepage.html"));
        for (int n = 1; n <= 12; ++n) {
            const QUrl shop(links::shopAddress(QString::number(n)));
            QCOMPARE(shop.adjusted(QUrl::RemoveQuery), QUrl(links::homepage()));
            QVERIFY(html.contains(QString("id=\"d%1\"").arg(shop.query().mid(3))));
        }
        const QString guide = QString::fromUtf8(readBytes(ORVA_DATA_DIR "/help.hlp"));
        QVERIFY(!QRegularExpression("\"shop:\\d+\">\\d").match(guide).hasMatch());
        QCOMPARE(guide.count(QRegularExpression("\"shop:\\d+\">\\w")), 12);
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
        QVERIFY(splash.task() && splash.task()->form()->isVisible() && !splash.isVisible());
    }

    // Without the guide a box tells where it was looked for; with it, the window opens.
    void helpOpensAtContentsAndIndex()
    {
        QFile::remove(files::helpHlp());
        HelpWindow help;
        {
            rt::MsgBoxRecorder boxes;
            QVERIFY(!help.showContents() && !help.isVisible());
            QCOMPARE(shownBoxes(boxes), "Cannot find the help file " + files::helpHlp() + ".|48");
        }
        QVERIFY(QFile::copy(ORVA_DATA_DIR "/help.hlp", files::helpHlp()));
        QVERIFY(help.showIndex() && help.isVisible());
        QCOMPARE(topLine(help), QStringLiteral("Index"));
        QVERIFY(help.showContents());
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

    // One name per user and program folder, however the folder's path is spelt.
    void serverName_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("same");
        QTest::newRow("one path, spelt longer") << "1000"
                                                << "/opt/./a" << true;
        QTest::newRow("other user") << "1001"
                                    << "/opt/a" << false;
        QTest::newRow("other folder") << "1000"
                                      << "/opt/b" << false;
    }
    void serverName()
    {
        QFETCH(QString, user);
        QFETCH(QString, folder);
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("opt/a") && QDir(root.path()).mkpath("opt/b"));
        const QString name = SingleInstance::serverName(user, root.path() + folder);
        QTEST(name == SingleInstance::serverName("1000", root.path() + "/opt/a"), "same");
        QVERIFY(name.size() < 64 && !name.contains('/'));
    }

    void restores_data()
    {
        QTest::addColumn<QList<Reason>>("reasons");
        QTest::addColumn<QList<qint64>>("times");
        QTest::addColumn<QList<bool>>("expected");
        constexpr Reason T = QSystemTrayIcon::Trigger;
        constexpr Reason D = QSystemTrayIcon::DoubleClick;
        constexpr Reason C = QSystemTrayIcon::Context;
        // StatusNotifierItem trays: Triggers only, paired within 400 ms.
        QTest::newRow("two quick") << QList{T, T} << QList<qint64>{0, 400} << QList{false, true};
        QTest::newRow("two slow") << QList{T, T} << QList<qint64>{0, 401} << QList{false, false};
        QTest::newRow("slow, then quick")
            << QList{T, T, T} << QList<qint64>{0, 1000, 1200} << QList{false, false, true};
        QTest::newRow("three quick: one restore")
            << QList{T, T, T} << QList<qint64>{0, 100, 200} << QList{false, true, false};
        QTest::newRow("menu between")
            << QList{T, C, T} << QList<qint64>{0, 100, 200} << QList{false, false, false};
        // XEmbed trays: a press, then the tray's own double click; the next press starts anew.
        QTest::newRow("xembed double")
            << QList{T, D, T} << QList<qint64>{0, 150, 300} << QList{false, true, false};
    }
    void restores()
    {
        QFETCH(QList<Reason>, reasons);
        QFETCH(QList<qint64>, times);
        TrayClicks clicks;
        QList<bool> got;
        for (qsizetype i = 0; i < reasons.size(); ++i)
            got << clicks.isDoubleClick(reasons[i], times[i], 400);
        QTEST(got, "expected");
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
