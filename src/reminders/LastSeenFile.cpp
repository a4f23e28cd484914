#include "reminders/LastSeenFile.h"

#include "store/Files.h"

#include <QFile>
#include <QRegularExpression>
#include <filesystem>

namespace reminders
{

// One line, "2026-03-03 09:00", in local time as the reminder check reads the clock.
std::optional<rt::Date> readLastSeen()
{
    QFile file(files::inProgramFolder(kLastSeenFile));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    static const QRegularExpression line(
        QStringLiteral("^(\\d{4})-(\\d\\d)-(\\d\\d) (\\d\\d):(\\d\\d)\\r?\\n?$"));
    const QRegularExpressionMatch match = line.match(QString::fromLatin1(file.read(64)));
    if (!match.hasMatch())
        return std::nullopt;
    const auto part = [&match](int n) { return match.captured(n).toInt(); };
    if (part(1) < 100 || !rt::isValidDate(part(1), part(2), part(3)) || part(4) > 23 ||
        part(5) > 59)
        return std::nullopt;
    return rt::DateSerial(part(1), part(2), part(3)) + rt::TimeSerial(part(4), part(5), 0);
}

// Written once a minute from the reminder timer, so it does not wait for the disk: one
// rename replaces the whole file, and after a power cut an older minute at worst lists a
// reminder that was shown.
void writeLastSeen(rt::Date minute)
{
    const QString path = files::inProgramFolder(kLastSeenFile);
    const QString temp = path + QStringLiteral(".new");
    const QByteArray line =
        QString::asprintf("%04d-%02d-%02d %02d:%02d\n", rt::Year(minute), rt::Month(minute),
                          rt::Day(minute), rt::Hour(minute), rt::Minute(minute))
            .toLatin1();
    QFile file(temp);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    const bool written = file.write(line) == line.size() && file.flush();
    file.close();
    std::error_code error;
    if (written)
        std::filesystem::rename(temp.toStdU16String(), path.toStdU16String(), error);
    if (!written || error)
        QFile::remove(temp);
}

} // namespace reminders
