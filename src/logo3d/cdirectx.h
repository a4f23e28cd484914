#pragma once

#include <QImage>
#include <QMatrix4x4>
#include <QVector4D>
#include <cstdint>
#include <memory>
#include <vector>

class QLabel;
class QOffscreenSurface;
class QOpenGLBuffer;
class QOpenGLContext;
class QOpenGLFunctions;
class QOpenGLShaderProgram;
class QOpenGLTexture;

// The device speaks Direct3D's numbers, so the logo code reads like the Direct3D program it
// draws the same picture as; underneath it is OpenGL through Qt.
namespace d3d
{
inline constexpr int D3DFMT_UNKNOWN = 0;
inline constexpr int D3DFMT_X8R8G8B8 = 22;
inline constexpr int D3DFMT_R5G6B5 = 23;
inline constexpr int D3DFMT_D16 = 80;

inline constexpr int D3DDEVTYPE_HAL = 1;
inline constexpr int D3DDEVTYPE_REF = 2;

inline constexpr int D3DCREATE_SOFTWARE_VERTEXPROCESSING = 32;
inline constexpr int D3DCREATE_HARDWARE_VERTEXPROCESSING = 64;
inline constexpr std::uint32_t D3DDEVCAPS_HWTRANSFORMANDLIGHT = 0x10000;

inline constexpr int D3DSWAPEFFECT_COPY_VSYNC = 4;

inline constexpr int D3DRS_ZENABLE = 7;
inline constexpr int D3DTS_VIEW = 2;
inline constexpr int D3DTS_PROJECTION = 3;
inline constexpr int D3DTS_WORLD = 256;
inline constexpr int D3DCLEAR_TARGET = 1;
inline constexpr int D3DCLEAR_ZBUFFER = 2;
} // namespace d3d

struct D3DDISPLAYMODE {
    int Width = 0;
    int Height = 0;
    int RefreshRate = 0;
    int Format = d3d::D3DFMT_UNKNOWN;
};

struct D3DCAPS {
    std::uint32_t DevCaps = 0;
};

struct D3DPRESENT_PARAMETERS {
    int BackBufferWidth = 0; // 0: the target's own size, followed when it changes
    int BackBufferHeight = 0;
    int BackBufferFormat = d3d::D3DFMT_UNKNOWN;
    int BackBufferCount = 0;
    int SwapEffect = 0;
    bool Windowed = false;
    bool EnableAutoDepthStencil = false;
    int AutoDepthStencilFormat = d3d::D3DFMT_UNKNOWN;
};

struct D3DMATERIAL {
    QVector4D Diffuse;
    QVector4D Ambient;
    QVector4D Specular;
    QVector4D Emissive;
    float Power = 0;
};

// What the device asks of the display adapter: its modes and whether a hardware device is
// there. Tests feed their own.
class Direct3D
{
public:
    virtual ~Direct3D() = default;
    virtual int GetAdapterModeCount() const = 0;
    virtual D3DDISPLAYMODE EnumAdapterModes(int mode) const = 0;
    virtual D3DDISPLAYMODE GetAdapterDisplayMode() const = 0;
    // The capabilities of the hardware (HAL) device; false when there is none.
    virtual bool GetDeviceCaps(D3DCAPS &caps) const = 0;
};

// The machine's own adapter: the screens Qt knows (it cannot switch modes, so each screen
// offers just its current one) and a probe of OpenGL for the capabilities.
std::unique_ptr<Direct3D> createDirect3D();

// The 3D device. It renders into a framebuffer of its own, off screen, and hands each
// finished frame to the target label as a pixmap: only the label repaints, and no window
// ever goes through OpenGL, so a platform without OpenGL merely has no device.
class cdirectx
{
public:
    // Without an adapter it uses the machine's own.
    explicit cdirectx(std::unique_ptr<Direct3D> adapter = {});
    ~cdirectx();
    cdirectx(const cdirectx &) = delete;
    cdirectx &operator=(const cdirectx &) = delete;

    // True when a device exists afterwards. The windowed path draws at the target's size; the
    // full-screen path looks for an 800 x 600 or 640 x 480 mode and ends the program when
    // there is none. `hardware` chooses the device type of the windowed path.
    bool intialise(QLabel *target, bool windowed, bool hardware);
    // Rebuilds the back buffer from the kept present parameters.
    bool RESET();
    // A back buffer of this size from the next scene on, in place of the target's.
    void setBackBufferSize(QSize size);

    // The format of the first mode of that size that passes the format test, or 0.
    int CheckDisplayMode(int width, int height, int bits) const;

    void SetRenderState(int state, int value);
    void SetTransform(int state, const QMatrix4x4 &matrix);
    void SetMaterial(const D3DMATERIAL &material);
    void SetTexture(QOpenGLTexture *texture); // stage 0, the only one
    // Points at 32-byte vertices (position, normal, texture coordinates) and draws
    // `primitiveCount` triangles from `startIndex` of the 32-bit indices.
    void DrawIndexedPrimitive(QOpenGLBuffer &vertices, QOpenGLBuffer &indices, int startIndex,
                              int primitiveCount);

    // The frame: BeginScene, Clear, drawing, EndScene (the image is read back), Present
    // (the target shows it). BeginScene fails when there is nothing to draw into.
    bool BeginScene();
    void Clear(int flags, QRgb colour, float z); // no stencil: the depth buffer is D16
    void EndScene();
    void Present();

    // For the mesh's buffers and textures, which live in the device's context.
    bool makeCurrent();
    // The last scene, as EndScene read it back.
    const QImage &frame() const { return frame_; }

    const D3DPRESENT_PARAMETERS &presentParameters() const { return present_; }
    int displayWidth() const { return dispWidth_; }
    int displayHeight() const { return dispHeight_; }
    int displayFormat() const { return dispFormat_; }
    int deviceType() const { return devType_; }
    int behaviourFlags() const { return behaviour_; }

private:
    bool createDevice();
    void releaseDevice();
    bool createBackBuffer();
    void releaseBackBuffer();
    QSize targetSize() const;

    std::unique_ptr<Direct3D> d3d_;
    QLabel *target_ = nullptr;
    D3DPRESENT_PARAMETERS present_;
    int dispWidth_ = 0;
    int dispHeight_ = 0;
    int dispFormat_ = d3d::D3DFMT_UNKNOWN;
    int devType_ = 0;
    int behaviour_ = 0;

    std::unique_ptr<QOffscreenSurface> surface_;
    std::unique_ptr<QOpenGLContext> context_;
    QOpenGLFunctions *gl_ = nullptr;
    std::unique_ptr<QOpenGLShaderProgram> program_;
    std::vector<int> uniforms_; // the shader's uniforms, looked up once
    unsigned framebuffer_ = 0;
    unsigned colourBuffer_ = 0;
    unsigned depthBuffer_ = 0;
    QSize size_;
    qreal pixelRatio_ = 1;
    QImage frame_;

    QMatrix4x4 world_;
    QMatrix4x4 view_;
    QMatrix4x4 projection_;
    D3DMATERIAL material_;
    QOpenGLTexture *texture_ = nullptr;
};
