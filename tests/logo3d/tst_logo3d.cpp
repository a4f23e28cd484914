#include "Fixtures.h"
#include "logo3d/LogoFrames.h"
#include "logo3d/LogoTurn.h"
#include "logo3d/cMesh.h"
#include "logo3d/cdirectx.h"
#include "runtime/MsgBox.h"

#include <QProcess>
#include <QRegularExpression>
#include <QVector3D>
#include <cmath>
#include <numbers>

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
        const QStringList parts = mode.split(QRegularExpression("[x@]"));
        modes.append({parts[0].toInt(), parts[1].toInt(), 60, parts[2].toInt()});
    }
    return modes;
}

// DirectX files are left-handed: every z below loads negated.
const QByteArray kTetrahedron =
    "xof 0303txt 0032\n"
    "Material M { 1.0;1.0;1.0;1.0;; 0.0; 0.0;0.0;0.0;; 0.0;0.0;0.0;; }\n"
    "Mesh T { 4; 1;2;3;, 3;2;3;, 1;6;3;, 1;2;11;;\n"
    " 4; 3;0,2,1;, 3;0,1,3;, 3;0,3,2;, 3;1,2,3;;\n"
    " MeshMaterialList { 1; 4; 0,0,0,0;; {M} } }\n";
const QByteArray kFlatTriangle =
    "xof 0303txt 0032\n"
    "Material M { 1.0;1.0;1.0;1.0;; 0.0; 0.0;0.0;0.0;; 0.0;0.0;0.0;; }\n"
    "Mesh F { 3; 1;2;3;, 3;2;3;, 1;6;3;; 1; 3;0,2,1;;\n"
    " MeshMaterialList { 1; 1; 0;; {M} } }\n";
QVector3D position(const cMesh::Vertex &v)
{
    return {v.x, v.y, v.z};
}

int vertexAt(const cMesh &mesh, QVector3D where)
{
    for (int i = 0; i < int(mesh.vertices().size()); ++i) {
        if (qFuzzyCompare(position(mesh.vertices()[i]), where))
            return i;
    }
    return -1;
}

constexpr double kStep = 2 * std::numbers::pi / logo::kFramesPerTurn;
constexpr int kPatience = 60000; // only a renderer that never answers runs into it

// The frame number the fake renderer painted into a picture.
int frameIn(const QPixmap &pixmap)
{
    return qRed(pixmap.toImage().pixel(0, 0));
}

bool rendererGone(const LogoFrames &frames)
{
    return frames.findChildren<QProcess *>().isEmpty();
}

} // namespace

class TstLogo3d : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;

private slots:
    void initTestCase() { rt::RtLocale::setForTest(QLocale(QStringLiteral("en_US"))); }

    // What the full-screen path settles on, as modes are written; empty where the program ends.
    void fullScreenModeSearch_data()
    {
        QTest::addColumn<QString>("modes");
        QTest::addColumn<QString>("found");
        const auto row = [](const char *name, const char *modes, const char *found) {
            QTest::newRow(name) << QString(modes) << QString(found);
        };
        row("a 32-bit mode is found by the 16-bit test", "1024x768@22 800x600@22", "800x600@22");
        row("800x600 is preferred wherever it is listed", "640x480@23 800x600@22", "800x600@22");
        row("the first of the size wins, whatever its format", "800x600@23 800x600@22",
            "800x600@23");
        row("640x480 without an 800x600", "1280x800@22 640x480@22", "640x480@22");
        row("near misses are no match", "800x601@22 799x600@22 640x481@23", "");
    }
    void fullScreenModeSearch()
    {
        QFETCH(QString, modes);
        auto adapter = std::make_unique<FakeDirect3D>();
        adapter->modes = modesOf(modes);
        cdirectx dx(std::move(adapter));
        rt::MsgBoxRecorder boxes;
        const bool ended = exitCodeOf([&] { dx.intialise(nullptr, false, true); }) >= 0;
        const QString found = QString::asprintf("%dx%d@%d", dx.displayWidth(), dx.displayHeight(),
                                                dx.displayFormat());
        QTEST(ended ? QString() : found, "found");
        QCOMPARE(shownBoxes(boxes),
                 ended ? "Your hardware does not appear to support 640x480 display modes in "
                         "either 16 bit or 32 bit modes. Exiting|64|Error"
                       : "");
    }

    void scaleToSizeAndTranslateToPoint_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QVector3D>("size");
        QTest::addColumn<QVector3D>("point");
        QTest::addColumn<QVector3D>("pointAfter"); // what the caller's variables hold then
        QTest::addColumn<QVector3D>("probe");      // a vertex other than the reference
        QTest::addColumn<QVector3D>("probeAfter");

        // Box (1, 2, -11) to (3, 6, -3), extents 2, 4, 8; the reference is its lowest corner.
        QTest::newRow("each axis its own factor")
            << kTetrahedron << QVector3D(4, 2, 16) << QVector3D(10, 20, 30) << QVector3D(8, 19, 52)
            << QVector3D(3, 2, -3) << QVector3D(14, 20, 46);
        QTest::newRow("a flat axis is not scaled")
            << kFlatTriangle << QVector3D(4, 8, 5) << QVector3D(0, 0, 0) << QVector3D(-2, -4, 3)
            << QVector3D(3, 2, -3) << QVector3D(4, 0, 0);
    }
    void scaleToSizeAndTranslateToPoint()
    {
        QFETCH(QByteArray, file);
        QFETCH(QVector3D, size);
        QFETCH(QVector3D, point);
        QFETCH(QVector3D, probe);
        const QString path = dir.filePath("known.x");
        writeBytes(path, file);
        cMesh mesh;
        QVERIFY(mesh.ReadXFile(path));
        const int reference = mesh.referenceVertex();
        const int probed = vertexAt(mesh, probe);
        QVERIFY(probed >= 0);

        const double sizes[3] = {size.x(), size.y(), size.z()};
        double x = point.x(), y = point.y(), z = point.z();
        mesh.ScaleToSize_AND_TranslateToPoint(sizes[0], sizes[1], sizes[2], x, y, z);

        QTEST(QVector3D(float(x), float(y), float(z)), "pointAfter");
        QCOMPARE(position(mesh.vertices()[reference]), point);
        QTEST(position(mesh.vertices()[probed]), "probeAfter");
    }

    void readMData_data()
    {
        QTest::addColumn<QByteArray>("file"); // empty: none
        QTest::addColumn<QVector3D>("values");

        QTest::newRow("any case, fractions, signs")
            << QByteArray("[data]\r\nx = 1.5\r\nY=-2\r\nz=1E2\r\n") << QVector3D(1.5, -2, 100);
        QTest::newRow("no file keeps what was read") << QByteArray() << QVector3D(7, 7, 7);
        QTest::newRow("values that are no number are skipped")
            << QByteArray("[DATA]\r\nX=abc\r\nY=\r\nZ=9\r\n") << QVector3D(7, 7, 9);
    }
    void readMData()
    {
        QFETCH(QByteArray, file);
        QTemporaryDir first;
        writeBytes(first.filePath("mdata.ini"), "[DATA]\r\nX=7\r\nY=7\r\nZ=7\r\n");
        QFile::remove(dir.filePath("mdata.ini"));
        if (!file.isEmpty())
            writeBytes(dir.filePath("mdata.ini"), file);

        cMesh mesh;
        mesh.ReadMData(first.path() + QLatin1Char('/'));
        mesh.ReadMData(dir.path() + QLatin1Char('/'));
        const std::array<double, 3> &read = mesh.mdata();
        QTEST(QVector3D(float(read[0]), float(read[1]), float(read[2])), "values");
    }

    void unusableFilesLoadNothing_data()
    {
        QTest::addColumn<QByteArray>("file"); // empty: none

        QTest::newRow("missing") << QByteArray();
        QTest::newRow("not a mesh file") << QByteArray("logo\r\n\x01\x02\x03 garbage garbage");
        QTest::newRow("cut short") << kTetrahedron.left(kTetrahedron.size() / 2);
        QTest::newRow("materials but no mesh") << kTetrahedron.left(kTetrahedron.indexOf("Mesh"));
    }
    void unusableFilesLoadNothing()
    {
        QFETCH(QByteArray, file);
        const QString path = dir.filePath(QStringLiteral("broken.x"));
        QFile::remove(path);
        if (!file.isEmpty())
            writeBytes(path, file);
        cMesh mesh;
        cdirectx noDevice;
        QVERIFY(!mesh.ReadXFile(path));
        QVERIFY(!mesh.LoadMesh(path, noDevice));
        QVERIFY(mesh.vertices().empty());
        mesh.drawmesh();
    }

    void frameOfAnAngle_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<int>("frame");

        QTest::newRow("just short of half a step") << kStep * 0.499 << 0;
        QTest::newRow("just past half a step") << kStep * 0.501 << 1;
        QTest::newRow("half a step short of a turn wraps to the first")
            << 2 * std::numbers::pi - kStep * 0.4 << 0;
        QTest::newRow("the last frame") << 2 * std::numbers::pi - kStep << 156;
        // Far into the day the angle is many turns: 13750 turns and 6.163 radians.
        QTest::newRow("shortly before midnight") << double(86399.96f) << 154;
    }
    void frameOfAnAngle()
    {
        QFETCH(double, angle);
        QTEST(logo::frameOf(angle), "frame");
        const double shown = logo::angleOf(logo::frameOf(angle));
        const double off = std::remainder(angle - shown, 2 * std::numbers::pi);
        QVERIFY2(std::abs(off) <= kStep / 2 + 1e-9, qPrintable(QString::number(off)));
    }

    // 40 ms ticks move one frame, or none where single precision lumps them; a radian a second.
    void oneRadianASecond_data()
    {
        QTest::addColumn<QTime>("from");

        QTest::newRow("just after midnight") << QTime(0, 0, 1);
        QTest::newRow("just before midnight") << QTime(23, 59, 49);
    }
    void oneRadianASecond()
    {
        QFETCH(QTime, from);
        int last = logo::frameOf(logo::timerAngle(from));
        int moved = 0;
        for (int tick = 1; tick <= 250; ++tick) {
            const int frame = logo::frameOf(logo::timerAngle(from.addMSecs(tick * 40)));
            const int step = (frame - last + logo::kFramesPerTurn) % logo::kFramesPerTurn;
            QVERIFY2(step <= 2,
                     qPrintable(QStringLiteral("tick %1: %2 frames").arg(tick).arg(step)));
            moved += step;
            last = frame;
        }
        // Ten seconds, ten radians: 249.9 frames, give or take the rounding at both ends.
        QVERIFY2(std::abs(moved - 10 / kStep) <= 1.5, qPrintable(QString::number(moved)));
    }

    void compactKeepsThePicture_data()
    {
        QTest::addColumn<int>("colours");
        QTest::addColumn<QImage::Format>("format");

        QTest::newRow("256 colours fit a byte") << 256 << QImage::Format_Indexed8;
        QTest::newRow("257 do not") << 257 << QImage::Format_RGB888;
    }
    void compactKeepsThePicture()
    {
        QFETCH(int, colours);
        QImage frame(40, 30, QImage::Format_RGBX8888);
        for (int i = 0; i < 40 * 30; ++i)
            frame.setPixel(i % 40, i / 40, qRgb(i % colours % 256, i % colours / 256, 90));
        const QImage compact = LogoFrames::compact(frame);
        QTEST(compact.format(), "format");
        QCOMPARE(compact.convertToFormat(QImage::Format_RGB32),
                 frame.convertToFormat(QImage::Format_RGB32));
    }

    void aTurnIsDrawnOnceAtTheLastSizeAskedFor()
    {
        LogoFrames frames(QStringLiteral(ORVA_FAKE_RENDERER));
        frames.start(QStringLiteral("logo.x"));
        // A window dragged larger: sizes come faster than turns are drawn, and the last counts.
        const QSize size(30, 16);
        QVERIFY(frames.next(0, size, 2).isNull()); // asked for, not drawn yet
        QTRY_VERIFY_WITH_TIMEOUT(frames.ready() > 0, kPatience);
        for (const QSize other : {QSize(26, 18), QSize(28, 17), size})
            QVERIFY(frames.next(0, other, 2).isNull());
        QTRY_VERIFY_WITH_TIMEOUT(rendererGone(frames), kPatience);
        QCOMPARE(frames.ready(), logo::kFramesPerTurn);
        // Two colours a frame: a byte a pixel.
        QVERIFY(frames.bytes() < logo::kFramesPerTurn * (size.width() * size.height() + 64));

        const QPixmap first = frames.next(logo::angleOf(5), size, 2);
        QCOMPARE(first.size(), size);
        QCOMPARE(first.devicePixelRatio(), 2.0);
        QCOMPARE(first.toImage().pixel(1, 0), qRgb(5, 250, 255));
        // The same frame again is not drawn again, until asked for.
        QVERIFY(frames.next(logo::angleOf(5) + kStep / 3, size, 2).isNull());
        frames.showAgain();
        QCOMPARE(frameIn(frames.next(logo::angleOf(5), size, 2)), 5);
        QCOMPARE(frameIn(frames.next(logo::angleOf(6), size, 2)), 6);
        QVERIFY(rendererGone(frames));

        // Once the renderer is gone, a new size starts another.
        QVERIFY(frames.next(0, QSize(12, 12), 1).isNull());
        QCOMPARE(frames.ready(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(frames.ready() == logo::kFramesPerTurn, kPatience);
        QCOMPARE(frames.next(0, QSize(12, 12), 1).size(), QSize(12, 12));
    }

    void withoutARendererThereIsNoLogo_data()
    {
        QTest::addColumn<QString>("renderer");
        QTest::addColumn<QString>("mesh");

        QTest::newRow("no mesh or no device") << QStringLiteral(ORVA_FAKE_RENDERER) << "fail";
        QTest::newRow("no renderer program")
            << QStringLiteral("/nonexistent/orva-logo") << "logo.x";
    }
    void withoutARendererThereIsNoLogo()
    {
        QFETCH(QString, renderer);
        QFETCH(QString, mesh);
        LogoFrames frames(renderer);
        frames.start(mesh);
        QTRY_VERIFY_WITH_TIMEOUT(!frames.usable() && rendererGone(frames), kPatience);
        // Nor is another renderer tried for another size.
        QVERIFY(frames.next(0, QSize(24, 20), 1).isNull());
        QVERIFY(rendererGone(frames) && frames.ready() == 0);
    }
};

QTEST_MAIN(TstLogo3d)
#include "tst_logo3d.moc"
