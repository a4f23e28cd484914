#include "store/ProfileEngine.h"

#include "runtime/Ansi.h"

#include <QFile>
#include <QHash>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

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

// What the reader sees of a line: a NUL ends its text.
QStringView readable(QStringView line)
{
    const qsizetype nul = line.indexOf(QChar(0));
    return nul < 0 ? line : line.first(nul);
}

// Section and key names compare without regard to case.
QString fold(QStringView name)
{
    QString out(name.size(), Qt::Uninitialized);
    char16_t *dst = reinterpret_cast<char16_t *>(out.data());
    for (qsizetype i = 0; i < name.size(); ++i) {
        char16_t c = name[i].unicode();
        if (c < 0x80) {
            if (c >= u'a' && c <= u'z')
                c = char16_t(c - (u'a' - u'A'));
        } else {
            const char32_t upper = QChar::toUpper(char32_t(c));
            if (upper <= 0xFFFF)
                c = char16_t(upper);
        }
        dst[i] = c;
    }
    return out;
}

enum class Kind { Other, Header, Key };

struct Classified {
    Kind kind = Kind::Other;
    QStringView name; // the section or key name, blanks trimmed
};

Classified classify(QStringView line)
{
    const QStringView text = readable(line);
    qsizetype first = 0;
    while (first < text.size() && isBlank(text[first]))
        ++first;
    if (first == text.size())
        return {};
    if (text[first] == u'[') {
        const qsizetype close = text.lastIndexOf(u']');
        if (close > first)
            return {Kind::Header, trimBlanks(text.sliced(first + 1, close - first - 1))};
    } else if (text[first] == u';') {
        return {};
    }
    const qsizetype eq = text.indexOf(u'=', first);
    if (eq < 0)
        return {};
    return {Kind::Key, trimBlanks(text.sliced(first, eq - first))};
}

// The stored value of a key line: everything after the first '=', blanks trimmed.
QStringView storedValue(QStringView keyLine)
{
    const QStringView text = readable(keyLine);
    return trimBlanks(text.sliced(text.indexOf(u'=') + 1));
}

QStringView stripQuotes(QStringView value)
{
    if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
        value.back() == value.front())
        return value.sliced(1, value.size() - 2);
    return value;
}

// A string argument as the ANSI functions receive it: it ends at a NUL, and a character
// Windows-1252 cannot hold arrives as '?'.
QString ansiArgument(const QString &arg)
{
    const qsizetype nul = arg.indexOf(QChar(0));
    QString text = nul < 0 ? arg : arg.first(nul);
    for (const QChar c : std::as_const(text)) {
        if ((c.unicode() >= 0x80 && c.unicode() < 0xA0) || c.unicode() > 0xFF)
            return rt::fromAnsi(rt::toAnsi(text));
    }
    return text;
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
};
using LineId = quint32; // a line's place in Document::pool, which never changes

struct Section {
    LineId lastKey; // the last key line, or the header while there is none
};

struct KeyName {
    qsizetype section; // index into Document::sections
    QString name;      // folded
    bool operator==(const KeyName &o) const { return section == o.section && name == o.name; }
};
size_t qHash(const KeyName &k, size_t seed = 0)
{
    return qHashMulti(seed, k.section, k.name);
}

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
    QHash<QString, qsizetype> sectionIndex; // folded name -> index into sections
    QHash<KeyName, LineId> keys;            // -> first key line of that name in the section

    FileId id;
    quint64 lastUse = 0;

    QStringView content(LineId id) const
    {
        const Line &line = pool[id];
        return line.written ? QStringView(line.own) : QStringView(text).sliced(line.off, line.len);
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

constexpr qsizetype kNoSection = -1;

// Files a line into the indexes, as parsing line by line from the top does. `current` is the
// section the lines before belong to: none before the first header and under a repeated
// header, whose keys nobody reaches.
void indexLine(Document &doc, LineId line, qsizetype &current)
{
    const Classified c = classify(doc.content(line));
    if (c.kind == Kind::Header) {
        QString name = fold(c.name);
        if (doc.sectionIndex.contains(name)) {
            current = kNoSection;
        } else {
            current = qsizetype(doc.sections.size());
            doc.sectionIndex.insert(std::move(name), current);
            doc.sections.push_back(Section{line});
        }
    } else if (c.kind == Kind::Key && current != kNoSection) {
        KeyName key{current, fold(c.name)};
        if (!doc.keys.contains(key))
            doc.keys.insert(std::move(key), line);
        doc.sections[current].lastKey = line;
    }
}

void load(Document &doc, QByteArray bytes)
{
    doc.raw = std::move(bytes);
    doc.pool.clear();
    doc.order.clear();
    doc.sections.clear();
    doc.sectionIndex.clear();
    doc.keys.clear();
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
        out.append(rt::toAnsi(s.toString()));
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
    const QString foldedKey = fold(key);
    const auto found = doc.sectionIndex.constFind(fold(section));

    if (found == doc.sectionIndex.constEnd()) {
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

    KeyName name{*found, foldedKey};
    const auto existing = doc.keys.constFind(name);
    if (existing != doc.keys.constEnd()) {
        Line &line = doc.pool[*existing];
        const QStringView old = doc.content(*existing);
        if (storedValue(old) == value)
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
        return c.kind == Kind::Key && fold(c.name) == foldedKey ? Edit::Indexed
                                                                : Edit::NeedsReparse;
    }

    // New key directly after the last key line of the section.
    Section &sec = doc.sections[*found];
    if (doc.pool[sec.lastKey].term == Term::None)
        doc.pool[sec.lastKey].term = Term::CrLf;
    const LineId line = doc.insertAfter(sec.lastKey, writtenLine(key + u'=' + value));
    if (raw)
        return Edit::NeedsReparse;
    const Classified c = classify(doc.content(line));
    if (c.kind != Kind::Key || fold(c.name) != foldedKey)
        return Edit::NeedsReparse;
    doc.keys.insert(std::move(name), line);
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
// The cache of parsed files

constexpr std::size_t kCachedFiles = 8;

struct Cache {
    std::unordered_map<QString, std::unique_ptr<Document>> docs;
    quint64 clock = 0;

    void store(const QString &path, std::unique_ptr<Document> doc)
    {
        doc->lastUse = ++clock;
        docs.erase(path);
        if (docs.size() >= kCachedFiles) {
            auto oldest = docs.begin();
            for (auto it = docs.begin(); it != docs.end(); ++it) {
                if (it->second->lastUse < oldest->second->lastUse)
                    oldest = it;
            }
            docs.erase(oldest);
        }
        docs.emplace(path, std::move(doc));
    }
};

Cache &cache()
{
    static Cache instance;
    return instance;
}

enum class Presence { Present, Missing, Unusable };

// The parsed copy of the file as it is on disk now, or null when there is no readable file.
Document *openDocument(const QString &path, Presence &presence)
{
    Cache &c = cache();
    const auto cached = c.docs.find(path);
    const QByteArray native = QFile::encodeName(path);
    struct stat st = {};
    if (::stat(native.constData(), &st) != 0) {
        presence = (errno == ENOENT || errno == ENOTDIR) ? Presence::Missing : Presence::Unusable;
        if (cached != c.docs.end())
            c.docs.erase(cached);
        return nullptr;
    }
    if (cached != c.docs.end() && S_ISREG(st.st_mode) && cached->second->id == FileId::of(st)) {
        presence = Presence::Present;
        cached->second->lastUse = ++c.clock;
        return cached->second.get();
    }
    if (cached != c.docs.end())
        c.docs.erase(cached);

    presence = Presence::Unusable;
    if (!S_ISREG(st.st_mode))
        return nullptr;
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    QByteArray bytes;
    bytes.reserve(st.st_size);
    const bool ok = ::fstat(fd, &st) == 0 && readAll(fd, bytes);
    ::close(fd);
    if (!ok)
        return nullptr;

    auto doc = std::make_unique<Document>();
    load(*doc, std::move(bytes));
    doc->id = FileId::of(st);
    Document *result = doc.get();
    c.store(path, std::move(doc));
    presence = Presence::Present;
    return result;
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
        const auto sec = doc->sectionIndex.constFind(fold(trimBlanks(ansiArgument(section))));
        if (sec != doc->sectionIndex.constEnd()) {
            const auto line = doc->keys.constFind({*sec, fold(trimBlanks(ansiArgument(key)))});
            if (line != doc->keys.constEnd()) {
                const QStringView value = stripQuotes(storedValue(doc->content(*line)));
                if (doc->encoding == Encoding::Ansi)
                    result = value.first(std::min(value.size(), room)).toString();
                else
                    result = rt::fromAnsi(rt::toAnsi(value.toString())).left(room);
                return int(result.size());
            }
        }
    }

    result = ansiArgument(defaultValue);
    qsizetype end = result.size();
    while (end > 0 && result[end - 1] == u' ')
        --end;
    result.truncate(std::min(end, room));
    return int(result.size());
}

bool writePrivateProfileString(const QString &section, const QString &key, const QString &value,
                               const QString &fileName)
{
    const QString sec = trimBlanks(ansiArgument(section)).toString();
    const QString name = trimBlanks(ansiArgument(key)).toString();
    const QString text = ansiArgument(value);

    Presence presence;
    Document *doc = openDocument(fileName, presence);
    if (!doc) {
        if (presence != Presence::Missing)
            return false;
        auto fresh = std::make_unique<Document>();
        const QByteArray bytes = rt::toAnsi(u'[' + sec + QStringLiteral("]\r\n") + name + u'=' +
                                            text + QStringLiteral("\r\n"));
        FileId id;
        if (!replaceFile(fileName, bytes, id))
            return false;
        load(*fresh, bytes);
        fresh->id = id;
        cache().store(fileName, std::move(fresh));
        return true;
    }

    const Edit edit = applyWrite(*doc, sec, name, text);
    if (edit == Edit::Unchanged)
        return true;
    QByteArray bytes = serialize(*doc);
    FileId id;
    if (!replaceFile(fileName, bytes, id)) {
        cache().docs.erase(fileName); // the copy holds the edit the file did not get
        return false;
    }
    if (edit == Edit::NeedsReparse)
        load(*doc, std::move(bytes));
    doc->id = id;
    return true;
}

namespace profilecache
{

void clear()
{
    cache().docs.clear();
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

} // namespace profilecache
} // namespace store
