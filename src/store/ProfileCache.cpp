#include "store/ProfileCache.h"

#include <QFile>
#include <ctime>
#include <limits>

namespace store
{

using atomicfile::FileId;
using atomicfile::Presence;

namespace
{

constexpr qint64 kFreshNs = 1'000'000; // how long a copy is used without looking at the disk
constexpr std::size_t kCachedFiles = 8;
// How far apart a write and a later read of a file with coarse timestamps must be for the
// timestamps to show any change between them.
constexpr time_t kCoarseTick = 2;

bool g_coarse = false;

qint64 monotonicNs()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

FileId seen(FileId id)
{
    if (g_coarse)
        id.mtime.tv_nsec = id.ctime.tv_nsec = 0;
    return id;
}

} // namespace

struct ProfileCache::Entry {
    Document doc;
    QByteArray native;  // the path as the system takes it
    QByteArray current; // the file's bytes as last seen
    FileId id;
    qint64 checkedAt = 0; // monotonic
    time_t readAt = 0;    // wall clock, just before `current` was last read or written
    quint64 lastUse = 0;

    // A change in the same timestamp tick as the last read would not show in `id`.
    bool racy() const { return id.coarse() && readAt <= id.mtime.tv_sec + kCoarseTick; }
};

ProfileCache &ProfileCache::instance()
{
    static ProfileCache cache;
    return cache;
}

ProfileCache::Entry *ProfileCache::find(const QString &path)
{
    // Callers mostly pass the very string they passed last time.
    const bool same = path.constData() == lastPath_.constData() && path.size() == lastPath_.size();
    if (!same && path != lastPath_) {
        lastPath_ = path;
        const auto found = entries_.find(path);
        last_ = found == entries_.end() ? nullptr : found->second.get();
    }
    if (last_)
        last_->lastUse = ++clock_;
    return last_;
}

ProfileCache::Entry &ProfileCache::store(const QString &path, QByteArray bytes, const FileId &id,
                                         time_t readAt)
{
    erase(path);
    if (entries_.size() >= kCachedFiles) {
        auto oldest = entries_.begin();
        for (auto it = entries_.begin(); it != entries_.end(); ++it) {
            if (it->second->lastUse < oldest->second->lastUse)
                oldest = it;
        }
        erase(oldest->first);
    }
    auto entry = std::make_unique<Entry>();
    load(entry->doc, bytes);
    entry->native = QFile::encodeName(path);
    entry->current = std::move(bytes);
    entry->id = seen(id);
    entry->readAt = readAt;
    entry->checkedAt = monotonicNs();
    entry->lastUse = ++clock_;
    Entry &stored = *entries_.emplace(path, std::move(entry)).first->second;
    lastPath_ = path;
    last_ = &stored;
    return stored;
}

// Whether the file still holds what `entry` was parsed from.
bool ProfileCache::unchangedOnDisk(Entry &entry)
{
    struct stat st = {};
    if (::stat(entry.native.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    if (seen(FileId::of(st)) == entry.id && !entry.racy())
        return true;
    const time_t readAt = ::time(nullptr);
    QByteArray bytes;
    FileId id;
    int error = 0;
    if (atomicfile::readFile(entry.native, bytes, id, error) != Presence::Present ||
        bytes != entry.current)
        return false;
    entry.id = seen(id);
    entry.readAt = readAt;
    return true;
}

const Document *ProfileCache::forReading(const QString &path)
{
    const qint64 now = monotonicNs();
    if (Entry *entry = find(path)) {
        if (now - entry->checkedAt < kFreshNs || unchangedOnDisk(*entry)) {
            entry->checkedAt = now;
            return &entry->doc;
        }
    }
    const QByteArray native = QFile::encodeName(path);
    const time_t readAt = ::time(nullptr);
    QByteArray bytes;
    FileId id;
    int error = 0;
    if (atomicfile::readFile(native, bytes, id, error) != Presence::Present) {
        erase(path);
        return nullptr;
    }
    return &store(path, std::move(bytes), id, readAt).doc;
}

Document &ProfileCache::forWriting(const QString &path, QByteArray bytes, const FileId &id)
{
    Entry *entry = find(path);
    if (entry && entry->current == bytes)
        return entry->doc;
    return store(path, std::move(bytes), id, ::time(nullptr)).doc;
}

void ProfileCache::written(const QString &path, Edit edit, QByteArray bytes, const FileId &id)
{
    Entry *entry = find(path);
    if (!entry)
        return;
    if (edit == Edit::NeedsReparse)
        load(entry->doc, bytes);
    entry->current = std::move(bytes);
    entry->id = seen(id);
    entry->readAt = ::time(nullptr);
    entry->checkedAt = monotonicNs();
}

void ProfileCache::erase(const QString &path)
{
    if (path == lastPath_) {
        lastPath_.clear();
        last_ = nullptr;
    }
    const auto found = entries_.find(path);
    if (found == entries_.end())
        return;
    if (found->second.get() == last_) {
        lastPath_.clear();
        last_ = nullptr;
    }
    entries_.erase(found); // `path` may be the key itself: not used from here on
}

void ProfileCache::expire(const QString &path)
{
    const auto found = entries_.find(path);
    if (found != entries_.end())
        found->second->checkedAt = std::numeric_limits<qint64>::min() / 2;
}

void ProfileCache::clear()
{
    entries_.clear();
    lastPath_.clear();
    last_ = nullptr;
}

void ProfileCache::setCoarseTimestampsForTest(bool on)
{
    g_coarse = on;
}

} // namespace store
