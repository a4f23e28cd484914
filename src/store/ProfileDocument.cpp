#include "store/ProfileDocument.h"

#include "runtime/Ansi.h"
#include "store/ProfileText.h"

namespace store
{

using namespace profiletext;

namespace
{

quint64 g_parseCount = 0;

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

// Where the line that starts at `i` ends; then past its line end, noting which it is.
template <typename Unit> qsizetype lineEnd(const Unit *p, qsizetype n, qsizetype i)
{
    while (i < n && p[i] != Unit('\r') && p[i] != Unit('\n'))
        ++i;
    return i;
}

template <typename Unit> qsizetype skipTerm(const Unit *p, qsizetype n, qsizetype i, Term &term)
{
    if (i >= n)
        return i;
    if (p[i] == Unit('\n')) {
        term = Term::Lf;
        return i + 1;
    }
    if (i + 1 < n && p[i + 1] == Unit('\n')) {
        term = Term::CrLf;
        return i + 2;
    }
    term = Term::Cr;
    return i + 1;
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

} // namespace

void NameIndex::reset(qsizetype expected)
{
    std::size_t capacity = 16;
    while (capacity < std::size_t(expected) * 2)
        capacity *= 2;
    slots_.assign(capacity, Slot{0, kNone});
    size_ = 0;
}

void NameIndex::insert(quint32 hash, quint32 item)
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

void NameIndex::place(Slot slot)
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = slot.hash & mask;
    while (slots_[i].item != kNone)
        i = (i + 1) & mask;
    slots_[i] = slot;
    ++size_;
}

qsizetype Document::findSection(QStringView name) const
{
    const quint32 found = sectionIndex.find(
        sectionHash(name), [&](quint32 section) { return sameName(sections[section].name, name); });
    return found == NameIndex::kNone ? kNoSection : qsizetype(found);
}

LineId Document::findKey(qsizetype section, QStringView name, quint32 hash,
                         QStringView *value) const
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

void Document::addKey(qsizetype section, quint32 hash, LineId line)
{
    pool[line].section = quint32(section);
    keys.insert(hash, line);
}

void indexLine(Document &doc, LineId line, qsizetype &current)
{
    const Classified c = classify(doc.content(line));
    if (c.kind == Kind::Header) {
        if (doc.findSection(c.name) != kNoSection) {
            current = kNoSection;
        } else {
            current = qsizetype(doc.sections.size());
            doc.sections.push_back(Section{c.name, line});
            doc.sectionIndex.insert(sectionHash(c.name), quint32(current));
        }
    } else if (c.kind == Kind::Key && current != kNoSection) {
        const quint32 hash = keyHash(current, c.name);
        if (doc.findKey(current, c.name, hash) == kNoLine)
            doc.addKey(current, hash, line);
        doc.sections[current].lastKey = line;
    }
}

void markChanged(Document &doc)
{
    static quint64 versions = 0;
    doc.version = ++versions;
}

void load(Document &doc, QByteArray bytes)
{
    markChanged(doc);
    doc.raw = std::move(bytes);
    doc.pool.clear();
    doc.order.clear();
    doc.sections.clear();
    doc.oddTail.clear();
    doc.text.clear();

    const char *b = doc.raw.constData();
    const qsizetype size = doc.raw.size();
    const bool utf16 = size >= 2 && quint8(b[0]) == 0xFF && quint8(b[1]) == 0xFE;
    doc.encoding = doc.rawEncoding = utf16 ? Encoding::Utf16Le : Encoding::Ansi;
    doc.order.reserve(std::size_t(size / 24));
    doc.sectionIndex.reset(size / 64);
    doc.keys.reset(size / 24);
    qsizetype current = kNoSection;

    if (utf16) {
        const qsizetype units = (size - 2) / 2;
        doc.text = QString(units, Qt::Uninitialized);
        char16_t *dst = reinterpret_cast<char16_t *>(doc.text.data());
        for (qsizetype i = 0; i < units; ++i)
            dst[i] = char16_t(quint8(b[2 + 2 * i]) | (quint8(b[3 + 2 * i]) << 8));
        if ((size - 2) % 2)
            doc.oddTail = doc.raw.right(1);
        const char16_t *p = dst;
        for (qsizetype i = 0; i < units;) {
            Line line;
            line.off = i;
            i = lineEnd(p, units, i);
            line.len = i - line.off;
            line.rawOff = 2 + 2 * line.off;
            line.rawLen = 2 * line.len;
            i = skipTerm(p, units, i, line.term);
            indexLine(doc, doc.append(std::move(line)), current);
        }
    } else {
        // Line ends are found in the bytes: no byte of a double-byte character is a CR or LF.
        doc.text.reserve(size);
        for (qsizetype i = 0; i < size;) {
            Line line;
            line.rawOff = i;
            i = lineEnd(b, size, i);
            line.rawLen = i - line.rawOff;
            line.off = doc.text.size();
            rt::appendFromAnsi(doc.text, b + line.rawOff, line.rawLen);
            line.len = doc.text.size() - line.off;
            i = skipTerm(b, size, i, line.term);
            doc.append(std::move(line));
        }
        // The text is complete now: names in the indexes point into it.
        for (std::size_t k = 0; k < doc.order.size(); ++k)
            indexLine(doc, doc.order[k], current);
    }
    ++g_parseCount;
}

QByteArray serialize(const Document &doc)
{
    const bool sameEncoding = doc.encoding == doc.rawEncoding;
    QByteArray out;
    out.reserve(doc.raw.size() * (sameEncoding ? 1 : 2) + 1024);
    if (doc.encoding == Encoding::Utf16Le)
        out.append("\xFF\xFE", 2);
    for (const LineId id : doc.order) {
        const Line &line = doc.pool[id];
        if (line.written || !sameEncoding)
            appendEncoded(out, doc.encoding, doc.content(id));
        else
            out.append(doc.raw.constData() + line.rawOff, line.rawLen);
        appendEncoded(out, doc.encoding, termText(line.term));
    }
    if (sameEncoding)
        out.append(doc.oddTail);
    return out;
}

quint64 parseCount()
{
    return g_parseCount;
}

} // namespace store
