#pragma once

#include "runtime/DateTime.h"

#include <optional>

// The last minute the running calendar saw, kept in a small file of its own in the program
// folder, so that a start can tell which reminders came due while nothing ran.
namespace reminders
{

inline constexpr char kLastSeenFile[] = "LastSeen.txt";

// Nothing for a missing or damaged file.
std::optional<rt::Date> readLastSeen();
// Replaces the file whole, or leaves it as it was; a failure is not reported.
void writeLastSeen(rt::Date minute);

} // namespace reminders
