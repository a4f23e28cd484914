#include "store/ProfileEdit.h"

#include "runtime/Ansi.h"
#include "store/ProfileText.h"

namespace store
{

using namespace profiletext;

namespace
{

Line writtenLine(QString content)
{
    Line line;
    line.own = std::move(content);
    line.written = true;
    line.term = Term::CrLf;
    return line;
}

// The text as the file will hold it: through the code page when that can hold it.
QString asStored(QStringView text, bool &lossless)
{
    bool held = true;
    const QString back = rt::fromAnsi(rt::toAnsi(text, &held));
    lossless = lossless && held;
    return held ? back : text.toString();
}

} // namespace

Edit applyWrite(Document &doc, QStringView sectionArg, QStringView keyArg, QStringView valueArg)
{
    markChanged(doc);
    bool lossless = true;
    QString section = trimBlanks(untilNul(sectionArg)).toString();
    QString key = trimBlanks(untilNul(keyArg)).toString();
    QString value = untilNul(valueArg).toString();
    bool upgraded = false;
    if (doc.encoding == Encoding::Ansi) {
        section = asStored(section, lossless);
        key = asStored(key, lossless);
        value = asStored(value, lossless);
        if (!lossless) {
            doc.encoding = Encoding::Utf16Le;
            upgraded = true;
        }
    }
    const bool reparse =
        upgraded || hasLineBreak(section) || hasLineBreak(key) || hasLineBreak(value);
    const qsizetype found = doc.findSection(section);

    if (found == kNoSection) {
        // New section at the end, after a line end for a last line that lacks one.
        if (!doc.order.empty() && doc.pool[doc.order.back()].term == Term::None)
            doc.pool[doc.order.back()].term = Term::CrLf;
        const LineId header = doc.append(writtenLine(u'[' + section + u']'));
        const LineId keyLine = doc.append(writtenLine(key + u'=' + value));
        if (reparse)
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
        if (!upgraded && splitKeyLine(old).value == value)
            return Edit::Unchanged;
        // The line keeps the key as spelled in the file.
        QString replacement = classify(old).name.toString() + u'=' + value;
        if (!upgraded && replacement == old && line.term == Term::CrLf)
            return Edit::Unchanged;
        line.own = std::move(replacement);
        line.written = true;
        line.term = Term::CrLf;
        if (reparse)
            return Edit::NeedsReparse;
        const Classified c = classify(line.own);
        return c.kind == Kind::Key && sameName(c.name, key) ? Edit::Indexed : Edit::NeedsReparse;
    }

    // New key directly after the last key line of the section.
    Section &sec = doc.sections[found];
    if (doc.pool[sec.lastKey].term == Term::None)
        doc.pool[sec.lastKey].term = Term::CrLf;
    const LineId line = doc.insertAfter(sec.lastKey, writtenLine(key + u'=' + value));
    if (reparse)
        return Edit::NeedsReparse;
    const Classified c = classify(doc.content(line));
    if (c.kind != Kind::Key || !sameName(c.name, key))
        return Edit::NeedsReparse;
    doc.addKey(found, hash, line);
    sec.lastKey = line;
    return Edit::Indexed;
}

} // namespace store
