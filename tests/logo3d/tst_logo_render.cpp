#include "Fixtures.h"
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

// This needs OpenGL: it runs on Xvfb, where Mesa renders in software.
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
};

QTEST_MAIN(TstLogoRender)
#include "tst_logo_render.moc"
