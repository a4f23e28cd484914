#include "store/AtomicFile.h"

#include <QRandomGenerator>
#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace store::atomicfile
{
namespace
{

// How long a writer waits for another process's lock, while the file stays as it is, before it
// writes anyway.
constexpr qint64 kLockPatienceNs = 3'000'000'000;
// How old a temporary file must be before it counts as left behind.
constexpr time_t kStaleSeconds = 60;
constexpr int kMostLinks = 40;

int g_writeError = 0;

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : slash == 0 ? QByteArray("/") : path.left(slash);
}

QByteArray nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray temporaryPrefix(const QByteArray &target)
{
    return '.' + nameOf(target) + ".tmp-";
}

qint64 monotonicNs()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

bool readAll(int fd, QByteArray &out)
{
    char chunk[65536];
    for (;;) {
        const ssize_t got = ::read(fd, chunk, sizeof chunk);
        if (got == 0)
            return true;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        out.append(chunk, got);
    }
}

bool writeAll(int fd, const QByteArray &bytes)
{
    if (g_writeError) {
        errno = g_writeError;
        return false;
    }
    const char *p = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t put = ::write(fd, p, size_t(left));
        if (put < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += put;
        left -= put;
    }
    return true;
}

} // namespace

FileId FileId::of(const struct stat &st)
{
    return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
}

namespace
{

FileId idOf(const QByteArray &path)
{
    struct stat st = {};
    return ::stat(path.constData(), &st) == 0 ? FileId::of(st) : FileId{};
}

} // namespace

bool FileId::operator==(const FileId &o) const
{
    return dev == o.dev && ino == o.ino && size == o.size && mtime.tv_sec == o.mtime.tv_sec &&
           mtime.tv_nsec == o.mtime.tv_nsec && ctime.tv_sec == o.ctime.tv_sec &&
           ctime.tv_nsec == o.ctime.tv_nsec;
}

QByteArray writeTarget(const QByteArray &path)
{
    QByteArray target = path;
    for (int hop = 0; hop < kMostLinks; ++hop) {
        struct stat st = {};
        if (::lstat(target.constData(), &st) != 0 || !S_ISLNK(st.st_mode))
            break;
        QByteArray link(st.st_size > 0 ? st.st_size + 1 : 4096, Qt::Uninitialized);
        const ssize_t n = ::readlink(target.constData(), link.data(), std::size_t(link.size()));
        if (n <= 0 || n >= link.size())
            break;
        link.truncate(n);
        target = link.startsWith('/') ? link : folderOf(target) + '/' + link;
    }
    return target;
}

Presence readFile(const QByteArray &path, QByteArray &bytes, FileId &id, int &error)
{
    bytes.clear();
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = errno;
        return error == ENOENT || error == ENOTDIR ? Presence::Missing : Presence::Unusable;
    }
    struct stat st = {};
    bool ok = ::fstat(fd, &st) == 0;
    if (ok && !S_ISREG(st.st_mode)) {
        errno = EISDIR;
        ok = false;
    }
    if (ok) {
        bytes.reserve(st.st_size);
        ok = readAll(fd, bytes);
    }
    error = ok ? 0 : errno;
    ::close(fd);
    id = FileId::of(st);
    return ok ? Presence::Present : Presence::Unusable;
}

ChangeLock::ChangeLock(const QByteArray &target)
{
    const QByteArray path = folderOf(target) + "/." + nameOf(target) + ".lock";
    fd_ = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (fd_ < 0)
        fd_ = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd_ < 0)
        return;
    // A holder that keeps changing the file is working, not hung: the patience starts again.
    FileId seen = idOf(target);
    qint64 giveUp = monotonicNs() + kLockPatienceNs;
    while (::flock(fd_, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if (const FileId now = idOf(target); !(now == seen)) {
            seen = now;
            giveUp = monotonicNs() + kLockPatienceNs;
        }
        if ((error != EWOULDBLOCK && error != EINTR) || monotonicNs() > giveUp) {
            ::close(fd_);
            fd_ = -1;
            return;
        }
        const timespec pause{0, 1'000'000};
        ::nanosleep(&pause, nullptr);
    }
}

ChangeLock::~ChangeLock()
{
    if (fd_ >= 0)
        ::close(fd_); // and with it the lock
}

bool replaceFile(const QByteArray &target, const QByteArray &bytes, FileId &id, int &error)
{
    struct stat old = {};
    const bool exists = ::stat(target.constData(), &old) == 0;
    if (!exists && errno != ENOENT) {
        error = errno;
        return false;
    }
    if (exists && !S_ISREG(old.st_mode)) {
        error = EISDIR;
        return false;
    }
    // A read-only file stays as it is, as on Windows.
    if (exists && ::access(target.constData(), W_OK) != 0) {
        error = errno;
        return false;
    }

    // Created with the final mode, so that no moment shows the data to more readers.
    const mode_t mode = exists ? (old.st_mode & 0777) : 0666;
    const QByteArray folder = folderOf(target);
    QByteArray temp;
    int fd = -1;
    for (int attempt = 0; attempt < 16 && fd < 0; ++attempt) {
        temp = folder + '/' + temporaryPrefix(target) +
               QByteArray::number(QRandomGenerator::global()->generate64(), 36);
        fd = ::open(temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd < 0 && errno != EEXIST) {
            error = errno;
            return false;
        }
    }
    if (fd < 0) {
        error = EEXIST;
        return false;
    }
    if (exists) {
        if (::fchown(fd, old.st_uid, old.st_gid) != 0) {
            // Handing the file back to another owner needs privileges we may lack.
        }
        if (::fchmod(fd, old.st_mode & 07777) != 0) {
            // It keeps the mode it was created with, which is no wider.
        }
    }

    const bool ok = writeAll(fd, bytes) && ::fsync(fd) == 0 &&
                    ::rename(temp.constData(), target.constData()) == 0;
    if (!ok) {
        error = errno;
        ::close(fd);
        ::unlink(temp.constData());
        return false;
    }
    struct stat now = {};
    ::fstat(fd, &now);
    ::close(fd);
    id = FileId::of(now);

    // The rename itself reaches the disk only with its folder.
    const int dir = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    error = 0;
    return true;
}

void removeStaleTemporaryFiles(const QByteArray &target)
{
    DIR *dir = ::opendir(folderOf(target).constData());
    if (!dir)
        return;
    const QByteArray prefix = temporaryPrefix(target);
    const time_t before = ::time(nullptr) - kStaleSeconds;
    while (const dirent *entry = ::readdir(dir)) {
        if (!QByteArrayView(entry->d_name).startsWith(prefix))
            continue;
        struct stat st = {};
        if (::fstatat(::dirfd(dir), entry->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(st.st_mode) && st.st_uid == ::geteuid() && st.st_mtime < before)
            ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

void setWriteErrorForTest(int error)
{
    g_writeError = error;
}

} // namespace store::atomicfile
