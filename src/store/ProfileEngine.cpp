#include "store/ProfileEngine.h"

#include "runtime/Ansi.h"

#include <QFile>
#include <QHash>
#include <QRandomGenerator>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

#ifdef Q_OS_LINUX
#include <atomic>
#include <csignal>
#include <cstdio>
#include <pthread.h>
#include <sys/inotify.h>
#endif

namespace store
{
namespace
{

// ---------------------------------------------------------------------------------------
// Text rules

enum class Encoding { Ansi, Utf16Le };
enum class Term : quint8 { None, Cr, Lf, CrLf };

QStringView termText(Term term)
{
    switch (term) {
    case Term::Cr:
        return u"\r";
    case Term::Lf:
        return u"\n";
    case Term::CrLf:
        return u"\r\n";
    case Term::None:
        break;
    }
    return {};
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

QStringView trimBlanks(QStringView s)
{
    qsizetype begin = 0;
    qsizetype end = s.size();
    while (begin < end && isBlank(s[begin]))
        ++begin;
    while (end > begin && isBlank(s[end - 1]))
        --end;
    return s.sliced(begin, end - begin);
}

// Section and key names compare without regard to case, character by character, so that
// neither a lookup nor the parse needs a folded copy of a name.
char16_t foldChar(char16_t c)
{
    if (c < 0x80)
        return c >= u'a' && c <= u'z' ? char16_t(c - (u'a' - u'A')) : c;
    const char32_t upper = QChar::toUpper(char32_t(c));
    return upper <= 0xFFFF ? char16_t(upper) : c;
}

bool sameName(QStringView a, QStringView b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const char16_t x = a[i].unicode();
        const char16_t y = b[i].unicode();
        if (x != y && foldChar(x) != foldChar(y))
            return false;
    }
    return true;
}

// FNV-1a over the folded characters, so that names that compare equal hash alike.
quint64 nameHash(QStringView name)
{
    quint64 h = 0xcbf29ce484222325ULL;
    for (const QChar c : name) {
        h ^= foldChar(c.unicode());
        h *= 0x100000001b3ULL;
    }
    return h;
}

quint32 finishHash(quint64 h)
{
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    return quint32(h);
}

quint32 sectionHash(QStringView name)
{
    return finishHash(nameHash(name));
}

quint32 keyHash(qsizetype section, QStringView name)
{
    return finishHash(nameHash(name) + quint64(section) * 0x9e3779b97f4a7c15ULL);
}

enum class Kind { Other, Header, Key };

struct Classified {
    Kind kind = Kind::Other;
    QStringView name; // the section or key name, blanks trimmed
};

// What the reader sees of a line ends at a NUL. Lines are short: one pass over the
// characters is cheaper than a library search for each thing looked for.
Classified classify(QStringView line)
{
    const qsizetype n = line.size();
    qsizetype first = 0;
    while (first < n && isBlank(line[first]))
        ++first;
    if (first == n || line[first] == QChar(0) || line[first] == u';')
        return {};
    qsizetype close = -1; // the last ']'
    qsizetype eq = -1;    // the first '='
    for (qsizetype i = first; i < n && line[i] != QChar(0); ++i) {
        if (line[i] == u']')
            close = i;
        else if (line[i] == u'=' && eq < 0)
            eq = i;
    }
    if (line[first] == u'[' && close > first)
        return {Kind::Header, trimBlanks(line.sliced(first + 1, close - first - 1))};
    if (eq < 0)
        return {};
    return {Kind::Key, trimBlanks(line.sliced(first, eq - first))};
}

struct KeyLine {
    QStringView name;  // everything before the first '=', blanks trimmed
    QStringView value; // everything after it, blanks trimmed
};

KeyLine splitKeyLine(QStringView keyLine)
{
    const qsizetype n = keyLine.size();
    qsizetype eq = -1;
    qsizetype end = 0;
    for (; end < n && keyLine[end] != QChar(0); ++end) {
        if (keyLine[end] == u'=' && eq < 0)
            eq = end;
    }
    return {trimBlanks(keyLine.first(eq)), trimBlanks(keyLine.sliced(eq + 1, end - eq - 1))};
}

QStringView stripQuotes(QStringView value)
{
    if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
        value.back() == value.front())
        return value.sliced(1, value.size() - 2);
    return value;
}

// A string argument as the ANSI functions receive it: it ends at a NUL, and a character
// Windows-1252 cannot hold arrives as '?'. Only an argument that changes is copied, into
// `changed`.
QStringView ansiArgument(const QString &arg, QString &changed)
{
    const QStringView all(arg);
    bool inCodePage = true;
    qsizetype end = 0;
    for (; end < all.size() && all[end] != QChar(0); ++end) {
        const char16_t c = all[end].unicode();
        if ((c >= 0x80 && c < 0xA0) || c > 0xFF)
            inCodePage = false;
    }
    const QStringView text = all.first(end);
    if (inCodePage)
        return text;
    changed = rt::fromAnsi(rt::toAnsi(text));
    return changed;
}

bool hasLineBreak(QStringView s)
{
    return s.contains(u'\r') || s.contains(u'\n');
}

// ---------------------------------------------------------------------------------------
// A parsed file

struct Line {
    qsizetype off = 0; // content of a line as loaded: a slice of Document::text
    qsizetype len = 0;
    QString own; // content of a line this engine wrote
    bool written = false;
    Term term = Term::None;
    quint32 section = 0; // of a line in Document::keys: the section it is filed under
};
using LineId = quint32; // a line's place in Document::pool, which never changes

struct Section {
    // The name as the header spells it. Header lines are never rewritten and the pool never
    // moves a line, so the characters stay where they are.
    QStringView name;
    LineId lastKey; // the last key line, or the header while there is none
};

constexpr qsizetype kNoSection = -1;

// Open addressing from a name's hash to an item (a section or a line). A slot keeps only
// the hash; whoever looks a name up compares the item's name itself.
class NameIndex
{
public:
    static constexpr quint32 kNone = ~quint32(0);

    void reset(qsizetype expected)
    {
        std::size_t capacity = 16;
        while (capacity < std::size_t(expected) * 2)
            capacity *= 2;
        slots_.assign(capacity, Slot{0, kNone});
        size_ = 0;
    }

    qsizetype size() const { return size_; }

    template <typename Match> quint32 find(quint32 hash, Match &&match) const
    {
        if (slots_.empty())
            return kNone;
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot &slot = slots_[i];
            if (slot.item == kNone)
                return kNone;
            if (slot.hash == hash && match(slot.item))
                return slot.item;
        }
    }

    void insert(quint32 hash, quint32 item)
    {
        if (std::size_t(size_ + 1) * 2 > slots_.size()) {
            std::vector<Slot> old;
            old.swap(slots_);
            reset(std::max<qsizetype>(size_ + 1, qsizetype(old.size())));
            for (const Slot &slot : old) {
                if (slot.item != kNone)
                    place(slot);
            }
        }
        place(Slot{hash, item});
    }

private:
    struct Slot {
        quint32 hash;
        quint32 item;
    };

    void place(Slot slot)
    {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = slot.hash & mask;
        while (slots_[i].item != NameIndex::kNone)
            i = (i + 1) & mask;
        slots_[i] = slot;
        ++size_;
    }

    std::vector<Slot> slots_;
    qsizetype size_ = 0;
};

constexpr LineId kNoLine = NameIndex::kNone;

struct FileId {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = 0;
    timespec mtime{};
    timespec ctime{};

    static FileId of(const struct stat &st)
    {
        return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
    }
    bool operator==(const FileId &o) const
    {
        return dev == o.dev && ino == o.ino && size == o.size && mtime.tv_sec == o.mtime.tv_sec &&
               mtime.tv_nsec == o.mtime.tv_nsec && ctime.tv_sec == o.ctime.tv_sec &&
               ctime.tv_nsec == o.ctime.tv_nsec;
    }
};

struct Document {
    Encoding encoding = Encoding::Ansi;
    QByteArray raw;                // the bytes as loaded; lines as loaded are copied from here
    qsizetype prefix = 0;          // bytes of the FF FE mark
    QByteArray oddTail;            // the odd last byte of a UTF-16 file
    QString text;                  // the characters as loaded, mark left out
    std::deque<Line> pool;         // every line held, by id
    std::vector<LineId> order;     // the lines of the file, in order
    std::vector<Section> sections; // first occurrences only, in file order
    NameIndex sectionIndex;        // -> index into sections
    NameIndex keys;                // -> first key line of each name in a section

    FileId id;
    QByteArray native; // the path as the system takes it
    quint64 lastUse = 0;
    quint64 watchGeneration = 0; // the watches it was last set up with; 0 for none yet
    bool watched = false;        // whether those watches report every change to it
    quint64 checkedAt = 0;       // how many reports had been taken when it was last checked
    bool pending = false;        // holds writes of an open batch that the disk has not seen

    QStringView content(LineId id) const
    {
        const Line &line = pool[id];
        return line.written ? QStringView(line.own) : QStringView(text).sliced(line.off, line.len);
    }

    qsizetype findSection(QStringView name, quint32 hash) const
    {
        const quint32 found = sectionIndex.find(
            hash, [&](quint32 section) { return sameName(sections[section].name, name); });
        return found == NameIndex::kNone ? kNoSection : qsizetype(found);
    }
    qsizetype findSection(QStringView name) const { return findSection(name, sectionHash(name)); }

    // The first key line named `name` in `section`; its value goes to `value`.
    LineId findKey(qsizetype section, QStringView name, quint32 hash,
                   QStringView *value = nullptr) const
    {
        return keys.find(hash, [&](LineId line) {
            if (pool[line].section != quint32(section))
                return false;
            const KeyLine split = splitKeyLine(content(line));
            if (!sameName(split.name, name))
                return false;
            if (value)
                *value = split.value;
            return true;
        });
    }

    void addKey(qsizetype section, quint32 hash, LineId line)
    {
        pool[line].section = quint32(section);
        keys.insert(hash, line);
    }

    LineId add(Line line)
    {
        pool.push_back(std::move(line));
        return LineId(pool.size() - 1);
    }
    LineId append(Line line)
    {
        const LineId id = add(std::move(line));
        order.push_back(id);
        return id;
    }
    LineId insertAfter(LineId after, Line line)
    {
        const LineId id = add(std::move(line));
        order.insert(std::find(order.begin(), order.end(), after) + 1, id);
        return id;
    }
};

quint64 g_parseCount = 0;
int g_batchDepth = 0; // open WriteBatch objects

// Files a line into the indexes, as parsing line by line from the top does. `current` is the
// section the lines before belong to: none before the first header and under a repeated
// header, whose keys nobody reaches.
void indexLine(Document &doc, LineId line, qsizetype &current)
{
    const Classified c = classify(doc.content(line));
    if (c.kind == Kind::Header) {
        const quint32 hash = sectionHash(c.name);
        if (doc.findSection(c.name, hash) != kNoSection) {
            current = kNoSection;
        } else {
            current = qsizetype(doc.sections.size());
            doc.sections.push_back(Section{c.name, line});
            doc.sectionIndex.insert(hash, quint32(current));
        }
    } else if (c.kind == Kind::Key && current != kNoSection) {
        const quint32 hash = keyHash(current, c.name);
        if (doc.findKey(current, c.name, hash) == kNoLine)
            doc.addKey(current, hash, line);
        doc.sections[current].lastKey = line;
    }
}

void load(Document &doc, QByteArray bytes)
{
    doc.raw = std::move(bytes);
    doc.pool.clear();
    doc.order.clear();
    doc.sections.clear();
    doc.oddTail.clear();

    const auto *b = reinterpret_cast<const unsigned char *>(doc.raw.constData());
    const qsizetype size = doc.raw.size();
    if (size >= 2 && b[0] == 0xFF && b[1] == 0xFE) {
        doc.encoding = Encoding::Utf16Le;
        doc.prefix = 2;
        const qsizetype units = (size - 2) / 2;
        doc.text = QString(units, Qt::Uninitialized);
        char16_t *dst = reinterpret_cast<char16_t *>(doc.text.data());
        for (qsizetype i = 0; i < units; ++i)
            dst[i] = char16_t(b[2 + 2 * i] | (b[3 + 2 * i] << 8));
        if ((size - 2) % 2)
            doc.oddTail = doc.raw.right(1);
    } else {
        doc.encoding = Encoding::Ansi;
        doc.prefix = 0;
        doc.text = rt::fromAnsi(doc.raw);
    }

    const char16_t *p = reinterpret_cast<const char16_t *>(doc.text.utf16());
    const qsizetype n = doc.text.size();
    doc.order.reserve(std::size_t(doc.raw.size() / 24));
    doc.sectionIndex.reset(doc.raw.size() / 64);
    doc.keys.reset(doc.raw.size() / 24);
    qsizetype current = kNoSection;
    qsizetype i = 0;
    while (i < n) {
        Line line;
        line.off = i;
        while (i < n && p[i] != u'\r' && p[i] != u'\n')
            ++i;
        line.len = i - line.off;
        if (i < n) {
            if (p[i] == u'\n') {
                line.term = Term::Lf;
                ++i;
            } else if (i + 1 < n && p[i + 1] == u'\n') {
                line.term = Term::CrLf;
                i += 2;
            } else {
                line.term = Term::Cr;
                ++i;
            }
        }
        indexLine(doc, doc.append(std::move(line)), current);
    }
    ++g_parseCount;
}

void appendEncoded(QByteArray &out, Encoding encoding, QStringView s)
{
    if (encoding == Encoding::Ansi) {
        out.append(rt::toAnsi(s));
        return;
    }
    for (const QChar c : s) {
        out.append(char(c.unicode() & 0xFF));
        out.append(char(c.unicode() >> 8));
    }
}

QByteArray serialize(const Document &doc)
{
    const qsizetype unit = doc.encoding == Encoding::Ansi ? 1 : 2;
    QByteArray out;
    out.reserve(doc.raw.size() + 1024);
    out.append(doc.raw.constData(), doc.prefix);
    for (const LineId id : doc.order) {
        const Line &line = doc.pool[id];
        if (line.written)
            appendEncoded(out, doc.encoding, line.own);
        else
            out.append(doc.raw.constData() + doc.prefix + line.off * unit, line.len * unit);
        appendEncoded(out, doc.encoding, termText(line.term));
    }
    out.append(doc.oddTail);
    return out;
}

Line writtenLine(QString content)
{
    Line line;
    line.own = std::move(content);
    line.written = true;
    line.term = Term::CrLf;
    return line;
}

enum class Edit { Unchanged, Indexed, NeedsReparse };

// Changes the parsed copy the way the write changes the file.
Edit applyWrite(Document &doc, const QString &section, const QString &key, const QString &value)
{
    const bool raw = hasLineBreak(section) || hasLineBreak(key) || hasLineBreak(value);
    const qsizetype found = doc.findSection(section);

    if (found == kNoSection) {
        // New section at the end, after a line end for a last line that lacks one.
        if (!doc.order.empty() && doc.pool[doc.order.back()].term == Term::None)
            doc.pool[doc.order.back()].term = Term::CrLf;
        const LineId header = doc.append(writtenLine(u'[' + section + u']'));
        const LineId keyLine = doc.append(writtenLine(key + u'=' + value));
        if (raw)
            return Edit::NeedsReparse;
        // Lines added at the end are filed exactly as a parse from the top files them.
        qsizetype current = kNoSection;
        indexLine(doc, header, current);
        indexLine(doc, keyLine, current);
        return Edit::Indexed;
    }

    const quint32 hash = keyHash(found, key);
    const LineId existing = doc.findKey(found, key, hash);
    if (existing != kNoLine) {
        Line &line = doc.pool[existing];
        const QStringView old = doc.content(existing);
        if (splitKeyLine(old).value == value)
            return Edit::Unchanged;
        // The line keeps the key as spelled in the file.
        QString replacement = classify(old).name.toString() + u'=' + value;
        if (replacement == old && line.term == Term::CrLf)
            return Edit::Unchanged;
        line.own = std::move(replacement);
        line.written = true;
        line.term = Term::CrLf;
        if (raw)
            return Edit::NeedsReparse;
        const Classified c = classify(line.own);
        return c.kind == Kind::Key && sameName(c.name, key) ? Edit::Indexed : Edit::NeedsReparse;
    }

    // New key directly after the last key line of the section.
    Section &sec = doc.sections[found];
    if (doc.pool[sec.lastKey].term == Term::None)
        doc.pool[sec.lastKey].term = Term::CrLf;
    const LineId line = doc.insertAfter(sec.lastKey, writtenLine(key + u'=' + value));
    if (raw)
        return Edit::NeedsReparse;
    const Classified c = classify(doc.content(line));
    if (c.kind != Kind::Key || !sameName(c.name, key))
        return Edit::NeedsReparse;
    doc.addKey(found, hash, line);
    sec.lastKey = line;
    return Edit::Indexed;
}

// ---------------------------------------------------------------------------------------
// Files

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

// Replaces the file at `path` with `bytes` in one rename: a temporary file in the same
// folder is written, flushed to disk, given the old file's permissions and renamed over the
// old file. Either the old or the new content is on disk at every moment.
bool replaceFile(const QString &path, const QByteArray &bytes, FileId &id)
{
    QByteArray target = QFile::encodeName(path);
    struct stat old = {};
    if (::lstat(target.constData(), &old) == 0 && S_ISLNK(old.st_mode)) {
        if (char *real = ::realpath(target.constData(), nullptr)) {
            target = real;
            std::free(real);
        }
    }
    bool exists = false;
    if (::stat(target.constData(), &old) == 0) {
        if (!S_ISREG(old.st_mode) || ::access(target.constData(), W_OK) != 0)
            return false;
        exists = true;
    } else if (errno != ENOENT) {
        return false;
    }

    const qsizetype slash = target.lastIndexOf('/');
    const QByteArray folder = slash < 0    ? QByteArray(".")
                              : slash == 0 ? QByteArray("/")
                                           : target.left(slash);
    const QByteArray name = target.mid(slash + 1);

    QByteArray temp;
    int fd = -1;
    for (int attempt = 0; attempt < 16 && fd < 0; ++attempt) {
        temp = folder + "/." + name + '.' +
               QByteArray::number(QRandomGenerator::global()->generate64(), 36);
        fd = ::open(temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            return false;
    }
    if (fd < 0)
        return false;

    bool ok = writeAll(fd, bytes);
    if (ok && exists) {
        if (::fchown(fd, old.st_uid, old.st_gid) != 0) {
            // Handing the file back to another owner needs privileges we may lack.
        }
        ok = ::fchmod(fd, old.st_mode & 07777) == 0;
    }
    ok = ok && ::fsync(fd) == 0 && ::rename(temp.constData(), target.constData()) == 0;
    if (!ok) {
        ::close(fd);
        ::unlink(temp.constData());
        return false;
    }
    struct stat now = {};
    ::fstat(fd, &now);
    ::close(fd);
    id = FileId::of(now);

    const int dir = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

// ---------------------------------------------------------------------------------------
// Change notification
//
// Looking at a file on disk costs a stat() at every call. On Linux the kernel reports
// changes instead: an inotify descriptor watches the folder of each cached file, the file
// itself (for writes through another name of it) and every folder above (for being moved or
// removed), and raises a signal for each report, whose handler only takes note. A call whose
// copy was checked after the last report was taken uses it without asking the disk. The
// signal goes to the thread that set this up, so it has been handled before that thread
// returns from whatever call told it of another process's write. Calls from other threads,
// relative paths (they follow the working folder), files reached through a symbolic link and
// anything the kernel refuses are checked at every call, as on other systems.

#ifdef Q_OS_LINUX

std::atomic<bool> g_reported{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void takeNote(int)
{
    g_reported.store(true);
}

class ChangeWatch
{
public:
    struct Stamp {
        quint64 generation = 0;
        quint64 reports = 0;
    };

    static ChangeWatch &instance()
    {
        static ChangeWatch watch;
        return watch;
    }

    // Whether `doc` is known to match its file: it was checked against the disk after the last
    // report, by watches that still stand.
    bool unchanged(const Document *doc)
    {
        if (fd_ < 0 || !pthread_equal(pthread_self(), owner_))
            return false;
        if (g_reported.load())
            takeReports();
        return fd_ >= 0 && doc && doc->watched && doc->watchGeneration == generation_ &&
               doc->checkedAt == reports_;
    }

    Stamp stamp() const { return {generation_, reports_}; }

    // Watches the folder of the file at `native` and the folders above it. False when changes
    // to that file cannot be reported.
    bool watchFolderOf(const QByteArray &native)
    {
        if (!ready() || !native.startsWith('/'))
            return false;
        const qsizetype slash = native.lastIndexOf('/');
        const auto known = folders_.constFind(QByteArray::fromRawData(native.constData(), slash));
        if (known != folders_.constEnd())
            return *known;
        bool ok = true;
        for (qsizetype i = 1; ok && i < slash; ++i) {
            if (native[i] == '/' && native[i - 1] != '/')
                ok = addFolderWatch(native.left(i), IN_MOVE_SELF | IN_DELETE_SELF);
        }
        ok = ok &&
             addFolderWatch(slash == 0 ? QByteArray("/") : native.left(slash),
                            IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO |
                                IN_CREATE | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF);
        folders_.insert(native.left(slash), ok);
        return ok;
    }

    // Watches the file open as `fd`: exactly the file read, whatever names it has.
    bool watchFile(int fd)
    {
        char path[32];
        std::snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
        return fd_ >= 0 &&
               ::inotify_add_watch(fd_, path,
                                   IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MASK_ADD) >= 0;
    }

    void setEnabled(bool on)
    {
        enabled_ = on;
        failed_ = false;
        stop();
    }

    bool active() const { return fd_ >= 0; }

private:
    ChangeWatch() = default;

    static int signalNumber() { return SIGRTMIN + 3; }

    // Takes every report: any of them may concern any cached file, so each is checked once
    // more. A watch that is gone leaves files unwatched; all are set up anew as used.
    void takeReports()
    {
        g_reported.store(false); // first, so that a report arriving from here on raises it again
        bool watchesLost = false;
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t got = ::read(fd_, buffer, sizeof buffer);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0) {
                if (got == 0 || errno != EAGAIN)
                    watchesLost = true;
                break;
            }
            for (ssize_t at = 0; at < got;) {
                const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
                if ((event->mask & IN_Q_OVERFLOW) ||
                    ((event->mask & (IN_IGNORED | IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT)) &&
                     folderWatches_.contains(event->wd)))
                    watchesLost = true;
                at += ssize_t(sizeof(inotify_event) + event->len);
            }
        }
        ++reports_;
        if (watchesLost)
            stop();
    }

    bool ready()
    {
        if (fd_ >= 0)
            return pthread_equal(pthread_self(), owner_);
        if (!enabled_ || failed_ || (hasOwner_ && !pthread_equal(pthread_self(), owner_)))
            return false;
        failed_ = !start();
        return !failed_;
    }

    bool start()
    {
        static const bool forkHandled = ::pthread_atfork(nullptr, nullptr, forgetInChild) == 0;
        if (!forkHandled || !claimSignal(signalNumber()) || !claimSignal(SIGIO))
            return false;
        const int fd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (fd < 0)
            return false;
        const f_owner_ex thisThread{F_OWNER_TID, ::gettid()};
        const int flags = ::fcntl(fd, F_GETFL);
        if (flags < 0 || ::fcntl(fd, F_SETSIG, signalNumber()) != 0 ||
            ::fcntl(fd, F_SETOWN_EX, &thisThread) != 0 ||
            ::fcntl(fd, F_SETFL, flags | O_ASYNC) != 0) {
            ::close(fd);
            return false;
        }
        fd_ = fd;
        owner_ = pthread_self();
        hasOwner_ = true;
        ++generation_;
        return true;
    }

    // A forked child shares the descriptor with its parent, whose thread gets the signals.
    static void forgetInChild()
    {
        ChangeWatch &watch = instance();
        watch.owner_ = pthread_self();
        watch.stop();
    }

    void stop()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
        folders_.clear();
        folderWatches_.clear();
    }

    // Installs the handler unless the signal is someone else's. SIGIO comes instead of the
    // real-time signal when the queue of pending signals is full.
    static bool claimSignal(int number)
    {
        struct sigaction old = {};
        if (::sigaction(number, nullptr, &old) != 0)
            return false;
        if (!(old.sa_flags & SA_SIGINFO) && old.sa_handler == takeNote)
            return true;
        sigset_t blocked;
        if ((old.sa_flags & SA_SIGINFO) || old.sa_handler != SIG_DFL ||
            ::pthread_sigmask(SIG_BLOCK, nullptr, &blocked) != 0 || sigismember(&blocked, number))
            return false;
        struct sigaction act = {};
        act.sa_handler = takeNote;
        sigemptyset(&act.sa_mask);
        act.sa_flags = SA_RESTART;
        return ::sigaction(number, &act, nullptr) == 0;
    }

    bool addFolderWatch(const QByteArray &folder, uint32_t events)
    {
        // A symbolic link on the way could be pointed elsewhere without a report.
        const int wd = ::inotify_add_watch(fd_, folder.constData(),
                                           events | IN_ONLYDIR | IN_DONT_FOLLOW | IN_MASK_ADD);
        if (wd < 0)
            return false;
        folderWatches_.insert(wd);
        return true;
    }

    int fd_ = -1;
    bool enabled_ = true;
    bool failed_ = false;
    bool hasOwner_ = false;
    pthread_t owner_{};
    quint64 generation_ = 0;
    quint64 reports_ = 0;
    QHash<QByteArray, bool> folders_; // folder -> whether it is watched
    QSet<int> folderWatches_;
};

#else

class ChangeWatch
{
public:
    struct Stamp {
        quint64 generation = 0;
        quint64 reports = 0;
    };
    static ChangeWatch &instance()
    {
        static ChangeWatch watch;
        return watch;
    }
    bool unchanged(const Document *) { return false; }
    Stamp stamp() const { return {}; }
    bool watchFolderOf(const QByteArray &) { return false; }
    bool watchFile(int) { return false; }
    void setEnabled(bool) {}
    bool active() const { return false; }
};

#endif

// ---------------------------------------------------------------------------------------
// The cache of parsed files

constexpr std::size_t kCachedFiles = 8;

struct Cache {
    std::unordered_map<QString, std::unique_ptr<Document>> docs;
    quint64 clock = 0;

    // The path of the previous call, which the next call most likely repeats.
    QString lastPath;
    QByteArray lastNative;
    Document *lastDoc = nullptr;

    void use(const QString &path)
    {
        if (path == lastPath)
            return;
        lastPath = path;
        const auto found = docs.find(path);
        lastDoc = found == docs.end() ? nullptr : found->second.get();
        lastNative = lastDoc ? lastDoc->native : QFile::encodeName(path);
    }

    Document *store(const QString &path, std::unique_ptr<Document> doc)
    {
        erase(path);
        if (docs.size() >= kCachedFiles) {
            auto oldest = docs.begin();
            for (auto it = docs.begin(); it != docs.end(); ++it) {
                if (!it->second->pending &&
                    (oldest->second->pending || it->second->lastUse < oldest->second->lastUse))
                    oldest = it;
            }
            if (!oldest->second->pending)
                erase(oldest->first);
        }
        doc->lastUse = ++clock;
        doc->native = QFile::encodeName(path);
        Document *stored = docs.emplace(path, std::move(doc)).first->second.get();
        if (path == lastPath)
            lastDoc = stored;
        return stored;
    }

    void erase(const QString &path)
    {
        const auto found = docs.find(path);
        if (found == docs.end())
            return;
        if (found->second.get() == lastDoc)
            lastDoc = nullptr;
        docs.erase(found);
    }

    void clear()
    {
        docs.clear();
        lastPath.clear();
        lastNative.clear();
        lastDoc = nullptr;
    }
};

Cache &cache()
{
    static Cache instance;
    return instance;
}

enum class Presence { Present, Missing, Unusable };

// Looks at the file on disk and parses it again when it is not the one cached.
Document *checkOnDisk(Cache &c, const QString &path, Presence &presence)
{
    ChangeWatch &watch = ChangeWatch::instance();
    Document *doc = c.lastDoc;
    const char *native = c.lastNative.constData();

    // The watches come first: a change after this point is reported, one before it shows in
    // what is read below.
    bool watched = watch.watchFolderOf(c.lastNative);
    const ChangeWatch::Stamp stamp = watch.stamp();
    struct stat st = {};
    int failed = watched ? ::lstat(native, &st) : ::stat(native, &st);
    if (failed == 0 && S_ISLNK(st.st_mode)) {
        watched = false; // the file itself sits in a folder nobody watches
        failed = ::stat(native, &st);
    }
    if (failed != 0) {
        presence = (errno == ENOENT || errno == ENOTDIR) ? Presence::Missing : Presence::Unusable;
        c.erase(path);
        return nullptr;
    }
    presence = Presence::Unusable;
    if (!S_ISREG(st.st_mode)) {
        c.erase(path);
        return nullptr;
    }

    const bool same = doc && doc->id == FileId::of(st);
    if (same && (doc->watchGeneration == stamp.generation || !watched)) {
        watched = watched && doc->watched; // the file's own watch, if it has one, still stands
    } else {
        const int fd = ::open(native, O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            c.erase(path);
            return nullptr;
        }
        watched = watched && watch.watchFile(fd);
        QByteArray bytes;
        bool ok = ::fstat(fd, &st) == 0;
        const bool stillSame = ok && doc && doc->id == FileId::of(st);
        if (ok && !stillSame) {
            bytes.reserve(st.st_size);
            ok = readAll(fd, bytes);
        }
        ::close(fd);
        if (!ok) {
            c.erase(path);
            return nullptr;
        }
        if (!stillSame) {
            auto fresh = std::make_unique<Document>();
            load(*fresh, std::move(bytes));
            fresh->id = FileId::of(st);
            doc = c.store(path, std::move(fresh));
        }
    }
    doc->watchGeneration = stamp.generation;
    doc->watched = watched;
    doc->checkedAt = stamp.reports;
    doc->lastUse = ++c.clock;
    presence = Presence::Present;
    return doc;
}

// The parsed copy of the file as it is on disk now, or null when there is no readable file.
Document *openDocument(const QString &path, Presence &presence)
{
    Cache &c = cache();
    c.use(path);
    // A batch's writes are newer than anything on disk.
    if (c.lastDoc && c.lastDoc->pending) {
        presence = Presence::Present;
        return c.lastDoc;
    }
    if (ChangeWatch::instance().unchanged(c.lastDoc)) {
        presence = Presence::Present;
        c.lastDoc->lastUse = ++c.clock;
        return c.lastDoc;
    }
    return checkOnDisk(c, path, presence);
}

} // namespace

int getPrivateProfileString(const QString &section, const QString &key, const QString &defaultValue,
                            QString &result, int bufferSize, const QString &fileName)
{
    result.clear();
    if (bufferSize <= 0)
        return 0;
    const qsizetype room = bufferSize - 1;

    Presence presence;
    if (const Document *doc = openDocument(fileName, presence)) {
        QString changedSection;
        QString changedKey;
        const qsizetype found = doc->findSection(trimBlanks(ansiArgument(section, changedSection)));
        if (found != kNoSection) {
            const QStringView name = trimBlanks(ansiArgument(key, changedKey));
            QStringView stored;
            if (doc->findKey(found, name, keyHash(found, name), &stored) != kNoLine) {
                const QStringView value = stripQuotes(stored);
                if (doc->encoding == Encoding::Ansi)
                    result = value.first(std::min(value.size(), room)).toString();
                else
                    result = rt::fromAnsi(rt::toAnsi(value)).left(room);
                return int(result.size());
            }
        }
    }

    QString changed;
    QStringView fallback = ansiArgument(defaultValue, changed);
    while (!fallback.isEmpty() && fallback.back() == u' ')
        fallback.chop(1);
    result = fallback.first(std::min(fallback.size(), room)).toString();
    return int(result.size());
}

bool writePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName)
{
    QString changed;
    const QString sec = trimBlanks(ansiArgument(section, changed)).toString();
    const QString name = trimBlanks(ansiArgument(key, changed)).toString();
    const QString text = ansiArgument(value, changed).toString();

    Presence presence;
    Document *doc = openDocument(fileName, presence);
    if (!doc) {
        if (presence != Presence::Missing)
            return false;
        auto fresh = std::make_unique<Document>();
        const QByteArray bytes = rt::toAnsi(u'[' + sec + QStringLiteral("]\r\n") + name + u'=' +
                                            text + QStringLiteral("\r\n"));
        FileId id;
        if (g_batchDepth == 0 && !replaceFile(fileName, bytes, id))
            return false;
        load(*fresh, bytes);
        fresh->id = id;
        fresh->pending = g_batchDepth > 0;
        cache().store(fileName, std::move(fresh));
        return true;
    }

    const Edit edit = applyWrite(*doc, sec, name, text);
    if (edit == Edit::Unchanged)
        return true;
    if (g_batchDepth > 0) {
        // The disk gets every write of the batch at once, when it is committed.
        if (edit == Edit::NeedsReparse)
            load(*doc, serialize(*doc));
        doc->pending = true;
        return true;
    }
    QByteArray bytes = serialize(*doc);
    FileId id;
    if (!replaceFile(fileName, bytes, id)) {
        cache().erase(fileName); // the copy holds the edit the file did not get
        return false;
    }
    if (edit == Edit::NeedsReparse)
        load(*doc, std::move(bytes));
    doc->id = id;
    doc->watchGeneration = 0; // a new file, not watched yet: the next call looks at it
    return true;
}

WriteBatch::WriteBatch()
{
    ++g_batchDepth;
}

WriteBatch::~WriteBatch()
{
    if (--g_batchDepth > 0)
        return;
    // Not committed: the writes are dropped and the files read again from disk.
    Cache &c = cache();
    for (auto it = c.docs.begin(); it != c.docs.end();) {
        if (it->second->pending && it->second.get() == c.lastDoc)
            c.lastDoc = nullptr;
        it = it->second->pending ? c.docs.erase(it) : std::next(it);
    }
}

bool WriteBatch::commit()
{
    if (g_batchDepth > 1)
        return true; // the outermost batch writes
    bool ok = true;
    Cache &c = cache();
    for (auto &[path, doc] : c.docs) {
        if (!doc->pending)
            continue;
        FileId id;
        if (!replaceFile(path, serialize(*doc), id)) {
            ok = false;
            continue; // dropped with the other unwritten ones when the batch closes
        }
        doc->pending = false;
        doc->id = id;
        doc->watchGeneration = 0;
    }
    return ok;
}

namespace profilecache
{

void clear()
{
    cache().clear();
}

quint64 parseCount()
{
    return g_parseCount;
}

qsizetype parseForBenchmark(const QByteArray &fileBytes)
{
    Document doc;
    load(doc, fileBytes);
    return doc.keys.size();
}

void setChangeNotification(bool on)
{
    ChangeWatch::instance().setEnabled(on);
}

bool changeNotificationActive()
{
    return ChangeWatch::instance().active();
}

} // namespace profilecache
} // namespace store
