#pragma once

#include "store/AtomicFile.h"
#include "store/ProfileDocument.h"
#include "store/ProfileEdit.h"

#include <QHash>
#include <QString>
#include <memory>
#include <unordered_map>

namespace store
{

// The parsed copies of the files last used, kept between calls. A copy is used as it is for a
// millisecond after it was last compared with its file; after that, a stat of the file tells
// whether it still matches, and the file is parsed again when it does not. Where the file's
// timestamps are too coarse to show a change made soon after the copy was read, its bytes are
// compared instead.
class ProfileCache
{
public:
    static ProfileCache &instance();

    // The copy of the file at `path` as it is on disk; null when there is no readable file.
    const Document *forReading(const QString &path);

    // The copy of `bytes`, the content of `path` read just now: the one in hand when it holds
    // the same bytes, else a new parse of them.
    Document &forWriting(const QString &path, QByteArray bytes, const atomicfile::FileId &id);

    // After `doc` was written to its file as `bytes`, which now has identity `id`.
    void written(const QString &path, Edit edit, QByteArray bytes, const atomicfile::FileId &id);

    void erase(const QString &path);
    void clear();
    // The next read of `path` looks at the disk, however fresh the copy.
    void expire(const QString &path);

    // Cuts every timestamp seen to whole seconds, as FAT and ext2 keep them.
    static void setCoarseTimestampsForTest(bool on);

private:
    struct Entry;
    Entry *find(const QString &path);
    Entry &store(const QString &path, QByteArray bytes, const atomicfile::FileId &id,
                 time_t readAt);
    bool unchangedOnDisk(Entry &entry);

    std::unordered_map<QString, std::unique_ptr<Entry>> entries_;
    quint64 clock_ = 0;
    // The path of the previous call, which the next call most likely repeats.
    QString lastPath_;
    Entry *last_ = nullptr;
};

} // namespace store
