#include "logo3d/cdirectx.h"
#include "mainwindow/Form1.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RuntimeError.h"

#include <QFile>
#include <QLabel>
#include <QOpenGLContext>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace
{

struct Ended {
};

class FakeDirect3D : public Direct3D
{
public:
    QList<D3DDISPLAYMODE> modes;
    D3DDISPLAYMODE current{1280, 800, 60, d3d::D3DFMT_X8R8G8B8};
    bool hal = true;
    std::uint32_t devCaps = 0;

    int GetAdapterModeCount() const override { return int(modes.size()); }
    D3DDISPLAYMODE EnumAdapterModes(int mode) const override { return modes.at(mode); }
    D3DDISPLAYMODE GetAdapterDisplayMode() const override { return current; }
    bool GetDeviceCaps(D3DCAPS &caps) const override
    {
        if (hal)
            caps.DevCaps = devCaps;
        return hal;
    }
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

bool openGLAvailable()
{
    return QOpenGLContext().create();
}

} // namespace

class TstCdirectx : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        rt::setEndForTest([](int) { throw Ended{}; });
    }
    void cleanup() { rt::setEndForTest({}); }

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
        QFETCH(int, format);
        auto adapter = std::make_unique<FakeDirect3D>();
        adapter->modes = modesOf(modes);
        cdirectx dx(std::move(adapter));
        rt::MsgBoxRecorder boxes;

        bool ended = false;
        try {
            dx.intialise(nullptr, false, true);
        } catch (const Ended &) {
            ended = true;
        }

        QCOMPARE(ended, size.isEmpty());
        if (ended) {
            QCOMPARE(boxes.calls.size(), 1);
            QCOMPARE(boxes.calls[0].prompt,
                     QStringLiteral("Your hardware does not appear to support 640x480 display "
                                    "modes in either 16 bit or 32 bit modes. Exiting"));
            QCOMPARE(boxes.calls[0].style, int(rt::vbInformation));
            QCOMPARE(boxes.calls[0].title, QStringLiteral("Error"));
            return;
        }
        QVERIFY(boxes.calls.isEmpty());
        QCOMPARE(QSize(dx.displayWidth(), dx.displayHeight()), size);
        QCOMPARE(dx.displayFormat(), format);
        QCOMPARE(dx.presentParameters().BackBufferWidth, size.width());
    }

    void deviceFromCapabilities_data()
    {
        QTest::addColumn<bool>("hal");
        QTest::addColumn<uint>("devCaps");
        QTest::addColumn<int>("deviceType");
        QTest::addColumn<int>("behaviour");

        QTest::newRow("no hardware device: reference rasteriser") << false << 0x10000u << 2 << 32;
        QTest::newRow("hardware transform and light") << true << 0x10000u << 1 << 64;
        QTest::newRow("hardware without it") << true << 0x2FFFFu << 1 << 32;
    }
    void deviceFromCapabilities()
    {
        QFETCH(bool, hal);
        QFETCH(uint, devCaps);
        auto adapter = std::make_unique<FakeDirect3D>();
        adapter->modes = modesOf(QStringLiteral("800x600@22"));
        adapter->hal = hal;
        adapter->devCaps = devCaps;
        cdirectx dx(std::move(adapter));
        dx.intialise(nullptr, false, true);
        QTEST(dx.deviceType(), "deviceType");
        QTEST(dx.behaviourFlags(), "behaviour");
    }

    void mainWindowWithoutOpenGL()
    {
        if (openGLAvailable())
            QSKIP("this platform has OpenGL");
        QTemporaryDir folder;
        rt::setProgramFolderForTest(folder.path());
        for (const char *name : {"logo.x", "mdata.ini"})
            QVERIFY(QFile::copy(QStringLiteral(ORVA_DATA_DIR "/") + QLatin1String(name),
                                folder.filePath(QLatin1String(name))));
        {
            Form1 form;
            form.Form_Load();
            form.show();
            QTest::qWait(150);
            form.resetLogo();
            QVERIFY(form.findChild<QTimer *>(QStringLiteral("Timer2"))->isActive());
            QVERIFY(form.findChild<QLabel *>(QStringLiteral("Picture1"))->pixmap().isNull());
        }
        rt::setProgramFolderForTest({});
    }
};

QTEST_MAIN(TstCdirectx)
#include "tst_cdirectx.moc"
