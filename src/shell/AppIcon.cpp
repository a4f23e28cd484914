#include "shell/AppIcon.h"

#include <QPainter>
#include <QPixmap>

namespace
{

QPixmap sheet(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = size / 32.0;
    const QRectF page(2 * s, 3 * s, 28 * s, 27 * s);
    p.setPen(QPen(QColor(0, 0, 160), 1.5 * s));
    p.setBrush(Qt::white);
    p.drawRoundedRect(page, 3 * s, 3 * s);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 255));
    p.drawRoundedRect(QRectF(page.left(), page.top(), page.width(), 8 * s), 3 * s, 3 * s);
    p.drawRect(QRectF(page.left(), page.top() + 4 * s, page.width(), 4 * s));
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 5; ++col) {
            const bool today = row == 2 && col == 3;
            p.setBrush(today ? QColor(255, 0, 0) : QColor(157, 157, 157));
            p.drawRect(QRectF((5 + col * 5) * s, (13 + row * 4) * s, 3 * s, 2.5 * s));
        }
    }
    return pixmap;
}

} // namespace

QIcon appIcon()
{
    QIcon icon;
    for (int size : {16, 22, 32, 48, 64, 128})
        icon.addPixmap(sheet(size));
    return icon;
}
