#include "Fixtures.h"
#include "logo3d/cMesh.h"
#include "logo3d/cdirectx.h"
#include "mainwindow/Form1.h"

#include <QLabel>
#include <QOpenGLContext>

namespace
{

// Where the frame is not the white it was cleared to.
QRect inkedArea(const QImage &image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if ((image.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

} // namespace

// These need OpenGL: they run on Xvfb, where Mesa renders in software.
class TstLogoRender : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!QOpenGLContext().create())
            QFAIL("no OpenGL here; run this test on an X server with GLX");
    }

    void windowTurnsTheLogoOnlyWhileShown()
    {
        TestFolder folder;
        for (const QString name : {"logo.x", "mdata.ini"})
            QVERIFY(QFile::copy(ORVA_DATA_DIR "/" + name, folder.dir.filePath(name)));
        Form1 form;
        form.Form_Load();
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const auto *picture = form.findChild<QLabel *>(QStringLiteral("Picture1"));

        QTRY_VERIFY_WITH_TIMEOUT(!picture->pixmap().isNull(), 60000);
        const QImage first = picture->pixmap().toImage();
        QCOMPARE(first.deviceIndependentSize().toSize(), picture->contentsRect().size());
        // Placed in the middle, at a good part of the picture's height.
        const QRect logo = inkedArea(first);
        QVERIFY2(first.rect().contains(logo.adjusted(-1, -1, 1, 1)), "the logo touches an edge");
        QVERIFY(logo.height() > first.height() / 2);
        QVERIFY(qAbs(logo.center().x() - first.width() / 2) < first.width() / 8);
        QVERIFY(qAbs(logo.center().y() - first.height() / 2) < first.height() / 8);
        // Turned on by a later frame, however late a busy machine draws it.
        QTRY_VERIFY_WITH_TIMEOUT(picture->pixmap().toImage() != first, 60000);

        form.hide();
        QTest::qWait(50);
        const qint64 hidden = picture->pixmap().cacheKey();
        QTest::qWait(200);
        QCOMPARE(picture->pixmap().cacheKey(), hidden);

        form.show();
        form.resetLogo();
        QTRY_VERIFY_WITH_TIMEOUT(picture->pixmap().cacheKey() != hidden, 60000);
    }

    void texturesAreDrawn()
    {
        QTemporaryDir dir;
        QImage texture(8, 8, QImage::Format_RGB32);
        texture.fill(QColor(0, 200, 0));
        QVERIFY(texture.save(dir.filePath("green.png")));
        const QString quadFile = dir.filePath("quad.x");
        writeBytes(quadFile, "xof 0303txt 0032\n"
                             "Material G { 1.0;1.0;1.0;1.0;; 0.0; 0.0;0.0;0.0;; 0.0;0.0;0.0;;\n"
                             " TextureFilename { \"green.png\"; } }\n"
                             "Mesh Q { 4; -1;-1;0;, 1;-1;0;, -1;1;0;, 1;1;0;;\n"
                             " 2; 3;0,2,1;, 3;1,2,3;;\n"
                             " MeshNormals { 1; 0;0;-1;; 2; 3;0,0,0;, 3;0,0,0;; }\n"
                             " MeshTextureCoords { 4; 0;1;, 1;1;, 0;0;, 1;0;; }\n"
                             " MeshMaterialList { 1; 2; 0,0;; {G} } }\n");
        QLabel picture;
        picture.resize(64, 48);
        cdirectx dx;
        QVERIFY(dx.intialise(&picture, true, true));
        cMesh quad;
        QVERIFY(quad.LoadMesh(quadFile, dx)); // no "mdata.ini": its own size

        QMatrix4x4 view;
        view.lookAt({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        QMatrix4x4 projection;
        projection.ortho(-2, 2, -2, 2, 1, 10);
        dx.SetTransform(d3d::D3DTS_VIEW, view);
        dx.SetTransform(d3d::D3DTS_PROJECTION, projection);
        QVERIFY(dx.BeginScene());
        dx.Clear(d3d::D3DCLEAR_TARGET | d3d::D3DCLEAR_ZBUFFER, 0xFFFFFF, 1.0f);
        quad.drawmesh();
        dx.EndScene();
        dx.Present();

        const QImage frame = picture.pixmap().toImage();
        QCOMPARE(frame.size(), picture.contentsRect().size());
        const QColor middle = frame.pixelColor(frame.width() / 2, frame.height() / 2);
        QVERIFY2(middle.green() > 100 && middle.red() < 60 && middle.blue() < 60,
                 qPrintable(middle.name()));
        QCOMPARE(frame.pixel(1, 1) & 0xFFFFFF, 0xFFFFFFu);
    }
};

QTEST_MAIN(TstLogoRender)
#include "tst_logo_render.moc"
