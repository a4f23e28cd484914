#include "mainwindow/Form1.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "shell/HelpWindow.h"
#include "shell/Links.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "shell/frmtask.h"
#include "store/Files.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

class TestShellWindows : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
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
        rt::setProgramFolderForTest(dir.path());
        links::setOpenForTest([this](const QUrl &url) { opened.append(url); });
    }
    void init() { opened.clear(); }

    void splashHandsOverToTheTrayAfterTwoSeconds()
    {
        frmSplash splash;
        QCOMPARE(splash.windowTitle(), QStringLiteral("Form2"));
        QVERIFY(!splash.findChild<QLabel *>("Image1")->pixmap().isNull());
        splash.Form_Load();
        QVERIFY(splash.isVisible());
        QCOMPARE(splash.Timer1()->interval(), 2000);
        QTest::qWait(1500);
        QVERIFY(!splash.task());
        QTRY_VERIFY_WITH_TIMEOUT(splash.task(), 2000);
        QVERIFY(!splash.isVisible());
        QVERIFY(!splash.Timer1()->isActive());
        QVERIFY(splash.task()->form()->isVisible());
    }

    void aboutBox()
    {
        frmAbout box;
        QCOMPARE(box.windowTitle(), QStringLiteral("About ORVA Calendar"));
        QCOMPARE(box.findChild<QLabel *>("lblTitle")->text(), QStringLiteral("ORVA Calendar"));
        QCOMPARE(box.findChild<QLabel *>("lblVersion")->text(), QStringLiteral("Version 1.07"));
        QVERIFY(!box.findChild<QLabel *>("picIcon")->pixmap().isNull());
        box.show();
        box.cmdOK_Click();
        QVERIFY(!box.isVisible());
    }

#ifndef Q_OS_WIN
    void noSystemInformationWithoutARegistry()
    {
        QString value = QStringLiteral("untouched");
        QVERIFY(!frmAbout::GetKeyValue("HKEY_LOCAL_MACHINE",
                                       "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", value));
        rt::MsgBoxRecorder boxes;
        frmAbout().StartSysInfo();
        QCOMPARE(boxes.calls.size(), 1);
        QCOMPARE(boxes.calls[0].prompt,
                 QStringLiteral("System Information Is Unavailable At This Time"));
        QCOMPARE(boxes.calls[0].style, int(rt::vbOKOnly));
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
        QCOMPARE(opened, (QList<QUrl>{QUrl(links::shopAddress("3")), QUrl(links::kHomepage)}));
    }

    void missingHelpIsReported()
    {
        QFile::remove(files::helpHlp());
        rt::MsgBoxRecorder boxes;
        HelpWindow help;
        QVERIFY(!help.showContents());
        QVERIFY(!help.isVisible());
        QCOMPARE(boxes.calls.size(), 1);
        QVERIFY(boxes.calls[0].prompt.contains(files::helpHlp()));
    }

    void menusAndTheLogoRaiseTheirRequests()
    {
        Form1 form;
        const QList<std::pair<const char *, const char *>> items = {
            {"printcal", SIGNAL(printCalendarRequested())},
            {"print", SIGNAL(printRequested())},
            {"contents", SIGNAL(contentsRequested())},
            {"index", SIGNAL(indexRequested())},
            {"About", SIGNAL(aboutRequested())}};
        for (const auto &[name, signal] : items) {
            QSignalSpy spy(&form, signal);
            form.findChild<QAction *>(name)->trigger();
            QVERIFY2(spy.count() == 1, name);
        }

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

QTEST_MAIN(TestShellWindows)
#include "tst_shellwindows.moc"
