#include "logo3d/LogoFrames.h"

#include "logo3d/LogoTurn.h"

#include <QCoreApplication>
#include <QHash>
#include <QProcess>
#include <algorithm>
#include <sys/resource.h>
#include <utility>

namespace
{

qsizetype frameBytes(QSize size)
{
    return qsizetype(size.width()) * size.height() * 4;
}

} // namespace

LogoFrames::LogoFrames(QString renderer, QObject *parent)
    : QObject(parent),
      renderer_(renderer.isEmpty()
                    ? QCoreApplication::applicationDirPath() + QLatin1String("/orva-logo")
                    : std::move(renderer))
{
}

LogoFrames::~LogoFrames()
{
    // Its end must not come back here while this is half gone.
    if (process_)
        disconnect(process_, nullptr, this, nullptr);
}

void LogoFrames::start(const QString &meshPath)
{
    meshPath_ = meshPath;
    if (process_ || failed_)
        return;
    process_ = new QProcess(this);
    process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Its set-up is slow and nobody waits for it: the calendar's own start goes first.
    process_->setChildProcessModifier([] { setpriority(PRIO_PROCESS, 0, 10); });
    connect(process_, &QProcess::readyReadStandardOutput, this, &LogoFrames::read);
    connect(process_, &QProcess::finished, this, &LogoFrames::ended);
    connect(process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            ended();
    });
    process_->start(renderer_, {});
    process_->write(meshPath.toUtf8() + '\n');
}

void LogoFrames::ask(QSize size)
{
    if (failed_)
        return;
    if (!process_)
        start(meshPath_);
    drawing_ = size;
    process_->write(QByteArray::number(size.width()) + ' ' + QByteArray::number(size.height()) +
                    '\n');
}

void LogoFrames::read()
{
    while (!drawing_.isEmpty()) {
        if (process_->bytesAvailable() < frameBytes(drawing_))
            return;
        const QByteArray data = process_->read(frameBytes(drawing_));
        if (drawing_ == size_) {
            frames_[read_] =
                compact(QImage(reinterpret_cast<const uchar *>(data.constData()), size_.width(),
                               size_.height(), QImage::Format_RGBX8888));
        }
        if (++read_ < logo::kFramesPerTurn)
            continue;
        read_ = 0;
        // Sizes passed over while a turn was drawn (a window being dragged larger) are never
        // drawn: only the latest, whole.
        drawing_ = {};
        if (ready() == logo::kFramesPerTurn)
            letRendererGo();
        else
            ask(size_);
    }
}

void LogoFrames::letRendererGo()
{
    // Every turn asked for is here: the renderer ends, and OpenGL with it.
    QProcess *done = std::exchange(process_, nullptr);
    disconnect(done, nullptr, this, nullptr);
    connect(done, &QProcess::finished, done, &QObject::deleteLater);
    done->closeWriteChannel();
}

void LogoFrames::ended()
{
    // No device, no mesh, or the renderer died: asking again would only fail again.
    failed_ = true;
    drawing_ = {};
    read_ = 0;
    disconnect(process_, nullptr, this, nullptr);
    process_->deleteLater();
    process_ = nullptr;
}

QPixmap LogoFrames::next(double angle, QSize pixels, qreal ratio)
{
    if (pixels.isEmpty())
        return {};
    if (pixels != size_) {
        size_ = pixels;
        frames_.assign(logo::kFramesPerTurn, QImage());
        shown_ = -1;
        if (drawing_.isEmpty())
            ask(pixels);
    }
    const int frame = logo::frameOf(angle);
    if (frame == shown_ || frames_[frame].isNull())
        return {};
    shown_ = frame;
    QPixmap pixmap = QPixmap::fromImage(frames_[frame]);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

int LogoFrames::ready() const
{
    return int(std::count_if(frames_.begin(), frames_.end(),
                             [](const QImage &frame) { return !frame.isNull(); }));
}

qsizetype LogoFrames::bytes() const
{
    qsizetype total = 0;
    for (const QImage &frame : frames_)
        total += frame.sizeInBytes() + frame.colorCount() * qsizetype(sizeof(QRgb));
    return total;
}

QImage LogoFrames::compact(const QImage &frame)
{
    const QImage rgb = frame.convertToFormat(QImage::Format_RGB32);
    QImage indexed(rgb.size(), QImage::Format_Indexed8);
    QHash<QRgb, uchar> index;
    QList<QRgb> table;
    for (int y = 0; y < rgb.height(); ++y) {
        const auto *in = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        uchar *out = indexed.scanLine(y);
        for (int x = 0; x < rgb.width(); ++x) {
            auto found = index.constFind(in[x]);
            if (found == index.cend()) {
                if (table.size() == 256)
                    return rgb.convertToFormat(QImage::Format_RGB888);
                found = index.insert(in[x], uchar(table.size()));
                table.append(in[x]);
            }
            out[x] = *found;
        }
    }
    indexed.setColorTable(table);
    return indexed;
}
