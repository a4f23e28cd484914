// Shows each event window in each of its modes over a sample store and saves a picture of
// it. Usage: show_dialogs FOLDER
#include "dialogs/Dialog.h"
#include "dialogs/frmCust.h"
#include "dialogs/frmDaily.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmRemove.h"
#include "reminders/frmMissed.h"
#include "runtime/ProgramFolder.h"
#include "store/Files.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>

namespace
{

const char kStore[] =
    "[Categories]\r\nc=4\r\n1=More\r\n1c=8421504\r\n2=Work\r\n2c=16744448\r\n3=Personal\r\n"
    "3c=4259584\r\n4=Health\r\n4c=65535\r\n"
    "[count]\r\nc=9\r\n"
    "[1]\r\nDate=7/29/2004\r\nTime=9:00 AM\r\nMemo=Dentist appointment\r\nCat=Health\r\n"
    "[2]\r\nDate=7/29/2004\r\nTime=12:00 PM\r\nMemo=Lunch with Ann\r\nCat=Personal\r\n"
    "[3]\r\nDate=7/29/2004\r\nTime=00:00\r\nMemo=&**C:\\Reports\\weekly.doc\r\nCat=Work\r\n"
    "[4]\r\nDate=7/30/2004\r\nTime=1:00 PM\r\nMemo=Lunch meeting\r\nCat=Work\r\n"
    "[5]\r\nDate=8/2/2004\r\nTime=1:00 PM\r\nMemo=Lunch at the club\r\nCat=Work\r\n"
    "[6]\r\nDate=8/3/2004\r\nTime=1:00 PM\r\nMemo=Team lunch\r\nCat=Work\r\n"
    "[7]\r\nDate=8/4/2004\r\nTime=1:00 PM\r\nMemo=Lunch with the new colleagues from the "
    "Boston office\r\nCat=Work\r\n"
    "[8]\r\nDate=8/5/2004\r\nTime=1:00 PM\r\nMemo=Lunch and learn\r\nCat=Work\r\n"
    "[9]\r\nDate=8/6/2004\r\nTime=1:00 PM\r\nMemo=Lunch, Mom's birthday\r\nCat=Personal\r\n"
    "[rcount]\r\nc=3\r\n"
    "[r1]\r\nType=Daily\r\nTime=7:00 AM\r\nMemo=Morning run around the park and back home "
    "again\r\nCat=Health\r\n"
    "[r2]\r\nType=Weekly\r\nDay=Thursday\r\nTime=6:00 PM\r\nMemo=Choir practice\r\nCat=Personal\r\n"
    "[r3]\r\nType=Daily\r\nTime=12:30 PM\r\nMemo=Lunch break\r\nCat=Personal\r\n";

template <typename T> T *child(QWidget *w, const char *name)
{
    return w->findChild<T *>(QLatin1String(name));
}

void save(QWidget *w, const QString &folder, const QString &name)
{
    w->show();
    QApplication::processEvents();
    w->grab().save(QDir(folder).filePath(name + QStringLiteral(".png")));
    w->hide();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    QTemporaryDir programFolder;
    rt::setProgramFolderForTest(programFolder.path());
    QFile data(files::dataIni());
    data.open(QIODevice::WriteOnly);
    data.write(kStore);
    data.close();

    const store::Model model = store::loadModel();
    const rt::Date date = rt::DateSerial(2004, 7, 29);
    {
        Dialog d(model, date);
        child<QLineEdit>(&d, "txtmemo")->setText(QStringLiteral("Dentist"));
        save(&d, folder, QStringLiteral("add-oneoff"));
    }
    for (const char *kind : {"Optdaily", "optWeekly", "optMonthly", "optYearly"}) {
        Dialog d(model, date);
        child<QRadioButton>(&d, "Option2")->setChecked(true);
        child<QRadioButton>(&d, kind)->setChecked(true);
        child<QRadioButton>(&d, "Option4")->setChecked(true);
        child<QLineEdit>(&d, "txtaction")->setText(QStringLiteral("C:\\Tools\\backup.exe"));
        save(&d, folder, QStringLiteral("add-") + QLatin1String(kind));
    }
    {
        Dialog d(model, date);
        d.modi(3);
        save(&d, folder, QStringLiteral("modify-oneoff"));
    }
    {
        Dialog d(model, date);
        d.RModi(2);
        save(&d, folder, QStringLiteral("modify-recurring"));
    }
    {
        frmRemove r(date);
        save(&r, folder, QStringLiteral("remove"));
        r.show();
        auto *list = child<QComboBox>(&r, "Combo1");
        list->showPopup();
        QApplication::processEvents();
        list->view()->window()->grab().save(
            QDir(folder).filePath(QStringLiteral("remove-list.png")));
        r.hide();
    }
    {
        frmFind f(model);
        child<QLineEdit>(&f, "txtkeyword")->setText(QStringLiteral("lunch"));
        f.cmdFind_Click();
        save(&f, folder, QStringLiteral("find-page1"));
        f.cmdnext_Click();
        save(&f, folder, QStringLiteral("find-page2"));
        child<QLineEdit>(&f, "txtkeyword")->setText(QStringLiteral("dinner"));
        f.cmdFind_Click();
        save(&f, folder, QStringLiteral("find-none"));
    }
    {
        frmDaily d;
        save(&d, folder, QStringLiteral("daily"));
    }
    {
        frmCust c;
        c.selectByName(QStringLiteral("Health"));
        save(&c, folder, QStringLiteral("customize"));
    }
    {
        // Two weeks away, up to 9:00 AM on 7 August: cut to the last seven days.
        frmMissed m;
        m.add(reminders::findMissed(model, reminders::minuteOf(rt::DateSerial(2004, 7, 24)),
                                    reminders::minuteOf(rt::DateSerial(2004, 8, 7) + 0.375)));
        save(&m, folder, QStringLiteral("missed"));
    }
    return 0;
}
