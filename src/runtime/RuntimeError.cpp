#include "runtime/RuntimeError.h"

#include "runtime/MsgBox.h"

#include <QScopedValueRollback>
#include <cstdlib>
#include <utility>

namespace rt
{
namespace
{

std::function<void(int)> &endReplacement()
{
    static std::function<void(int)> end;
    return end;
}

std::function<void(const RuntimeError &)> &recorder()
{
    static std::function<void(const RuntimeError &)> record;
    return record;
}

} // namespace

RuntimeError::RuntimeError(int number, QString description)
    : number_(number), description_(std::move(description)),
      what_(QStringLiteral("Run-time error '%1': %2").arg(number_).arg(description_).toUtf8())
{
}

const char *RuntimeError::what() const noexcept
{
    return what_.constData();
}

RuntimeError RuntimeError::typeMismatch()
{
    return {13, QStringLiteral("Type mismatch")};
}

RuntimeError RuntimeError::overflow()
{
    return {6, QStringLiteral("Overflow")};
}

RuntimeError RuntimeError::subscriptOutOfRange()
{
    return {9, QStringLiteral("Subscript out of range")};
}

QString runtimeErrorText(const RuntimeError &error)
{
    return QStringLiteral("Run-time error '%1':\n\n%2")
        .arg(error.number())
        .arg(error.description());
}

void reportFatal(const RuntimeError &error)
{
    if (recorder())
        recorder()(error);
    MsgBox(runtimeErrorText(error), vbCritical, appTitle());
    End(kRuntimeErrorExitCode);
}

void reportFatalOnce(const RuntimeError &error)
{
    static bool reporting = false;
    if (reporting)
        return;
    const QScopedValueRollback rollback(reporting, true);
    reportFatal(error);
}

void setFatalErrorRecorder(std::function<void(const RuntimeError &)> record)
{
    recorder() = std::move(record);
}

void End(int exitCode)
{
    // A copy, so a replacement that clears itself still runs to its end.
    if (const std::function<void(int)> end = endReplacement())
        end(exitCode);
    std::exit(exitCode);
}

void setEndForTest(std::function<void(int)> end)
{
    endReplacement() = std::move(end);
}

} // namespace rt
