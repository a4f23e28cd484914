#pragma once

class Form1;

namespace recovery
{

// At start, after the password gate and before reminders begin: when the last run ended on
// an event that would end this one too, the recovery window offers the ways on. The record
// is read once and then discarded; a run that ends the same way writes a new one. Reloads
// the main window when the store changed.
void offerAtStart(Form1 *form);

} // namespace recovery
