#include "DataTable.h"
#include "mainwindow/OwnActivations.h"

#include <QHideEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <QWindow>

class TestOwnActivations : public QObject
{
    Q_OBJECT

private slots:
    // Steps: main, another of our windows, a popup, another program (away), or hide.
    void reloads_data()
    {
        columns<QString, int>("steps", "expected");
        QTest::newRow("first activation") << "main" << 1;
        QTest::newRow("back from another program") << "main away main away main" << 1;
        QTest::newRow("a dialog closes") << "main other main" << 2;
        QTest::newRow("a dialog, then another program") << "main other away main" << 2;
        QTest::newRow("a menu") << "main popup main" << 1;
        QTest::newRow("back from the tray") << "main hide main" << 2;
    }
    void reloads()
    {
        QFETCH(QString, steps);
        QWidget main;
        main.winId();
        QWindow other;
        QWindow popup;
        popup.setFlags(Qt::Popup);
        auto *activations = new OwnActivations(&main);
        QSignalSpy spy(activations, &OwnActivations::activated);
        for (const QString &step : steps.split(' ')) {
            if (step == QLatin1String("hide")) {
                QHideEvent hidden;
                QCoreApplication::sendEvent(&main, &hidden);
                continue;
            }
            QWindow *window = step == QLatin1String("main")    ? main.windowHandle()
                              : step == QLatin1String("other") ? &other
                              : step == QLatin1String("popup") ? &popup
                                                               : nullptr;
            activations->focusMovedTo(window);
        }
        QTEST(int(spy.count()), "expected");
    }
};

QTEST_MAIN(TestOwnActivations)
#include "tst_ownactivations.moc"
