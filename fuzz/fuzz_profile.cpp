// The profile engine on arbitrary file bytes, then reads and writes of arbitrary names.
//
// Input: the file's bytes (none: no file), then operations, each after a 0x1E byte:
//   'w' section 0x1F key 0x1F value   write
//   'r' section 0x1F key 0x1F default read
//   's' section 0x1F key 0x1F default read into a buffer of (first byte of default & 7)
//   'x'                               forget the parsed copies
// Names and values are UTF-8. Afterwards every name used is read once from the parsed copy
// and once from a fresh parse of the file; the two must agree. A write of a plain value to a
// plain name must read back as written.

#include "FuzzSupport.h"
#include "store/ProfileEngine.h"

#include <QList>
#include <QRegularExpression>

namespace
{

struct Op {
    char kind = 0;
    QString section;
    QString key;
    QString value;
};

QList<Op> parseOps(const QByteArray &text)
{
    QList<Op> ops;
    for (const QByteArray &record : text.split('\x1e')) {
        if (record.isEmpty())
            continue;
        const QList<QByteArray> fields = record.mid(1).split('\x1f');
        Op op;
        op.kind = record[0];
        op.section = QString::fromUtf8(fields.value(0));
        op.key = QString::fromUtf8(fields.value(1));
        op.value = QString::fromUtf8(fields.value(2));
        ops.append(op);
    }
    return ops;
}

// Names and values whose reading back has no rule of its own to apply (trimming, quotes,
// comments, code page, length).
bool plain(const Op &op)
{
    static const QRegularExpression name(
        QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9_]{1,24}")));
    static const QRegularExpression value(QRegularExpression::anchoredPattern(
        QStringLiteral("([!#-&(-~]([ -~]{0,200}[!#-&(-~])?)?")));
    return name.match(op.section).hasMatch() && name.match(op.key).hasMatch() &&
           value.match(op.value).hasMatch();
}

QString readKey(const QString &path, const Op &op, int bufferSize = 255)
{
    QString result;
    const int n =
        store::getPrivateProfileString(op.section, op.key, op.value, result, bufferSize, path);
    FUZZ_CHECK(n == result.size(), "count %d, result %s", n, shown(result).constData());
    FUZZ_CHECK(result.size() <= std::max(bufferSize - 1, 0), "%lld characters for a buffer of %d",
               qlonglong(result.size()), bufferSize);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString path = scratchFolder() + QStringLiteral("/Data.ini");

    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype split = input.indexOf('\x1e');
    const QByteArray file = split < 0 ? input : input.left(split);
    const QList<Op> ops = split < 0 ? QList<Op>() : parseOps(input.mid(split + 1));
    if (ops.size() > 64)
        return -1;

    store::profilecache::clear();
    QFile::remove(path);
    if (!file.isEmpty())
        writeFile(path, file);

    for (const Op &op : ops) {
        switch (op.kind) {
        case 'w': {
            FUZZ_CHECK(store::writePrivateProfileString(op.section, op.key, op.value, path),
                       "write [%s] %s failed", shown(op.section).constData(),
                       shown(op.key).constData());
            if (plain(op)) {
                Op read = op;
                read.value = QStringLiteral("<default>");
                const QString back = readKey(path, read);
                FUZZ_CHECK(back == op.value, "[%s] %s: wrote %s, read %s",
                           shown(op.section).constData(), shown(op.key).constData(),
                           shown(op.value).constData(), shown(back).constData());
            }
            break;
        }
        case 's':
            readKey(path, op, op.value.isEmpty() ? 0 : op.value[0].unicode() & 7);
            break;
        case 'x':
            store::profilecache::clear();
            break;
        default:
            readKey(path, op);
            break;
        }
    }

    // What the edited copy answers is what a parse of the file it wrote answers.
    QList<QString> cached;
    for (const Op &op : ops)
        cached.append(readKey(path, op));
    store::profilecache::clear();
    for (qsizetype i = 0; i < ops.size(); ++i) {
        const QString fresh = readKey(path, ops[i]);
        FUZZ_CHECK(fresh == cached[i], "[%s] %s: cached %s, fresh parse %s",
                   shown(ops[i].section).constData(), shown(ops[i].key).constData(),
                   shown(cached[i]).constData(), shown(fresh).constData());
    }
    return 0;
}
