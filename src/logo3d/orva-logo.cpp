#include "logo3d/LogoRenderer.h"
#include "logo3d/LogoTurn.h"

#include <QFile>
#include <QGuiApplication>

// Draws the turning logo's frames for the calendar, which keeps them and so never has to load
// OpenGL itself. Standard input: the mesh file's path on the first line, then a line
// "width height" for every turn wanted. Standard output: each turn's frames in order, each
// its rows from the top in RGBX8888. It ends at the end of its input, with status 1 when there
// is no device or no mesh.
int main(int argc, char **argv)
{
    // A helper that is gone in a second has no place in the desktop's saved session.
    qunsetenv("SESSION_MANAGER");
    QGuiApplication app(argc, argv);
    QFile in;
    QFile out;
    if (!in.open(stdin, QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly))
        return 1;
    QByteArray path = in.readLine();
    if (path.endsWith('\n'))
        path.chop(1);
    LogoRenderer renderer;
    if (!renderer.load(QString::fromUtf8(path)))
        return 1;
    for (QByteArray line = in.readLine(); !line.isEmpty(); line = in.readLine()) {
        const QList<QByteArray> words = line.simplified().split(' ');
        const QSize size(words.value(0).toInt(), words.value(1).toInt());
        for (int frame = 0; frame < logo::kFramesPerTurn; ++frame) {
            const QImage image = renderer.draw(frame, size);
            if (image.size() != size || image.format() != QImage::Format_RGBX8888)
                return 1;
            out.write(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
            out.flush(); // the calendar shows each frame as it comes
        }
    }
    return 0;
}
