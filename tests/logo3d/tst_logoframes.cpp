#include "logo3d/LogoFrames.h"
#include "logo3d/LogoTurn.h"

#include <QProcess>
#include <QTest>
#include <cmath>
#include <numbers>

namespace
{

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

class TstLogoFrames : public QObject
{
    Q_OBJECT

private slots:
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

    // Timer2 ticks every 40 ms: each tick shows the next frame or, where the system timer's
    // single precision lumps ticks together, the same one; a second turns one radian.
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
        for (int y = 0; y < frame.height(); ++y) {
            for (int x = 0; x < frame.width(); ++x) {
                const int c = (y * frame.width() + x) % colours;
                frame.setPixel(x, y, qRgb(c % 256, c / 256, 90));
            }
        }
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
        // It is the size of the turn under way, whose first frames were dropped meanwhile.
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
        QVERIFY(frames.next(0, QSize(30, 20), 1).isNull());
        QVERIFY(rendererGone(frames));
        QCOMPARE(frames.ready(), 0);
    }
};

QTEST_MAIN(TstLogoFrames)
#include "tst_logoframes.moc"
