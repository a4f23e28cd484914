#pragma once

#include "logo3d/cMesh.h"
#include "logo3d/cdirectx.h"

#include <QImage>
#include <QSize>
#include <QString>

// Draws frames of the logo's turn off screen: the device and the mesh, set up once.
class LogoRenderer
{
public:
    // False when there is no device, or the file holds no mesh.
    bool load(const QString &meshPath);
    // The frame, at `size` pixels; null when the device cannot draw it.
    QImage draw(int frame, QSize size);

private:
    cdirectx dx_;
    cMesh mesh_; // after the device, so it goes first
};
