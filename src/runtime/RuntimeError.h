#pragma once

#include <QString>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace rt
{

// An error raised the way the original run-time raised them. Nothing in the program traps
// it; guarded() reports it where Qt called in, and ends the program.
class RuntimeError : public std::exception
{
public:
    RuntimeError(int number, QString description);

    int number() const { return number_; }
    const QString &description() const { return description_; }
    const char *what() const noexcept override;

    static RuntimeError typeMismatch();        // 13
    static RuntimeError overflow();            // 6
    static RuntimeError subscriptOutOfRange(); // 9

private:
    int number_;
    QString description_;
    QByteArray what_;
};

// A conversion made ahead of its use: its value, or the error it raised, which is raised
// again where the value is asked for.
template <typename T> class Converted
{
public:
    template <typename Convert> static Converted of(Convert &&convert)
    {
        Converted converted;
        try {
            converted.value_ = convert();
        } catch (const RuntimeError &error) {
            converted.error_ = error;
        }
        return converted;
    }
    const T &value() const
    {
        if (error_)
            throw *error_;
        return value_;
    }

private:
    T value_{};
    std::optional<RuntimeError> error_;
};

// The text of the box guarded() shows: "Run-time error '13':", a blank line,
// then the description.
QString runtimeErrorText(const RuntimeError &error);

// Shows the run-time error box, titled with the program's title, then ends the program with
// kRuntimeErrorExitCode.
constexpr int kRuntimeErrorExitCode = 1;
[[noreturn]] void reportFatal(const RuntimeError &error);

// reportFatal, unless an earlier error's box is still up; then it returns.
void reportFatalOnce(const RuntimeError &error);

// Runs a handler where Qt calls the program's code. A run-time error it raises is reported
// there and ends the program, since no exception may cross Qt's event loop. The error box
// keeps the loop running: a handler that fails again meanwhile shows no second box.
template <typename Handler> void guarded(Handler &&handler)
{
    try {
        handler();
    } catch (const RuntimeError &error) {
        reportFatalOnce(error);
    }
}

// guarded() as a slot, for a signal whose arguments the handler does not take.
template <typename Handler> auto guard(Handler handler)
{
    return [handler = std::move(handler)]() mutable { guarded(handler); };
}

// Runs first in reportFatal, before the box: what the program keeps of the error must be
// written while it still runs. An empty function removes it.
void setFatalErrorRecorder(std::function<void(const RuntimeError &)> recorder);

// Ends the program at once, like the original's End statement. Tests replace the ending
// with one that throws, so they can watch a program end without losing the test process; a
// replacement that returns is followed by the real ending.
[[noreturn]] void End(int exitCode = 0);
void setEndForTest(std::function<void(int)> end); // an empty function restores the real one

} // namespace rt
