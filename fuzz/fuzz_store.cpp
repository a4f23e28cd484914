// The store loader on arbitrary Data.ini bytes. Loading twice, from a fresh parse and from the
// parsed copy, must give the same model.

#include "FuzzSupport.h"
#include "runtime/Locale.h"
#include "runtime/ProgramFolder.h"
#include "store/DataStore.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"

namespace
{

bool sameModel(const store::Model &a, const store::Model &b)
{
    if (a.categoryColours != b.categoryColours || a.categoryNames != b.categoryNames ||
        a.events.size() != b.events.size() || a.recurring.size() != b.recurring.size())
        return false;
    for (qsizetype i = 0; i < a.events.size(); ++i) {
        const store::Event &x = a.events[i];
        const store::Event &y = b.events[i];
        if (x.date != y.date || x.time != y.time || x.memo != y.memo || x.cat != y.cat)
            return false;
    }
    for (qsizetype i = 0; i < a.recurring.size(); ++i) {
        const store::RecurringEvent &x = a.recurring[i];
        const store::RecurringEvent &y = b.recurring[i];
        if (x.type != y.type || x.day != y.day || x.month != y.month || x.time != y.time ||
            x.memo != y.memo || x.cat != y.cat)
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    rt::setProgramFolderForTest(scratchFolder());
    rt::RtLocale::setForTest(QLocale(QStringLiteral("en_US")));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    store::profilecache::clear();
    writeFile(files::dataIni(), QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    // Large counts only repeat the same reads; they would take most of the time.
    for (const QString &section :
         {store::kCountSection, store::kRecurringCountSection, store::kCategoriesSection}) {
        if (store::readCount(section) > 2000)
            return -1;
    }

    const store::Model model = store::loadModel();
    FUZZ_CHECK(
        model.eventCount() <= store::kMaxItems && model.recurringCount() <= store::kMaxItems &&
            model.categoryCount() <= store::kMaxItems,
        "counts %d %d %d", model.eventCount(), model.recurringCount(), model.categoryCount());
    FUZZ_CHECK(model.categoryColours.size() == model.categoryNames.size(),
               "%lld colours, %lld names", qlonglong(model.categoryColours.size()),
               qlonglong(model.categoryNames.size()));
    FUZZ_CHECK(model.categoryCount() < 1 || model.categoryNames[1] == store::kMoreCategory,
               "category 1 is %s", shown(model.categoryNames[1]).constData());
    FUZZ_CHECK(sameModel(model, store::loadModel()), "a second load differs");
    return 0;
}
