#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <cstdio>
#include <cstdlib>

// A finding that is no crash: printed, then abort() so that libFuzzer keeps the input.
#define FUZZ_CHECK(condition, ...)                                                                 \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "check failed: %s\n", #condition);                                \
            std::fprintf(stderr, __VA_ARGS__);                                                     \
            std::fputc('\n', stderr);                                                              \
            std::abort();                                                                          \
        }                                                                                          \
    } while (0)

// Text for a report: percent-encoded UTF-8.
inline QByteArray shown(const QString &s)
{
    return s.toUtf8().toPercentEncoding(" /:.,-[]=");
}

// A fresh folder for the run's files, in memory where there is a /dev/shm: every write the
// engine makes ends in an fsync. Removed when the fuzzer exits normally.
inline QString scratchFolder()
{
    static QString folder;
    QByteArray pattern = QDir(QStringLiteral("/dev/shm")).exists() ? "/dev/shm/orva-fuzz-XXXXXX"
                                                                   : "/tmp/orva-fuzz-XXXXXX";
    if (!mkdtemp(pattern.data()))
        std::abort();
    folder = QString::fromLocal8Bit(pattern);
    std::atexit([] { QDir(folder).removeRecursively(); });
    return folder;
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        std::abort();
}
