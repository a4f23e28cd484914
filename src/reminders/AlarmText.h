#pragma once

#include "store/DataStore.h"

#include <QString>

// What a reminder says about its event, alike in the alarm window and the missed list.
namespace reminders
{

// The when-line: the stored texts with two spaces between parts.
QString whenLine(const store::Event &event);
QString whenLine(const store::RecurringEvent &event);

} // namespace reminders
