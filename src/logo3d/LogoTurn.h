#pragma once

#include <QMatrix4x4>
#include <QSize>
#include <QTime>

// Where the turning logo stands at a moment, apart from any drawing. Its picture depends only
// on the angle, so a turn is a fixed set of frames that can be drawn once and shown again.
namespace logo
{

// Timer2 ticks 25 times a second and the logo turns 1 radian a second: 0.04 radians a tick,
// 157 ticks a turn. Frames closer together than that would never be shown.
inline constexpr int kFramesPerTurn = 157;

// The system timer, seconds since midnight in single precision, read as radians.
float timerAngle(QTime time);

// The frame nearest to an angle, and the angle a frame is drawn at.
int frameOf(double angle);
double angleOf(int frame);

// A quarter turn about x stands the logo up, then the angle turns it about y.
QMatrix4x4 world(double angle);
QMatrix4x4 view();
QMatrix4x4 projection(QSize size);

} // namespace logo
