#include "DataTable.h"
#include "runtime/Colors.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

class TestColors : public QObject
{
    Q_OBJECT

private slots:
    void textColour_data()
    {
        columns<rt::WinColor, rt::WinColor>("back", "text");
        QTest::newRow("white") << rt::kWhite << rt::WinColor(0);
        QTest::newRow("navy") << rt::RGB(0, 0, 128) << rt::kWhite;
        QTest::newRow("red") << rt::kRed << rt::WinColor(0);
        QTest::newRow("dark green") << rt::RGB(0, 100, 0) << rt::kWhite;
    }
    void textColour()
    {
        QFETCH(rt::WinColor, back);
        QTEST(rt::textColorOn(back), "text");
    }

    // Blue day numbers read on every starter colour, and so does the red of today.
    void starterColoursReadWell()
    {
        QFile file(ORVA_DATA_DIR "/Data.ini");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString store = QString::fromLatin1(file.readAll());
        int colours = 0;
        const QRegularExpression colour("^\\d+c=(\\d+)", QRegularExpression::MultilineOption);
        for (const auto &m : colour.globalMatch(store)) {
            const rt::WinColor back = m.captured(1).toUInt();
            QVERIFY2(rt::contrastRatio(back, rt::kBlue) >= 4.5, qPrintable(m.captured(0)));
            QVERIFY2(rt::contrastRatio(back, rt::kRed) >= 3.0, qPrintable(m.captured(0)));
            ++colours;
        }
        QCOMPARE(colours, 7);
    }
};

QTEST_MAIN(TestColors)
#include "tst_colors.moc"
