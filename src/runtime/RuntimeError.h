#pragma once

#include <QString>
#include <exception>
#include <functional>
#include <optional>

namespace rt
{

// An error raised the way the original run-time raised them. Nothing in the program traps
// it; the top-level handler reports it and ends the program.
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

// The text of the box the top-level handler shows: "Run-time error '13':", a blank line,
// then the description.
QString runtimeErrorText(const RuntimeError &error);

// Shows the run-time error box, titled with the program's title, then ends the program with
// kRuntimeErrorExitCode.
constexpr int kRuntimeErrorExitCode = 1;
[[noreturn]] void reportFatal(const RuntimeError &error);

// Runs first in reportFatal, before the box: what the program keeps of the error must be
// written while it still runs. An empty function removes it.
void setFatalErrorRecorder(std::function<void(const RuntimeError &)> recorder);

// Ends the program at once, like the original's End statement. Tests replace the ending
// with one that throws, so they can watch a program end without losing the test process; a
// replacement that returns is followed by the real ending.
[[noreturn]] void End(int exitCode = 0);
void setEndForTest(std::function<void(int)> end); // an empty function restores the real one

} // namespace rt
