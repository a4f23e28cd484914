#include "recovery/CrashRecord.h"

#include "mainwindow/ReminderCheck.h"
#include "store/Files.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace recovery
{

QString recordPath()
{
    return files::inProgramFolder("LastError.json");
}

bool writeRecord(const CrashRecord &record)
{
    const QJsonObject event{
        {QStringLiteral("type"), record.event.type},   {QStringLiteral("day"), record.event.day},
        {QStringLiteral("month"), record.event.month}, {QStringLiteral("time"), record.event.time},
        {QStringLiteral("memo"), record.event.memo},   {QStringLiteral("cat"), record.event.cat}};
    QJsonObject root{{QStringLiteral("error"), record.error},
                     {QStringLiteral("description"), record.description}};
    if (record.number > 0) {
        root.insert(QStringLiteral("recurring"), record.number);
        root.insert(QStringLiteral("event"), event);
    }
    QSaveFile file(recordPath());
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(root).toJson()) >= 0 &&
           file.commit();
}

std::optional<CrashRecord> readRecord()
{
    QFile file(recordPath());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject root = QJsonDocument::fromJson(file.read(64 * 1024)).object();
    const int error = root.value(QStringLiteral("error")).toInt();
    if (error <= 0)
        return std::nullopt;
    CrashRecord record{error,
                       root.value(QStringLiteral("description")).toString(),
                       std::max(0, root.value(QStringLiteral("recurring")).toInt()),
                       {}};
    const QJsonObject event = root.value(QStringLiteral("event")).toObject();
    record.event = {event.value(QStringLiteral("type")).toString(),
                    event.value(QStringLiteral("day")).toString(),
                    event.value(QStringLiteral("month")).toString(),
                    event.value(QStringLiteral("time")).toString(),
                    event.value(QStringLiteral("memo")).toString(),
                    event.value(QStringLiteral("cat")).toString()};
    return record;
}

void discardRecord()
{
    QFile::remove(recordPath());
}

CrashRecord recordOf(const rt::RuntimeError &error, int evaluating, const store::Model &model)
{
    CrashRecord record{error.number(), error.description(), 0, {}};
    if (evaluating > 0 && evaluating <= model.recurringCount()) {
        record.number = evaluating;
        record.event = model.recurring[evaluating];
    }
    return record;
}

void recordErrors(const ReminderCheck &reminders, const store::Model &model)
{
    rt::setFatalErrorRecorder([&reminders, &model](const rt::RuntimeError &error) {
        writeRecord(recordOf(error, reminders.evaluating(), model));
    });
}

} // namespace recovery
