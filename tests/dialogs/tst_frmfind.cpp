#include "dialogs/frmFind.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace
{

// n one-off events "Lunch 1".. and one recurring "Lunch with Ann", so the recurring one
// comes last.
store::Model lunches(int n)
{
    store::Model model;
    model.events = {{}};
    for (int i = 1; i <= n; ++i)
        model.events.append({0, 0, QStringLiteral("lunch %1").arg(i), "Work"});
    model.recurring = {{}, {"Daily", "", "", "00:00", "&**C:\\Lunch\\menu.txt", "Work"}};
    return model;
}

} // namespace

class TestFrmFind : public QObject
{
    Q_OBJECT

    static QStringList shown(frmFind &window)
    {
        QStringList texts;
        for (int k = 1; k <= frmFind::kPageSize; ++k) {
            auto *box = window.findChild<QLineEdit *>(QStringLiteral("txt1_%1").arg(k));
            if (!box->isHidden())
                texts << box->text();
        }
        return texts;
    }
    static bool enabled(frmFind &window, const char *name)
    {
        return window.findChild<QPushButton *>(name)->isEnabled();
    }
    static void find(frmFind &window, const QString &keyword)
    {
        window.findChild<QLineEdit *>("txtkeyword")->setText(keyword);
        window.cmdFind_Click();
    }

private slots:
    void pages_data()
    {
        QTest::addColumn<int>("events");
        QTest::addColumn<bool>("next");
        QTest::addColumn<QStringList>("secondPage");
        QTest::newRow("seven") << 6 << false << QStringList();
        QTest::newRow("eight") << 7 << true << QStringList{"C:\\Lunch\\menu.txt"};
    }
    void pages()
    {
        QFETCH(int, events);
        QFETCH(bool, next);
        QFETCH(QStringList, secondPage);
        const store::Model model = lunches(events);
        frmFind window(model);
        find(window, "LUNCH");
        QCOMPARE(shown(window).size(), 7);
        QCOMPARE(shown(window).first(), "lunch 1");
        QCOMPARE(enabled(window, "cmdnext"), next);
        QVERIFY(!enabled(window, "cmdBack"));
        if (!next)
            return;
        window.cmdnext_Click();
        QCOMPARE(shown(window), secondPage);
        QVERIFY(!enabled(window, "cmdnext"));
        QVERIFY(enabled(window, "cmdBack"));
        window.cmdBack_Click();
        QCOMPARE(shown(window).first(), "lunch 1");
    }

    void noMatch()
    {
        const store::Model model = lunches(8);
        frmFind window(model);
        find(window, "lunch");
        window.cmdnext_Click();
        find(window, "dinner");
        QCOMPARE(shown(window), QStringList{"No Matches Found"});
        QVERIFY(!enabled(window, "cmdnext") && !enabled(window, "cmdBack"));
        QSignalSpy spy(&window, &frmFind::modiRequested);
        window.txt1_Click(1);
        QCOMPARE(spy.count(), 0);
    }

    void aClickAsksForThatEvent()
    {
        const store::Model model = lunches(2);
        frmFind window(model);
        find(window, "menu");
        QSignalSpy spy(&window, &frmFind::modiRequested);
        QTest::mouseClick(window.findChild<QLineEdit *>("txt1_1"), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy[0][0].toString(), "C:\\Lunch\\menu.txt");
    }
};

QTEST_MAIN(TestFrmFind)
#include "tst_frmfind.moc"
