#include "Fixtures.h"
#include "logo3d/cMesh.h"
#include "logo3d/cdirectx.h"
#include "runtime/MsgBox.h"

#include <QRegularExpression>
#include <QVector3D>

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
        QTest::newRow("own size, to the origin")
            << kTetrahedron << QVector3D(2, 4, 8) << QVector3D(0, 0, 0) << QVector3D(-1, -2, 11)
            << QVector3D(1, 6, -3) << QVector3D(0, 4, 8);
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
};

QTEST_MAIN(TstLogo3d)
#include "tst_logo3d.moc"
