#include "shell/TrayClicks.h"

#include <QTest>

using Reason = QSystemTrayIcon::ActivationReason;
Q_DECLARE_METATYPE(QList<Reason>)

class tst_TrayClicks : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_APPLESS_MAIN(tst_TrayClicks)
#include "tst_trayclicks.moc"
