#include "dialogs/frmFind.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class TestFrmFind : public QObject
{
    Q_OBJECT

    store::Model model;
    frmFind *window = nullptr;

    // n one-off events "lunch 1".., then a recurring action whose path holds "Lunch".
    void open(int n)
    {
        model.events = {{}};
        for (int i = 1; i <= n; ++i)
            model.events.append({0, 0, QStringLiteral("lunch %1").arg(i), "Work"});
        model.recurring = {{}, {"Daily", "", "", "00:00", "&**C:\\Lunch\\menu.txt", "Work"}};
        delete window;
        window = new frmFind(model);
    }
    void find(const QString &keyword)
    {
        window->findChild<QLineEdit *>("txtkeyword")->setText(keyword);
        window->cmdFind_Click();
    }
    QStringList shown() const
    {
        QStringList texts;
        for (int k = 1; k <= frmFind::kPageSize; ++k) {
            auto *box = window->findChild<QLineEdit *>(QStringLiteral("txt1_%1").arg(k));
            if (!box->isHidden())
                texts << box->text();
        }
        return texts;
    }
    bool enabled(const char *name) const
    {
        return window->findChild<QPushButton *>(name)->isEnabled();
    }

private slots:
    void cleanup()
    {
        delete window;
        window = nullptr;
    }

    void pages_data()
    {
        QTest::addColumn<int>("events");
        QTest::addColumn<bool>("next");
        QTest::newRow("seven") << 6 << false;
        QTest::newRow("eight") << 7 << true;
    }
    void pages()
    {
        QFETCH(int, events);
        QFETCH(bool, next);
        open(events);
        find("LUNCH");
        QCOMPARE(shown().size(), 7);
        QCOMPARE(shown().first(), "lunch 1");
        QCOMPARE(enabled("cmdnext"), next);
        QVERIFY(!enabled("cmdBack"));
        if (!next)
            return;
        window->cmdnext_Click();
        QCOMPARE(shown(), QStringList{"C:\\Lunch\\menu.txt"});
        QVERIFY(!enabled("cmdnext") && enabled("cmdBack"));

        // A click hands on the text as shown.
        QSignalSpy spy(window, &frmFind::modiRequested);
        QTest::mouseClick(window->findChild<QLineEdit *>("txt1_1"), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy[0][0].toString(), "C:\\Lunch\\menu.txt");
    }

    void noMatchStartsAgainOnPageOne()
    {
        open(8);
        find("lunch");
        window->cmdnext_Click();
        find("dinner");
        QCOMPARE(shown(), QStringList{"No Matches Found"});
        QVERIFY(!enabled("cmdnext") && !enabled("cmdBack"));
        QSignalSpy spy(window, &frmFind::modiRequested);
        window->txt1_Click(1);
        QCOMPARE(spy.count(), 0);
    }
};

QTEST_MAIN(TestFrmFind)
#include "tst_frmfind.moc"
