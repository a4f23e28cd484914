// The copy of Data.ini kept before a change, with a 1 MB store and the folder of copies
// full: reading the store, comparing it with the newest copy, writing and renaming the new
// one and pruning the oldest. Prints the median and the slowest run.

#include "../StoreGenerator.h"
#include "backup/Backups.h"
#include "store/ini.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    BenchProgramFolder folder;
    writeBenchStore(files::dataIni(), 14000, 1000);
    const qint64 size = QFileInfo(files::dataIni()).size();

    auto measure = [](bool changed, int runs) {
        std::vector<double> ms;
        for (int i = 0; i < runs; ++i) {
            if (changed)
                WriteINI(files::dataIni(), QStringLiteral("count"), QStringLiteral("x"),
                         QString::number(i));
            QElapsedTimer timer;
            timer.start();
            backup::keepCopy();
            ms.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
        std::sort(ms.begin(), ms.end());
        return std::pair{ms[ms.size() / 2], ms.back()};
    };
    measure(true, 60); // fills the folder to where every copy prunes one
    const auto [copyMedian, copyWorst] = measure(true, 200);
    const auto [sameMedian, sameWorst] = measure(false, 200);
    std::printf("store of %.2f MB, %lld copies kept\n", double(size) / 1e6,
                static_cast<long long>(backup::copies().size()));
    std::printf("copy before a change: median %.3f ms, slowest %.3f ms (target < 5 ms)\n",
                copyMedian, copyWorst);
    std::printf("store unchanged since the last copy: median %.3f ms, slowest %.3f ms\n",
                sameMedian, sameWorst);
    return 0;
}
