#pragma once

#include "runtime/Colors.h"
#include "store/DataStore.h"

#include <QString>

// What a reminder says about its event, alike in the alarm window and the missed list.
namespace reminders
{

// The when-line: the stored texts with two spaces between parts.
QString whenLine(const store::Event &event);
QString whenLine(const store::RecurringEvent &event);

// The colour of the last category of that name, where its colour is a number; 0 for none.
rt::WinColor categoryColour(const store::Model &model, const QString &name);

} // namespace reminders
