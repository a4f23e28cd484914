#pragma once

#include "runtime/DateTime.h"

#include <functional>

namespace rt
{

// "Now" and "today" for the whole program. Tests install their own source of time.
class Clock
{
public:
    static Date Now();
    static Date Today(); // Now() without its time of day

    using Source = std::function<Date()>;
    static void setSource(Source source); // an empty source restores the system clock
};

} // namespace rt
