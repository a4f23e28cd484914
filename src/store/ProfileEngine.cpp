#include "store/ProfileEngine.h"

#include "runtime/Ansi.h"
#include "store/AtomicFile.h"
#include "store/ProfileCache.h"
#include "store/ProfileEdit.h"
#include "store/ProfileText.h"
#include "store/SaveFailure.h"

#include <QFile>
#include <QSet>
#include <map>
#include <memory>

namespace store
{

using namespace profiletext;

namespace
{

// A name or default as the ANSI functions receive it: through the code page, where a
// character it cannot hold arrives as '?'. A UTF-16 file is searched with the text as given.
// Only an argument that changes is copied, into `changed`.
QStringView argument(const QString &arg, bool exact, QString &changed)
{
    const QStringView text = untilNul(arg);
    if (exact)
        return text;
    for (const QChar c : text) {
        if (c.unicode() >= 0x80) {
            changed = rt::fromAnsi(rt::toAnsi(text));
            return changed;
        }
    }
    return text;
}

// The loader asks for several keys of one section in a row: the section found last is kept
// for the state of the document it was found in.
struct SectionMemo {
    quint64 version = 0;
    QString section;
    qsizetype found = kNoSection;
};

qsizetype sectionOf(const Document &doc, const QString &section, bool exact)
{
    static SectionMemo memo;
    if (memo.version == doc.version && memo.section == section)
        return memo.found;
    QString changed;
    const qsizetype found = doc.findSection(trimBlanks(argument(section, exact, changed)));
    memo = {doc.version, section, found};
    return found;
}

// Temporary files a killed writer left are cleared the first time a folder is written to.
void clearLeftoversOnce(const QByteArray &target)
{
    static QSet<QByteArray> done;
    if (!done.contains(target)) {
        done.insert(target);
        atomicfile::removeStaleTemporaryFiles(target);
    }
}

// flock() would make a second descriptor of this process wait for the first: one lock per
// target serves every holder in the process, and is released with the last of them.
std::map<QByteArray, std::pair<std::unique_ptr<atomicfile::ChangeLock>, int>> g_locks;

class HeldLock
{
public:
    explicit HeldLock(QByteArray target) : target_(std::move(target))
    {
        auto &[lock, holders] = g_locks[target_];
        if (holders++ == 0)
            lock = std::make_unique<atomicfile::ChangeLock>(target_);
    }
    ~HeldLock()
    {
        const auto found = g_locks.find(target_);
        if (--found->second.second == 0)
            g_locks.erase(found);
    }
    HeldLock(const HeldLock &) = delete;
    HeldLock &operator=(const HeldLock &) = delete;

private:
    QByteArray target_;
};

// A file an open batch has written to: locked from its first write to the batch's end, so
// that no other writer's change comes between its reading and its replace, and edited in
// memory only.
struct PendingFile {
    QByteArray target;
    std::unique_ptr<HeldLock> lock;
    Document doc;
};

int g_batchDepth = 0;
std::map<QString, PendingFile> g_pending;

PendingFile *pendingFile(const QString &fileName, int &error)
{
    const auto found = g_pending.find(fileName);
    if (found != g_pending.end())
        return &found->second;
    PendingFile file;
    file.target = atomicfile::writeTarget(QFile::encodeName(fileName));
    clearLeftoversOnce(file.target);
    file.lock = std::make_unique<HeldLock>(file.target);
    QByteArray bytes;
    atomicfile::FileId id;
    if (atomicfile::readFile(file.target, bytes, id, error) == atomicfile::Presence::Unusable)
        return nullptr;
    load(file.doc, std::move(bytes));
    return &g_pending.emplace(fileName, std::move(file)).first->second;
}

bool writeInBatch(const QString &section, const QString &key, const QString &value,
                  const QString &fileName, int &error)
{
    PendingFile *file = pendingFile(fileName, error);
    if (!file)
        return false;
    if (applyWrite(file->doc, section, key, value) == Edit::NeedsReparse)
        load(file->doc, serialize(file->doc));
    return true;
}

bool write(const QString &section, const QString &key, const QString &value,
           const QString &fileName, int &error)
{
    if (g_batchDepth > 0)
        return writeInBatch(section, key, value, fileName, error);
    const QByteArray target = atomicfile::writeTarget(QFile::encodeName(fileName));
    clearLeftoversOnce(target);
    const HeldLock lock(target);

    // The file as it is now: another program may have changed it however little.
    QByteArray bytes;
    atomicfile::FileId id;
    if (atomicfile::readFile(target, bytes, id, error) == atomicfile::Presence::Unusable)
        return false;
    ProfileCache &cache = ProfileCache::instance();
    Document &doc = cache.forWriting(fileName, std::move(bytes), id);
    const Edit edit = applyWrite(doc, section, key, value);
    if (edit == Edit::Unchanged)
        return true;
    QByteArray out = serialize(doc);
    if (!atomicfile::replaceFile(target, out, id, error)) {
        cache.erase(fileName); // the copy holds the edit the file did not get
        return false;
    }
    cache.written(fileName, edit, std::move(out), id);
    return true;
}

} // namespace

int getPrivateProfileString(const QString &section, const QString &key, const QString &defaultValue,
                            QString &result, int bufferSize, const QString &fileName)
{
    result.clear();
    if (bufferSize <= 0)
        return 0;
    const qsizetype room = bufferSize - 1;

    const auto pending = g_pending.find(fileName);
    const Document *doc = pending != g_pending.end()
                              ? &pending->second.doc
                              : ProfileCache::instance().forReading(fileName);
    const bool exact = doc && doc->encoding == Encoding::Utf16Le;
    if (doc) {
        QString changedKey;
        const qsizetype found = sectionOf(*doc, section, exact);
        if (found != kNoSection) {
            const QStringView name = trimBlanks(argument(key, exact, changedKey));
            QStringView stored;
            if (doc->findKey(found, name, keyHash(found, name), &stored) != kNoLine) {
                const QStringView value = stripQuotes(stored);
                result = value.first(std::min(value.size(), room)).toString();
                return int(result.size());
            }
        }
    }

    QString changed;
    QStringView fallback = argument(defaultValue, exact, changed);
    while (!fallback.isEmpty() && fallback.back() == u' ')
        fallback.chop(1);
    result = fallback.first(std::min(fallback.size(), room)).toString();
    return int(result.size());
}

bool writePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName, int *error)
{
    int failure = 0;
    const bool ok = write(section, key, value, fileName, failure);
    if (error)
        *error = ok ? 0 : failure;
    return ok;
}

struct ChangeScope::Held {
    explicit Held(QByteArray target) : lock(std::move(target)) {}
    HeldLock lock;
};

ChangeScope::ChangeScope(const QString &fileName)
    : held_(std::make_unique<Held>(atomicfile::writeTarget(QFile::encodeName(fileName))))
{
    // The copy in hand may be older than the last change of whoever held the lock before.
    ProfileCache::instance().expire(fileName);
}

ChangeScope::~ChangeScope() = default;

WriteBatch::WriteBatch()
{
    ++g_batchDepth;
}

WriteBatch::~WriteBatch()
{
    if (--g_batchDepth == 0)
        g_pending.clear(); // what was not committed is dropped, and the locks released
}

bool WriteBatch::commit()
{
    if (g_batchDepth > 1)
        return true; // the outermost batch writes
    bool ok = true;
    for (auto &[fileName, file] : g_pending) {
        atomicfile::FileId id;
        int error = 0;
        ok = atomicfile::replaceFile(file.target, serialize(file.doc), id, error) && ok;
        noteWrite(fileName, error);
        ProfileCache::instance().erase(fileName);
    }
    g_pending.clear();
    return ok;
}

namespace profilecache
{

void clear()
{
    ProfileCache::instance().clear();
}

quint64 parseCount()
{
    return store::parseCount();
}

qsizetype parseForBenchmark(const QByteArray &fileBytes)
{
    Document doc;
    load(doc, fileBytes);
    return doc.keys.size();
}

} // namespace profilecache
} // namespace store
