// The loader's way of reading a store of 10,000 one-off and 1,000 recurring events: every key
// through ReadINI. Compared with one plain parse of the same file.
#include "../StoreGenerator.h"
#include "store/DataStore.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace
{

template <typename F> double bestMs(int runs, F &&f)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        f();
        times.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const BenchProgramFolder folder;

    const double parse = bestMs(11, [] {
        QFile file(files::dataIni());
        file.open(QIODevice::ReadOnly);
        store::profilecache::parseForBenchmark(file.readAll());
    });
    int count = 0;
    const double load = bestMs(11, [&count] {
        store::profilecache::clear();
        count = store::loadModel().eventCount();
    });
    const double warm = bestMs(11, [] { store::loadModel(); });
    std::printf("store of %d one-off and 1000 recurring events\n", count);
    std::printf("one plain parse        %8.2f ms\n", parse);
    std::printf("load, cache cold       %8.2f ms  (%.1f parses; target < 5 and < 20 ms)\n", load,
                load / parse);
    std::printf("load, cache warm       %8.2f ms\n", warm);
    return 0;
}
