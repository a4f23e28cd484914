#pragma once

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <vector>

class QProcess;

// The turning logo's frames, drawn once per picture size by the renderer program (orva-logo)
// and kept here, one byte a pixel where the colours allow. OpenGL and the mesh library live
// only as long as that program, not for the calendar's whole day.
class LogoFrames : public QObject
{
    Q_OBJECT

public:
    // `renderer` is the program that draws; by default the one beside this executable.
    explicit LogoFrames(QString renderer = {}, QObject *parent = nullptr);
    ~LogoFrames() override;

    // Starts the renderer on the mesh file, which sets up OpenGL and reads the mesh while the
    // caller goes on, and then waits for a size.
    void start(const QString &meshPath);

    // The frame to show for an angle in a picture of `pixels` device pixels: null while the
    // frame shown last still stands, or that frame is not drawn yet. Another size drops the
    // frames kept and asks for a turn at it.
    QPixmap next(double angle, QSize pixels, qreal ratio);
    // The next call returns its frame even when it is the one shown last.
    void showAgain() { shown_ = -1; }

    // False once the renderer had no device or no mesh: there is no logo to show.
    bool usable() const { return !failed_; }
    int ready() const;
    // What the kept frames take, in bytes.
    qsizetype bytes() const;

    // One byte a pixel when the frame has no more than 256 colours, else three; the same
    // picture either way.
    static QImage compact(const QImage &frame);

private:
    void ask(QSize size);
    void read();
    void letRendererGo();
    void ended();

    QString renderer_;
    QString meshPath_;
    QProcess *process_ = nullptr;
    QSize drawing_; // the turn the renderer is at, if any
    int read_ = 0;  // frames of it read
    bool failed_ = false;

    QSize size_; // of the frames kept
    std::vector<QImage> frames_;
    int shown_ = -1;
};
