#include "backup/Backups.h"

#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSet>
#include <cmath>

namespace backup
{
namespace
{

constexpr int kKeepNewest = 50;
constexpr int kKeepDays = 60;
const QString kTempName = QStringLiteral(".copy.part");

// The reason it failed, or nothing.
QString writeAndRename(const QString &path, const QByteArray &bytes)
{
    // No flush to disk: that alone takes longer than the change the copy stands before.
    const QString temp = QDir(QFileInfo(path).path()).filePath(kTempName);
    QFile file(temp);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return file.errorString();
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    const QString reason = file.errorString();
    file.close();
    if (written && QFile::rename(temp, path))
        return {};
    QFile::remove(temp);
    return written ? QStringLiteral("the copy could not be named") : reason;
}

Writer &writer()
{
    static Writer write = writeAndRename;
    return write;
}

QDateTime now()
{
    const rt::Date value = rt::Clock::Now();
    const double days = std::floor(value);
    const auto seconds = qint64(std::lround((value - days) * 86400.0));
    return QDateTime(QDate(1899, 12, 30).addDays(qint64(days)), QTime(0, 0), Qt::UTC)
        .addSecs(seconds);
}

QByteArray readAll(const QString &path, bool &ok)
{
    QFile file(path);
    ok = file.open(QIODevice::ReadOnly);
    return ok ? file.readAll() : QByteArray();
}

bool fail(QString *error, const QString &reason)
{
    if (error)
        *error = reason;
    return false;
}

} // namespace

QString folder()
{
    return files::inProgramFolder("Backups");
}

QString fileName(const QDateTime &taken, int sequence)
{
    QString name = QStringLiteral("Data ") + taken.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    if (sequence > 1)
        name += QLatin1Char(' ') + QString::number(sequence);
    return name + QStringLiteral(".ini");
}

bool parseFileName(const QString &name, Copy &copy)
{
    // "Data yyyy-MM-dd HH-mm-ss[ n].ini", read by hand: the folder is listed before every
    // change, and a general date parser for each of its files costs more than the copy.
    static const QString pattern = QStringLiteral("Data 0000-00-00 00-00-00");
    if (name.size() < pattern.size() + 4 || !name.startsWith(QLatin1String("Data ")) ||
        !name.endsWith(QLatin1String(".ini")))
        return false;
    int fields[6] = {};
    int field = 0;
    for (qsizetype i = 5; i < pattern.size(); ++i) {
        const QChar c = name[i];
        if (pattern[i] == u'0') {
            if (!c.isDigit())
                return false;
            fields[field] = fields[field] * 10 + c.digitValue();
        } else if (c != pattern[i]) {
            return false;
        } else {
            ++field;
        }
    }
    const QStringView rest = QStringView(name).mid(pattern.size()).chopped(4);
    int sequence = 1;
    if (!rest.isEmpty()) {
        bool ok = false;
        sequence = rest.startsWith(u' ') && rest.size() <= 7 ? rest.mid(1).toInt(&ok) : 0;
        if (!ok || sequence < 1 || !rest.mid(1).front().isDigit())
            return false;
    }
    const QDate date(fields[0], fields[1], fields[2]);
    const QTime time(fields[3], fields[4], fields[5]);
    if (!date.isValid() || !time.isValid())
        return false;
    // The stamp is the wall clock as it was; kept as such, with no time zone to convert by.
    copy.taken = QDateTime(date, time, Qt::UTC);
    copy.sequence = sequence;
    return true;
}

QList<Copy> copies()
{
    QList<Copy> found;
    const QDir dir(folder());
    for (const QString &name : dir.entryList(QDir::Files)) {
        Copy copy;
        if (parseFileName(name, copy)) {
            copy.path = dir.filePath(name);
            found.append(copy);
        }
    }
    std::sort(found.begin(), found.end(), [](const Copy &a, const Copy &b) {
        return a.taken != b.taken ? a.taken > b.taken : a.sequence > b.sequence;
    });
    return found;
}

QList<int> prunable(const QList<Copy> &newestFirst, const QDate &today)
{
    QList<int> doomed;
    QSet<QDate> daysKept;
    for (int i = 0; i < newestFirst.size(); ++i) {
        const QDate day = newestFirst[i].taken.date();
        const bool newestOfDay = !daysKept.contains(day);
        daysKept.insert(day);
        if (i < kKeepNewest || (newestOfDay && day.daysTo(today) < kKeepDays))
            continue;
        doomed.append(i);
    }
    return doomed;
}

bool keepCopy(QString *error)
{
    bool ok = false;
    const QByteArray current = readAll(files::dataIni(), ok);
    if (!ok)
        return true; // nothing to keep
    QList<Copy> existing = copies();
    if (!existing.isEmpty()) {
        const QByteArray newest = readAll(existing.first().path, ok);
        if (ok && newest == current)
            return true;
    }
    const QDir dir(folder());
    if (!dir.mkpath(QStringLiteral(".")))
        return fail(error, QStringLiteral("the folder could not be created"));

    const QDateTime taken = now();
    int sequence = 1;
    while (QFile::exists(dir.filePath(fileName(taken, sequence))))
        ++sequence;
    const QString path = dir.filePath(fileName(taken, sequence));
    const QString reason = writer()(path, current);
    if (!reason.isEmpty())
        return fail(error, reason);
    existing.prepend({path, taken, sequence});
    for (int i : prunable(existing, taken.date()))
        QFile::remove(existing[i].path);
    return true;
}

void beforeChange()
{
    static bool told = false;
    QString error;
    if (keepCopy(&error) || told)
        return;
    told = true;
    rt::MsgBox(QStringLiteral("The calendar could not keep a backup copy of Data.ini in the "
                              "folder \"%1\": %2. The disk may be full, or the folder may not "
                              "be writable.\n\nYour change is saved all the same, without a "
                              "backup. This message is not shown again until the calendar is "
                              "started again.")
                   .arg(QDir::toNativeSeparators(folder()), error),
               rt::vbExclamation);
}

bool restore(const QString &copyPath, QString *error)
{
    bool ok = false;
    const QByteArray bytes = readAll(copyPath, ok);
    if (!ok)
        return fail(error, QStringLiteral("the backup could not be read"));
    if (!keepCopy(error))
        return false;
    QSaveFile file(files::dataIni());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return fail(error, file.errorString());
    store::profilecache::clear();
    return true;
}

void setWriteForTest(Writer write)
{
    writer() = write ? std::move(write) : writeAndRename;
}

} // namespace backup
