#include "logo3d/LogoTurn.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace logo
{
namespace
{

constexpr double kTurn = 2 * std::numbers::pi;

// Turns worked out in double: the timer's angle runs to tens of thousands of radians.
QMatrix4x4 rotationX(double radians)
{
    const auto c = float(std::cos(radians));
    const auto s = float(std::sin(radians));
    return {1, 0, 0, 0, 0, c, -s, 0, 0, s, c, 0, 0, 0, 0, 1};
}

QMatrix4x4 rotationY(double radians)
{
    const auto c = float(std::cos(radians));
    const auto s = float(std::sin(radians));
    return {c, 0, s, 0, 0, 1, 0, 0, -s, 0, c, 0, 0, 0, 0, 1};
}

} // namespace

float timerAngle(QTime time)
{
    return float(time.msecsSinceStartOfDay()) / 1000.0f;
}

int frameOf(double angle)
{
    const double within = std::fmod(angle, kTurn);
    const auto frame =
        int(std::lround((within < 0 ? within + kTurn : within) / (kTurn / kFramesPerTurn)));
    return frame % kFramesPerTurn; // the last half step rounds up to a whole turn
}

double angleOf(int frame)
{
    return frame * (kTurn / kFramesPerTurn);
}

QMatrix4x4 world(double angle)
{
    return rotationY(angle) * rotationX(std::numbers::pi / 2);
}

QMatrix4x4 view()
{
    QMatrix4x4 matrix;
    matrix.lookAt(QVector3D(0, 0, 350), QVector3D(0, 0, -1), QVector3D(0, 1, 0));
    return matrix;
}

QMatrix4x4 projection(QSize size)
{
    QMatrix4x4 matrix;
    matrix.perspective(45, float(size.width()) / float(std::max(1, size.height())), 50, 500);
    return matrix;
}

} // namespace logo
