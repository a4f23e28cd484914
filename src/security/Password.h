#pragma once

#include <QString>

namespace security
{

// Passwords are kept in the store's code page, so they are compared in it:
// a character the code page cannot hold is '?' on both sides. Case counts.
bool samePassword(const QString &typed, const QString &stored);

} // namespace security
