#include "logo3d/cdirectx.h"

#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"

#include <QGuiApplication>
#include <QLabel>
#include <QOffscreenSurface>
#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QScreen>

using namespace d3d;

namespace
{

// Written for GLSL 1.10 and OpenGL ES 2, the oldest that any driver offers.
const char kVertexShader[] = R"(
attribute highp vec3 position;
attribute mediump vec3 normal;
attribute mediump vec2 texCoord;
uniform highp mat4 world;
uniform highp mat4 view;
uniform highp mat4 projection;
uniform mediump mat3 normalMatrix;
varying highp vec3 viewPosition;
varying mediump vec3 viewNormal;
varying mediump vec2 uv;
void main()
{
    highp vec4 p = view * world * vec4(position, 1.0);
    viewPosition = p.xyz;
    viewNormal = normalMatrix * normal;
    uv = texCoord;
    gl_Position = projection * p;
}
)";

// One white light from the viewer's upper left, and a soft ambient light, as the fixed
// pipeline would light the mesh; a texture modulates the lit colour.
const char kFragmentShader[] = R"(
#ifdef GL_ES
precision mediump float;
#endif
uniform vec4 diffuse;
uniform vec4 ambient;
uniform vec4 specular;
uniform vec4 emissive;
uniform float power;
uniform bool textured;
uniform sampler2D texture0;
varying highp vec3 viewPosition;
varying vec3 viewNormal;
varying vec2 uv;
void main()
{
    vec3 n = normalize(viewNormal);
    vec3 l = normalize(vec3(-0.4, 0.5, 0.75));
    vec3 colour = emissive.rgb + ambient.rgb * 0.35 + diffuse.rgb * 0.75 * max(dot(n, l), 0.0);
    if (textured)
        colour *= texture2D(texture0, uv).rgb;
    if (power > 0.0) {
        vec3 h = normalize(l + normalize(-viewPosition));
        colour += specular.rgb * pow(max(dot(n, h), 0.0), power);
    }
    gl_FragColor = vec4(colour, 1.0);
}
)";

constexpr int kPosition = 0;
constexpr int kNormal = 1;
constexpr int kTexCoord = 2;
constexpr int kVertexSize = 32;

enum Uniform {
    kWorld,
    kView,
    kProjection,
    kNormalMatrix,
    kDiffuse,
    kAmbient,
    kSpecular,
    kEmissive,
    kPower,
    kTextured,
    kUniformCount
};
const char *const kUniformNames[kUniformCount] = {
    "world",   "view",     "projection", "normalMatrix", "diffuse",
    "ambient", "specular", "emissive",   "power",        "textured"};

int formatOfDepth(int depth)
{
    return depth == 16 ? D3DFMT_R5G6B5 : D3DFMT_X8R8G8B8;
}

D3DDISPLAYMODE modeOf(const QScreen *screen)
{
    if (!screen)
        return {};
    const QSize size = screen->size() * screen->devicePixelRatio();
    return {size.width(), size.height(), qRound(screen->refreshRate()),
            formatOfDepth(screen->depth())};
}

class QtDirect3D : public Direct3D
{
public:
    int GetAdapterModeCount() const override { return int(QGuiApplication::screens().size()); }
    D3DDISPLAYMODE EnumAdapterModes(int mode) const override
    {
        return modeOf(QGuiApplication::screens().value(mode));
    }
    D3DDISPLAYMODE GetAdapterDisplayMode() const override
    {
        return modeOf(QGuiApplication::primaryScreen());
    }
    bool GetDeviceCaps(D3DCAPS &caps) const override
    {
        QOpenGLContext context;
        if (!context.create())
            return false;
        QOffscreenSurface surface;
        surface.setFormat(context.format());
        surface.create();
        if (!context.makeCurrent(&surface))
            return false;
        // A software rasteriser transforms on the processor; any other driver has hardware
        // for it.
        const auto *name = context.functions()->glGetString(GL_RENDERER);
        const QByteArray renderer = QByteArray(reinterpret_cast<const char *>(name)).toLower();
        const bool software = renderer.contains("llvmpipe") || renderer.contains("softpipe") ||
                              renderer.contains("software") || renderer.contains("swiftshader") ||
                              renderer.contains("gdi generic");
        caps.DevCaps = software ? 0 : D3DDEVCAPS_HWTRANSFORMANDLIGHT;
        context.doneCurrent();
        return true;
    }
};

} // namespace

std::unique_ptr<Direct3D> createDirect3D()
{
    return std::make_unique<QtDirect3D>();
}

cdirectx::cdirectx(std::unique_ptr<Direct3D> adapter)
    : d3d_(adapter ? std::move(adapter) : createDirect3D())
{
}

cdirectx::~cdirectx()
{
    releaseDevice();
}

bool cdirectx::intialise(QLabel *target, bool windowed, bool hardware)
{
    target_ = target;
    present_ = {};

    if (windowed) {
        const D3DDISPLAYMODE mode = d3d_->GetAdapterDisplayMode();
        present_.Windowed = true;
        present_.SwapEffect = D3DSWAPEFFECT_COPY_VSYNC;
        present_.BackBufferFormat = mode.Format;
        present_.EnableAutoDepthStencil = true;
        present_.AutoDepthStencilFormat = D3DFMT_D16;
        devType_ = hardware ? D3DDEVTYPE_HAL : D3DDEVTYPE_REF;
        behaviour_ = D3DCREATE_SOFTWARE_VERTEXPROCESSING;
        return createDevice();
    }

    dispWidth_ = 0;
    dispHeight_ = 0;
    dispFormat_ = D3DFMT_UNKNOWN;
    const struct {
        int width, height, bits;
    } tries[] = {{800, 600, 32}, {800, 600, 16}, {640, 480, 32}, {640, 480, 16}};
    for (const auto &mode : tries) {
        if (const int format = CheckDisplayMode(mode.width, mode.height, mode.bits)) {
            dispWidth_ = mode.width;
            dispHeight_ = mode.height;
            dispFormat_ = format;
            break;
        }
    }
    if (dispFormat_ == D3DFMT_UNKNOWN) {
        rt::MsgBox(QStringLiteral("Your hardware does not appear to support 640x480 display "
                                  "modes in either 16 bit or 32 bit modes. Exiting"),
                   rt::vbInformation, QStringLiteral("Error"));
        rt::End();
    }

    present_.BackBufferWidth = dispWidth_;
    present_.BackBufferHeight = dispHeight_;
    present_.BackBufferFormat = dispFormat_;
    present_.BackBufferCount = 1;
    present_.SwapEffect = D3DSWAPEFFECT_COPY_VSYNC;
    present_.EnableAutoDepthStencil = true;
    present_.AutoDepthStencilFormat = D3DFMT_D16;

    D3DCAPS caps;
    devType_ = d3d_->GetDeviceCaps(caps) ? D3DDEVTYPE_HAL : D3DDEVTYPE_REF;
    behaviour_ = (caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT)
                     ? D3DCREATE_HARDWARE_VERTEXPROCESSING
                     : D3DCREATE_SOFTWARE_VERTEXPROCESSING;
    if (target_)
        target_->window()->showFullScreen();
    return createDevice();
}

int cdirectx::CheckDisplayMode(int width, int height, int bits) const
{
    for (int i = 0; i < d3d_->GetAdapterModeCount(); ++i) {
        const D3DDISPLAYMODE mode = d3d_->EnumAdapterModes(i);
        if (mode.Width != width || mode.Height != height)
            continue;
        // Kept as it has always behaved: the 16-bit test passes every format, so the 32-bit
        // one is never reached and full screen always runs on the first mode of its size.
        if (bits == 16)
            return mode.Format;
    }
    return D3DFMT_UNKNOWN;
}

bool cdirectx::createDevice()
{
    releaseDevice();
    auto context = std::make_unique<QOpenGLContext>();
    if (!context->create())
        return false;
    auto surface = std::make_unique<QOffscreenSurface>();
    surface->setFormat(context->format());
    surface->create();
    if (!surface->isValid() || !context->makeCurrent(surface.get()))
        return false;
    context_ = std::move(context);
    surface_ = std::move(surface);
    gl_ = context_->functions();

    program_ = std::make_unique<QOpenGLShaderProgram>();
    program_->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
    program_->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader);
    program_->bindAttributeLocation("position", kPosition);
    program_->bindAttributeLocation("normal", kNormal);
    program_->bindAttributeLocation("texCoord", kTexCoord);
    if (!program_->link()) {
        releaseDevice();
        return false;
    }
    program_->bind();
    program_->setUniformValue("texture0", 0);
    uniforms_.clear();
    for (const char *name : kUniformNames)
        uniforms_.push_back(program_->uniformLocation(name));

    // Direct3D's defaults: back faces culled, a pixel at equal depth drawn again.
    gl_->glEnable(GL_CULL_FACE);
    gl_->glDepthFunc(GL_LEQUAL);
    return true;
}

void cdirectx::releaseDevice()
{
    if (makeCurrent())
        releaseBackBuffer();
    program_.reset();
    if (context_)
        context_->doneCurrent();
    context_.reset();
    surface_.reset();
    gl_ = nullptr;
    framebuffer_ = colourBuffer_ = depthBuffer_ = 0;
    size_ = {};
}

QSize cdirectx::targetSize() const
{
    if (present_.BackBufferWidth > 0)
        return {present_.BackBufferWidth, present_.BackBufferHeight};
    if (!target_)
        return {};
    return target_->contentsRect().size() * target_->devicePixelRatioF();
}

bool cdirectx::createBackBuffer()
{
    size_ = targetSize();
    if (size_.isEmpty())
        return false;
    pixelRatio_ = target_ && present_.BackBufferWidth == 0 ? target_->devicePixelRatioF() : 1;

    gl_->glGenFramebuffers(1, &framebuffer_);
    gl_->glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    gl_->glGenRenderbuffers(1, &colourBuffer_);
    gl_->glBindRenderbuffer(GL_RENDERBUFFER, colourBuffer_);
    gl_->glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, size_.width(), size_.height());
    gl_->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                   colourBuffer_);
    if (present_.EnableAutoDepthStencil) {
        gl_->glGenRenderbuffers(1, &depthBuffer_);
        gl_->glBindRenderbuffer(GL_RENDERBUFFER, depthBuffer_);
        gl_->glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, size_.width(),
                                   size_.height());
        gl_->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                       depthBuffer_);
    }
    if (gl_->glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        releaseBackBuffer();
        return false;
    }
    return true;
}

void cdirectx::releaseBackBuffer()
{
    if (framebuffer_)
        gl_->glDeleteFramebuffers(1, &framebuffer_);
    if (colourBuffer_)
        gl_->glDeleteRenderbuffers(1, &colourBuffer_);
    if (depthBuffer_)
        gl_->glDeleteRenderbuffers(1, &depthBuffer_);
    framebuffer_ = colourBuffer_ = depthBuffer_ = 0;
    size_ = {};
}

bool cdirectx::RESET()
{
    if (!makeCurrent())
        return false;
    releaseBackBuffer();
    return createBackBuffer();
}

void cdirectx::setBackBufferSize(QSize size)
{
    present_.BackBufferWidth = size.width();
    present_.BackBufferHeight = size.height();
}

bool cdirectx::makeCurrent()
{
    return context_ && context_->makeCurrent(surface_.get());
}

void cdirectx::SetRenderState(int state, int value)
{
    if (state == D3DRS_ZENABLE)
        value ? gl_->glEnable(GL_DEPTH_TEST) : gl_->glDisable(GL_DEPTH_TEST);
}

void cdirectx::SetTransform(int state, const QMatrix4x4 &matrix)
{
    switch (state) {
    case D3DTS_WORLD:
        world_ = matrix;
        break;
    case D3DTS_VIEW:
        view_ = matrix;
        break;
    case D3DTS_PROJECTION:
        projection_ = matrix;
        break;
    }
}

void cdirectx::SetMaterial(const D3DMATERIAL &material)
{
    material_ = material;
}

void cdirectx::SetTexture(QOpenGLTexture *texture)
{
    texture_ = texture;
}

bool cdirectx::BeginScene()
{
    if (!makeCurrent())
        return false;
    // A windowed back buffer follows the target's size, as the window's would.
    if ((!framebuffer_ || size_ != targetSize()) && !RESET())
        return false;
    gl_->glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    gl_->glViewport(0, 0, size_.width(), size_.height());
    program_->bind();
    return true;
}

void cdirectx::Clear(int flags, QRgb colour, float z)
{
    GLbitfield mask = 0;
    if (flags & D3DCLEAR_TARGET) {
        gl_->glClearColor(qRed(colour) / 255.0f, qGreen(colour) / 255.0f, qBlue(colour) / 255.0f,
                          1.0f);
        mask |= GL_COLOR_BUFFER_BIT;
    }
    if (flags & D3DCLEAR_ZBUFFER) {
        gl_->glClearDepthf(z);
        mask |= GL_DEPTH_BUFFER_BIT;
    }
    gl_->glClear(mask);
}

void cdirectx::DrawIndexedPrimitive(QOpenGLBuffer &vertices, QOpenGLBuffer &indices, int startIndex,
                                    int primitiveCount)
{
    program_->setUniformValue(uniforms_[kWorld], world_);
    program_->setUniformValue(uniforms_[kView], view_);
    program_->setUniformValue(uniforms_[kProjection], projection_);
    program_->setUniformValue(uniforms_[kNormalMatrix], (view_ * world_).normalMatrix());
    program_->setUniformValue(uniforms_[kDiffuse], material_.Diffuse);
    program_->setUniformValue(uniforms_[kAmbient], material_.Ambient);
    program_->setUniformValue(uniforms_[kSpecular], material_.Specular);
    program_->setUniformValue(uniforms_[kEmissive], material_.Emissive);
    program_->setUniformValue(uniforms_[kPower], material_.Power);
    program_->setUniformValue(uniforms_[kTextured], texture_ != nullptr);
    if (texture_)
        texture_->bind(0);

    vertices.bind();
    indices.bind();
    program_->enableAttributeArray(kPosition);
    program_->enableAttributeArray(kNormal);
    program_->enableAttributeArray(kTexCoord);
    program_->setAttributeBuffer(kPosition, GL_FLOAT, 0, 3, kVertexSize);
    program_->setAttributeBuffer(kNormal, GL_FLOAT, 12, 3, kVertexSize);
    program_->setAttributeBuffer(kTexCoord, GL_FLOAT, 24, 2, kVertexSize);
    gl_->glDrawElements(GL_TRIANGLES, primitiveCount * 3, GL_UNSIGNED_INT,
                        reinterpret_cast<const void *>(qintptr(startIndex) * 4));
}

void cdirectx::EndScene()
{
    QImage image(size_, QImage::Format_RGBX8888);
    gl_->glReadPixels(0, 0, size_.width(), size_.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    frame_ = std::move(image).mirrored(); // OpenGL's rows run bottom up
    frame_.setDevicePixelRatio(pixelRatio_);
}

void cdirectx::Present()
{
    if (target_)
        target_->setPixmap(QPixmap::fromImage(frame_));
}
