#include "Fixtures.h"
#include "logo3d/cdirectx.h"
#include "mainwindow/Form1.h"
#include "runtime/MsgBox.h"

#include <QLabel>
#include <QOpenGLContext>
#include <QRegularExpression>
#include <QTimer>

namespace
{

class FakeDirect3D : public Direct3D
{
public:
    QList<D3DDISPLAYMODE> modes;
    D3DDISPLAYMODE current{1280, 800, 60, d3d::D3DFMT_X8R8G8B8};

    int GetAdapterModeCount() const override { return int(modes.size()); }
    D3DDISPLAYMODE EnumAdapterModes(int mode) const override { return modes.at(mode); }
    D3DDISPLAYMODE GetAdapterDisplayMode() const override { return current; }
    bool GetDeviceCaps(D3DCAPS &) const override { return true; }
};

// "800x600@22 640x480@23": width, height and format of each mode, in the adapter's order.
QList<D3DDISPLAYMODE> modesOf(const QString &text)
{
    QList<D3DDISPLAYMODE> modes;
    for (const QString &mode : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList parts = mode.split(QRegularExpression(QStringLiteral("[x@]")));
        modes.append({parts[0].toInt(), parts[1].toInt(), 60, parts[2].toInt()});
    }
    return modes;
}

} // namespace

class TstCdirectx : public QObject
{
    Q_OBJECT

private slots:
    void fullScreenModeSearch_data()
    {
        QTest::addColumn<QString>("modes");
        QTest::addColumn<QSize>("size"); // empty: the program ends
        QTest::addColumn<int>("format");

        QTest::newRow("a 32-bit mode is found by the 16-bit test")
            << "1024x768@22 800x600@22" << QSize(800, 600) << 22;
        QTest::newRow("800x600 is preferred wherever it is listed")
            << "640x480@23 800x600@22" << QSize(800, 600) << 22;
        QTest::newRow("the first mode of the size wins, whatever its format")
            << "800x600@23 800x600@22" << QSize(800, 600) << 23;
        QTest::newRow("640x480 without an 800x600")
            << "1280x800@22 640x480@22" << QSize(640, 480) << 22;
        QTest::newRow("near misses are no match")
            << "800x601@22 799x600@22 640x481@23" << QSize() << 0;
        QTest::newRow("no modes at all") << "" << QSize() << 0;
    }
    void fullScreenModeSearch()
    {
        QFETCH(QString, modes);
        QFETCH(QSize, size);
        auto adapter = std::make_unique<FakeDirect3D>();
        adapter->modes = modesOf(modes);
        cdirectx dx(std::move(adapter));
        rt::MsgBoxRecorder boxes;

        const bool ended = exitCodeOf([&] { dx.intialise(nullptr, false, true); }) >= 0;
        QCOMPARE(ended, size.isEmpty());
        if (ended) {
            QCOMPARE(shownBoxes(boxes),
                     "Your hardware does not appear to support 640x480 display modes in either "
                     "16 bit or 32 bit modes. Exiting|64|Error");
            return;
        }
        QVERIFY(boxes.calls.isEmpty());
        QCOMPARE(QSize(dx.displayWidth(), dx.displayHeight()), size);
        QTEST(dx.displayFormat(), "format");
        QCOMPARE(dx.presentParameters().BackBufferWidth, size.width());
    }

    void mainWindowWithoutOpenGL()
    {
        if (QOpenGLContext().create())
            QSKIP("this platform has OpenGL");
        TestFolder folder;
        QVERIFY(folder.copyIn(ORVA_DATA_DIR, {"logo.x", "mdata.ini"}));
        Form1 form;
        form.Form_Load();
        form.show();
        QTest::qWait(150);
        form.resetLogo();
        QVERIFY(form.findChild<QTimer *>(QStringLiteral("Timer2"))->isActive());
        QVERIFY(form.findChild<QLabel *>(QStringLiteral("Picture1"))->pixmap().isNull());
    }
};

QTEST_MAIN(TstCdirectx)
#include "tst_cdirectx.moc"
