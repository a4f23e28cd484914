#pragma once

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <deque>
#include <vector>

// A profile file parsed into lines, with indexes of its sections and keys as the reader finds
// them. Lines keep their bytes: writing the document back changes only the lines edited.
namespace store
{

enum class Encoding { Ansi, Utf16Le };
enum class Term : quint8 { None, Cr, Lf, CrLf };

using LineId = quint32; // a line's place in Document::pool, which never changes

struct Line {
    qsizetype off = 0; // the characters of a line as loaded: a slice of Document::text
    qsizetype len = 0;
    qsizetype rawOff = 0; // and its bytes: a slice of Document::raw
    qsizetype rawLen = 0;
    QString own; // the content of a line this engine wrote
    bool written = false;
    Term term = Term::None;
    quint32 section = 0; // of a line in Document::keys: the section it is filed under
};

struct Section {
    // The name as the header spells it. Header lines are never rewritten and the pool never
    // moves a line, so the characters stay where they are.
    QStringView name;
    LineId lastKey; // the last key line, or the header while there is none
};

inline constexpr qsizetype kNoSection = -1;

// Open addressing from a name's hash to an item (a section or a line). A slot keeps only the
// hash; whoever looks a name up compares the item's name itself.
class NameIndex
{
public:
    static constexpr quint32 kNone = ~quint32(0);

    void reset(qsizetype expected);
    qsizetype size() const { return size_; }
    void insert(quint32 hash, quint32 item);

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

private:
    struct Slot {
        quint32 hash;
        quint32 item;
    };
    void place(Slot slot);

    std::vector<Slot> slots_;
    qsizetype size_ = 0;
};

inline constexpr LineId kNoLine = NameIndex::kNone;

struct Document {
    Encoding encoding = Encoding::Ansi;    // how it is written back
    Encoding rawEncoding = Encoding::Ansi; // how `raw` is encoded
    QByteArray raw;                        // the bytes as loaded
    QByteArray oddTail;                    // the odd last byte of a UTF-16 file
    QString text;                          // the characters as loaded, mark left out
    std::deque<Line> pool;                 // every line held, by id
    std::vector<LineId> order;             // the lines of the file, in order
    std::vector<Section> sections;         // first occurrences only, in file order
    NameIndex sectionIndex;                // -> index into sections
    NameIndex keys;                        // -> first key line of each name in a section
    quint64 version = 0; // new with every load and edit, in every document of the process

    QStringView content(LineId id) const
    {
        const Line &line = pool[id];
        return line.written ? QStringView(line.own) : QStringView(text).sliced(line.off, line.len);
    }

    qsizetype findSection(QStringView name) const;
    // The first key line named `name` in `section`; its value goes to `value`.
    LineId findKey(qsizetype section, QStringView name, quint32 hash,
                   QStringView *value = nullptr) const;
    void addKey(qsizetype section, quint32 hash, LineId line);

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

private:
    LineId add(Line line)
    {
        pool.push_back(std::move(line));
        return LineId(pool.size() - 1);
    }
};

// Parses file bytes: ANSI in the store's code page, or UTF-16LE after an FF FE mark.
void load(Document &doc, QByteArray bytes);
// Gives the document a version no other state of any document had.
void markChanged(Document &doc);
// The bytes of the document as it stands, in its encoding.
QByteArray serialize(const Document &doc);
// Files a line into the indexes, as parsing line by line from the top does. `current` is the
// section the lines before belong to: none before the first header and under a repeated
// header, whose keys nobody reaches.
void indexLine(Document &doc, LineId line, qsizetype &current);

quint64 parseCount(); // how many times file contents have been parsed so far

} // namespace store
