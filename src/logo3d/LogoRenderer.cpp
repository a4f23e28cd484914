#include "logo3d/LogoRenderer.h"

#include "logo3d/LogoTurn.h"

bool LogoRenderer::load(const QString &meshPath)
{
    return dx_.intialise(nullptr, true, true) && mesh_.LoadMesh(meshPath, dx_);
}

QImage LogoRenderer::draw(int frame, QSize size)
{
    dx_.setBackBufferSize(size);
    dx_.SetTransform(d3d::D3DTS_WORLD, logo::world(logo::angleOf(frame)));
    dx_.SetTransform(d3d::D3DTS_VIEW, logo::view());
    dx_.SetTransform(d3d::D3DTS_PROJECTION, logo::projection(size));
    if (!dx_.BeginScene())
        return {};
    dx_.Clear(d3d::D3DCLEAR_TARGET | d3d::D3DCLEAR_ZBUFFER, 0xFFFFFF, 1.0f);
    mesh_.drawmesh();
    dx_.EndScene();
    return dx_.frame();
}
