#include "store/DataStore.h"

#include "runtime/Ansi.h"
#include "runtime/CodePage.h"
#include "runtime/DateText.h"
#include "runtime/Numbers.h"
#include "store/Files.h"
#include "store/ini.h"

#include <QHash>
#include <algorithm>
#include <optional>

namespace store
{
namespace
{

QString read(const QString &section, const QString &key)
{
    return ReadINI(files::dataIni(), section, key, QString());
}

void write(const QString &section, const QString &key, const QString &value)
{
    WriteINI(files::dataIni(), section, key, value);
}

// The keys of a recurring event after its count, in the order every writer uses.
void writeRecurringKeys(int n, const RecurringEvent &event)
{
    const QString section = recurringSection(n);
    write(section, kTypeKey, event.type);
    if (event.type == kWeekly || event.type == kMonthly || event.type == kYearly)
        write(section, kDayKey, event.day);
    if (event.type == kYearly)
        write(section, kMonthKey, event.month);
    write(section, kTimeKey, event.time);
    write(section, kMemoKey, event.memo);
    write(section, kCatKey, event.cat);
}

} // namespace

QString eventSection(int n)
{
    return QString::number(n);
}
QString recurringSection(int n)
{
    return QLatin1Char('r') + QString::number(n);
}
QString colourKey(int n)
{
    return QString::number(n) + QLatin1Char('c');
}

bool isAction(const QString &memo)
{
    return memo.startsWith(kActionMarker);
}
QString actionPath(const QString &memo)
{
    return memo.mid(kActionMarker.size());
}
QString actionMemo(const QString &path)
{
    return kActionMarker + path;
}

int readCount(const QString &section)
{
    std::int32_t count = 0;
    rt::tryCLng(read(section, kCountKey), count);
    return std::clamp(count, 0, kMaxItems);
}

QStringList readCategoryColours()
{
    const int count = readCount(kCategoriesSection);
    QStringList colours(count + 1);
    for (int i = 1; i <= count; ++i) {
        std::int32_t colour = 0;
        if (rt::tryCLng(read(kCategoriesSection, colourKey(i)), colour))
            colours[i] = QString::number(colour);
    }
    return colours;
}

RecurringEvent readRecurringEvent(int n)
{
    const QString section = recurringSection(n);
    RecurringEvent e;
    e.day = read(section, kDayKey);
    e.month = read(section, kMonthKey);
    e.memo = read(section, kMemoKey);
    e.time = read(section, kTimeKey);
    e.type = read(section, kTypeKey);
    e.cat = read(section, kCatKey);
    return e;
}

QList<RecurringEvent> readRecurringEvents()
{
    const int count = readCount(kRecurringCountSection);
    QList<RecurringEvent> events(count + 1);
    for (int n = 1; n <= count; ++n)
        events[n] = readRecurringEvent(n);
    return events;
}

EventRecord readEventRecord(int n)
{
    const QString section = eventSection(n);
    return {read(section, kDateKey), read(section, kTimeKey), read(section, kMemoKey),
            read(section, kCatKey)};
}

QList<Event> readEvents()
{
    const int count = readCount(kCountSection);
    QList<Event> events(count + 1);
    // Events share their dates and times many times over: each text is converted once.
    QHash<QString, std::optional<rt::Date>> converted;
    const auto convert = [&converted](const QString &text, rt::Date &field) {
        auto found = converted.constFind(text);
        if (found == converted.cend())
            found = converted.insert(text, rt::parseDate(text));
        if (*found)
            field = **found;
    };
    for (int n = 1; n <= count; ++n) {
        const QString section = eventSection(n);
        Event &e = events[n];
        convert(read(section, kDateKey), e.date);
        convert(read(section, kTimeKey), e.time);
        e.memo = read(section, kMemoKey);
        e.cat = read(section, kCatKey);
    }
    return events;
}

QStringList readCategoryNames()
{
    const int count = readCount(kCategoriesSection);
    QStringList names(count + 1);
    for (int i = 2; i <= count; ++i)
        names[i] = read(kCategoriesSection, QString::number(i));
    if (count >= 1)
        names[1] = kMoreCategory;
    return names;
}

QStringList readStoredCategoryNames()
{
    const int count = readCount(kCategoriesSection);
    QStringList names(count + 1);
    for (int i = 1; i <= count; ++i)
        names[i] = read(kCategoriesSection, QString::number(i));
    return names;
}

std::optional<rt::WinColor> colourValue(const QString &text)
{
    // The loader keeps plain decimal numbers, read at once; anything else as CLng reads it.
    bool plain = false;
    std::int32_t colour = text.toInt(&plain);
    if (plain || rt::tryCLng(text, colour))
        return rt::WinColor(colour);
    return std::nullopt;
}

CategoryColours::CategoryColours(const Model &model)
{
    for (qsizetype i = 1; i < model.categoryNames.size(); ++i) {
        if (const auto colour = colourValue(model.categoryColours.value(i)))
            byName_.insert(model.categoryNames[i], *colour);
    }
}

Model loadModel()
{
    Model model;
    model.categoryColours = readCategoryColours();
    model.recurring = readRecurringEvents();
    model.events = readEvents();
    model.categoryNames = readCategoryNames();
    return model;
}

void writeNewEvent(int n, const EventRecord &event)
{
    write(kCountSection, kCountKey, QString::number(n));
    const QString section = eventSection(n);
    write(section, kDateKey, event.date);
    write(section, kTimeKey, event.time);
    write(section, kMemoKey, event.memo);
    write(section, kCatKey, event.cat);
}

void writeNewRecurring(int n, const RecurringEvent &event)
{
    write(kRecurringCountSection, kCountKey, QString::number(n));
    writeRecurringKeys(n, event);
}

void writeModifiedEvent(int n, int count, const EventRecord &event)
{
    const QString section = eventSection(n);
    write(section, kDateKey, event.date);
    write(section, kTimeKey, event.time);
    // The memo lands one past the last event; the next new event overwrites it.
    write(eventSection(count + 1), kMemoKey, event.memo);
    write(section, kCatKey, event.cat);
}

void writeModifiedRecurring(int n, const RecurringEvent &event)
{
    // The modified event's number becomes the recurring count, as it always has.
    write(kRecurringCountSection, kCountKey, QString::number(n));
    writeRecurringKeys(n, event);
}

void removeEvent(const QList<EventRecord> &events, int k)
{
    const int count = int(events.size()) - 1;
    if (count <= 0)
        return;
    write(kCountSection, kCountKey, QString::number(count - 1));
    for (int i = k; i <= count - 1; ++i) {
        const EventRecord &next = events[i + 1];
        const QString section = eventSection(i);
        write(section, kDateKey, next.date);
        write(section, kTimeKey, next.time);
        write(section, kCatKey, next.cat);
        write(section, kMemoKey, next.memo);
    }
}

void removeRecurring(const QList<RecurringEvent> &recurring, int k)
{
    const int count = int(recurring.size()) - 1;
    if (count <= 0)
        return;
    write(kRecurringCountSection, kCountKey, QString::number(count - 1));
    for (int i = k; i <= count - 1; ++i) {
        const RecurringEvent &next = recurring[i + 1];
        const QString section = recurringSection(i);
        write(section, kTypeKey, next.type);
        write(section, kDayKey, next.day);
        write(section, kMonthKey, next.month);
        write(section, kTimeKey, next.time);
        write(section, kCatKey, next.cat);
        write(section, kMemoKey, next.memo);
    }
}

void writeNewCategory(int count, const QString &name, const QString &colour)
{
    write(kCategoriesSection, kCountKey, QString::number(count + 1));
    write(kCategoriesSection, QString::number(count + 1), name);
    write(kCategoriesSection, colourKey(count + 1), colour);
}

void writeCategoryColours(const QList<std::int32_t> &colours)
{
    const int count = readCount(kCategoriesSection);
    for (int i = 1; i <= count && i < colours.size(); ++i)
        write(kCategoriesSection, colourKey(i), QString::number(colours[i]));
}

QString readPasswordCount()
{
    return ReadINI(files::dataIni(), kPasswordCountSection, kCountKey, QStringLiteral("0"));
}

// A character's code is its byte in the code page; a double-byte character's two bytes make
// one signed 16-bit code, as the run-time's Asc gives it.
QString readPassword()
{
    const QString countText = readPasswordCount();
    if (countText == QLatin1String("0"))
        return {};
    std::int32_t count = 0;
    rt::tryCLng(countText, count);
    const bool doubleByte = rt::isDoubleByteCodePage(rt::ansiCodePage());
    QByteArray codes;
    for (int k = 1; k <= std::min(count, kMaxItems); ++k) {
        std::int32_t code = 0;
        // A key that is no character code adds nothing.
        if (!rt::tryCLng(read(kPasswordSection, QString::number(k)), code))
            continue;
        if (code >= 0 && code <= 255) {
            codes.append(char(code));
        } else if (doubleByte && code >= -32768 && code <= 65535) {
            codes.append(char((code >> 8) & 0xFF));
            codes.append(char(code & 0xFF));
        }
    }
    return rt::fromAnsi(codes);
}

void writePassword(const QString &password)
{
    const bool doubleByte = rt::isDoubleByteCodePage(rt::ansiCodePage());
    QList<int> codes;
    for (qsizetype i = 0; i < password.size();) {
        const qsizetype size = password[i].isHighSurrogate() && i + 1 < password.size() ? 2 : 1;
        const QByteArray bytes = rt::toAnsi(QStringView(password).sliced(i, size));
        i += size;
        if (doubleByte && bytes.size() == 2) {
            codes << int(qint16((quint8(bytes[0]) << 8) | quint8(bytes[1])));
            continue;
        }
        for (const char byte : bytes)
            codes << int(quint8(byte));
    }
    write(kPasswordCountSection, kCountKey, QString::number(codes.size()));
    for (qsizetype k = 0; k < codes.size(); ++k)
        write(kPasswordSection, QString::number(k + 1), QString::number(codes[k]));
}

void writePassIniCount()
{
    WriteINI(files::passIni(), kCountSection, kCountKey, QStringLiteral("0"));
}

} // namespace store
