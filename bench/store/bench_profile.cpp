// Reading every key of a large store through ReadINI against one plain parse of the file.
// Prints its figures; the best of several runs counts.

#include "store/ProfileEngine.h"
#include "store/ini.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

namespace
{

using Key = std::pair<QString, QString>;

// About 1 MB laid out like the event store: one-off events, recurring events, categories.
QByteArray makeStore(std::vector<Key> &keys)
{
    QByteArray out;
    auto add = [&](const QByteArray &section, const QByteArray &key, const QByteArray &value) {
        keys.emplace_back(QString::fromLatin1(section), QString::fromLatin1(key));
        out += key + '=' + value + "\r\n";
    };
    const int events = 9000;
    const int recurring = 1500;
    out += "[count]\r\n";
    add("count", "c", QByteArray::number(events));
    add("count", "rcount", QByteArray::number(recurring));
    out += "[Categories]\r\n";
    add("Categories", "c", "12");
    for (int c = 1; c <= 12; ++c) {
        add("Categories", QByteArray::number(c), "Category " + QByteArray::number(c));
        add("Categories", QByteArray::number(c) + 'c', QByteArray::number(c * 40503));
    }
    for (int e = 1; e <= events; ++e) {
        const QByteArray s = QByteArray::number(e);
        out += "[" + s + "]\r\n";
        add(s, "Date", QByteArray::number(38197 + e % 700));
        add(s, "Time", "09:30");
        add(s, "Memo", "Dentist appointment number " + s + " with a longer memo text");
        add(s, "Cat", QByteArray::number(1 + e % 12));
    }
    for (int r = 1; r <= recurring; ++r) {
        const QByteArray s = "r" + QByteArray::number(r);
        out += "[" + s + "]\r\n";
        add(s, "Type", QByteArray::number(r % 4));
        add(s, "Day", QByteArray::number(1 + r % 28));
        add(s, "Time", "00:00");
        add(s, "Memo", "&**/home/user/Documents/report " + QByteArray::number(r) + ".odt");
        add(s, "Cat", QByteArray::number(1 + r % 12));
    }
    return out;
}

double bestMs(int runs, const std::function<void()> &work)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Data.ini"));
    std::vector<Key> keys;
    const QByteArray store = makeStore(keys);
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(store) != store.size())
            return 1;
    }

    qsizetype parsedKeys = 0;
    const double plain = bestMs(5, [&] {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        parsedKeys = store::profilecache::parseForBenchmark(f.readAll());
    });

    qsizetype mismatches = 0;
    auto readAll = [&] {
        for (const Key &k : keys)
            mismatches += ReadINI(path, k.first, k.second, QStringLiteral("?")) == "?";
    };
    const double cold = bestMs(5, [&] {
        store::profilecache::clear();
        readAll();
    });
    const double warm = bestMs(5, readAll);
    const double write = bestMs(5, [&] {
        static int n = 0;
        WriteINI(path, QStringLiteral("count"), QStringLiteral("c"), QString::number(++n));
    });

    std::printf("store: %lld bytes, %lld keys (%lld found by the parse)\n",
                static_cast<long long>(store.size()), static_cast<long long>(keys.size()),
                static_cast<long long>(parsedKeys));
    std::printf("one plain parse of the file:            %8.2f ms\n", plain);
    std::printf("every key through ReadINI, cold cache:  %8.2f ms (%.2f parses)\n", cold,
                cold / plain);
    std::printf("every key through ReadINI, warm cache:  %8.2f ms (%.2f parses)\n", warm,
                warm / plain);
    std::printf("one WriteINI (atomic rewrite):          %8.2f ms\n", write);
    if (mismatches) {
        std::printf("%lld keys read back as missing\n", static_cast<long long>(mismatches));
        return 1;
    }
    return 0;
}
