#pragma once

#include <QByteArray>
#include <sys/stat.h>

// Files on disk as the profile engine uses them: what a file is, its bytes, an advisory lock
// around each change, and a replace in one rename. Paths are native bytes.
namespace store::atomicfile
{

// What tells one state of a file from another without reading it.
struct FileId {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = 0;
    timespec mtime{};
    timespec ctime{};

    static FileId of(const struct stat &st);
    bool operator==(const FileId &o) const;
    // Timestamps in whole seconds (FAT, ext2, some network shares): a change within the same
    // second does not show in them.
    bool coarse() const { return mtime.tv_nsec == 0 && ctime.tv_nsec == 0; }
};

// The file a write to `path` goes to: symbolic links followed to their end, also when that
// end does not exist yet.
QByteArray writeTarget(const QByteArray &path);

enum class Presence { Present, Missing, Unusable };

// The whole file, read through one descriptor; its identity as read. `error` gets errno on
// failure.
Presence readFile(const QByteArray &path, QByteArray &bytes, FileId &id, int &error);

// An advisory lock beside `target`, held while it lives, so that two processes changing the
// same file take turns. A lock another process holds too long is given up on after a while:
// the write goes ahead as it would without one.
class ChangeLock
{
public:
    explicit ChangeLock(const QByteArray &target);
    ~ChangeLock();
    ChangeLock(const ChangeLock &) = delete;
    ChangeLock &operator=(const ChangeLock &) = delete;

private:
    int fd_ = -1;
};

// Replaces `target` with `bytes` in one rename: a temporary file in the same folder, created
// with the old file's permissions and owner, is written, flushed and renamed over it, and the
// folder is flushed. Either the old or the new content is on disk at every moment. False, with
// `error` set to errno, when the file could not be written; it is then unchanged.
bool replaceFile(const QByteArray &target, const QByteArray &bytes, FileId &id, int &error);

// Removes temporary files of ours for `target` that a killed writer left, once they are a
// minute old.
void removeStaleTemporaryFiles(const QByteArray &target);

// Makes every write of data fail with `error` (0: none), as a full disk would.
void setWriteErrorForTest(int error);

} // namespace store::atomicfile
