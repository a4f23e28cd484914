#include "mainwindow/ViewMenu.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace
{

QStringList names(int count)
{
    QStringList list{QString(), "More"};
    for (int i = 2; i <= count; ++i)
        list << QStringLiteral("Category %1").arg(i);
    return list.mid(0, count + 1);
}

QList<QAction *> categoryItems(const QMenu &menu)
{
    QList<QAction *> items;
    for (QAction *a : menu.actions()) {
        if (a->objectName().startsWith("v1_"))
            items << a;
    }
    return items;
}

} // namespace

class TstViewMenu : public QObject
{
    Q_OBJECT

private slots:
    // The items, their captions, shortcuts and order, with three categories.
    void itemsInOrder()
    {
        QMenu view;
        ViewMenu menu(&view);
        menu.load({QString(), "More", "Work", "R&D"});
        QStringList items;
        const auto list = [&items](const QMenu *m, auto &self) -> void {
            for (QAction *a : m->actions()) {
                items << QStringLiteral("%1|%2|%3%4")
                             .arg(a->objectName(), a->text(), a->shortcut().toString(),
                                  a->isVisible() ? "" : "|hidden");
                if (a->menu())
                    self(a->menu(), self);
            }
        };
        list(&view, list);
        QCOMPARE(items, QStringList({"allevents|All Events|", "None|None|Ctrl+N", "|Recurrence|",
                                     "Daily|Daily|Ctrl+D", "weekly|Weekly|Ctrl+W",
                                     "mon|Monthly|Ctrl+M", "yearly|Yearly|Ctrl+Y", "v1_1|||hidden",
                                     "v1_2|Work|", "v1_3|R&&D|"}));
        QCOMPARE(menu.categoryCaption(3), "R&D");
        QCOMPARE(menu.categoryCaption(1), "");
    }

    // A damaged count builds items up to the bound; the categories beyond share the hidden
    // item's check, which "All Events" and "None" set with the others.
    void itemsStopAtTheBound_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("items"); // v1_1 included
        QTest::addColumn<int>("last");
        QTest::newRow("no categories") << 0 << 1 << 1;
        QTest::newRow("three") << 3 << 3 << 3;
        QTest::newRow("at the bound") << 1000 << 1000 << 1000;
        QTest::newRow("one past it") << 1001 << 1000 << 1001;
        QTest::newRow("a damaged count") << 100000 << 1000 << 100000;
    }
    void itemsStopAtTheBound()
    {
        QFETCH(int, count);
        QMenu view;
        ViewMenu menu(&view);
        menu.load(names(count));
        QTEST(int(categoryItems(view).size()), "items");
        QTEST(menu.lastCategory(), "last");

        QSignalSpy repaints(&menu, &ViewMenu::repaintRequested);
        menu.None_Click();
        QVERIFY(!menu.categoryShown(menu.lastCategory()));
        menu.allevents_Click();
        QVERIFY(menu.categoryShown(menu.lastCategory()) && menu.categoryShown(1));
        if (count >= 2) {
            menu.v1_Click(2);
            QVERIFY(!menu.categoryShown(2) && menu.categoryShown(menu.lastCategory()));
        }
        QCOMPARE(repaints.size(), count >= 2 ? 3 : 2);
    }
};

QTEST_MAIN(TstViewMenu)
#include "tst_viewmenu.moc"
