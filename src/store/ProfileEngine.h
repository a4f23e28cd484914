#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

// Our own profile engine: the Windows functions GetPrivateProfileStringA and
// WritePrivateProfileStringA as a program calls them with a full path, a section and a key.
// Files are bytes in the store's ANSI code page, or UTF-16LE when they start with FF FE; a
// write that the code page cannot hold turns the file into UTF-16LE rather than lose text. A
// write edits the file as it is on disk at that moment (every other byte stays as it was)
// and replaces it atomically, under a lock that other writers of ours respect.
namespace store
{

// Reads `key` of `section`: at most bufferSize - 1 characters go to `result`, and their
// count is returned. A missing file, section or key gives `defaultValue` without its
// trailing spaces.
int getPrivateProfileString(const QString &section, const QString &key, const QString &defaultValue,
                            QString &result, int bufferSize, const QString &fileName);

// Writes `value` to `key` of `section`, creating the file, the section and the key as
// needed. Returns false when the file could not be written, with errno's reason in `error`
// where given; the file is then unchanged.
bool writePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName, int *error = nullptr);

// Keeps other writers of ours out of `fileName` while it lives, so that a read and the writes
// that depend on it (a count, and the event numbered by it) see no other change between them.
// The reads in it see the file as it is on disk.
class ChangeScope
{
public:
    explicit ChangeScope(const QString &fileName);
    ~ChangeScope();
    ChangeScope(const ChangeScope &) = delete;
    ChangeScope &operator=(const ChangeScope &) = delete;

private:
    struct Held;
    std::unique_ptr<Held> held_;
};

// Groups writes: while one is open, writes change only the parsed copies, which reads see;
// commit() then replaces each changed file once, atomically. Closing without a successful
// commit drops the writes, so the files keep all or nothing of them. Nested batches write
// with the outermost.
class WriteBatch
{
public:
    WriteBatch();
    ~WriteBatch();
    WriteBatch(const WriteBatch &) = delete;
    WriteBatch &operator=(const WriteBatch &) = delete;

    bool commit(); // false when a file could not be written
};

namespace profilecache
{

void clear();         // forgets every parsed copy
quint64 parseCount(); // how many times file contents have been parsed so far

// Parses file contents the way the engine does and returns how many keys are reachable.
qsizetype parseForBenchmark(const QByteArray &fileBytes);

} // namespace profilecache
} // namespace store
