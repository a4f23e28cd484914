#include "backup/Backups.h"

#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
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
    return QDateTime(QDate(1899, 12, 30).addDays(qint64(days)), QTime(0, 0)).addSecs(seconds);
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

void prune()
{
    const QList<Copy> all = copies();
    for (int i : prunable(all, now().date()))
        QFile::remove(all[i].path);
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
    static const QRegularExpression pattern(
        QStringLiteral("^Data (\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d)(?: (\\d{1,6}))?\\.ini$"));
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch())
        return false;
    const QDateTime taken =
        QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    if (!taken.isValid())
        return false;
    copy.taken = taken;
    copy.sequence = match.captured(2).isEmpty() ? 1 : match.captured(2).toInt();
    return copy.sequence >= 1;
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
    const QList<Copy> existing = copies();
    if (!existing.isEmpty()) {
        const QByteArray newest = readAll(existing.first().path, ok);
        if (ok && newest == current)
            return true;
    }
    if (!QDir().mkpath(folder()))
        return fail(error, QStringLiteral("the folder could not be created"));

    const QDateTime taken = now();
    int sequence = 1;
    while (QFile::exists(QDir(folder()).filePath(fileName(taken, sequence))))
        ++sequence;
    const QString reason = writer()(QDir(folder()).filePath(fileName(taken, sequence)), current);
    if (!reason.isEmpty())
        return fail(error, reason);
    prune();
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
