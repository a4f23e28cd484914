#include "security/Password.h"

#include "runtime/Ansi.h"

namespace security
{

bool samePassword(const QString &typed, const QString &stored)
{
    return rt::toAnsi(typed) == rt::toAnsi(stored);
}

} // namespace security
