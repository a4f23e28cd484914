#include "dialogs/DialogSupport.h"

#include "backup/Backups.h"
#include "runtime/MsgBox.h"
#include "store/DataStore.h"
#include "store/SaveFailure.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLocale>

namespace dialogs
{

QDateEdit *newDatePicker(QWidget *parent, const char *name)
{
    auto *picker = new QDateEdit(parent);
    picker->setObjectName(QLatin1String(name));
    picker->setCalendarPopup(true);
    QString format = QLocale().dateFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1String("yyyy")))
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    picker->setDisplayFormat(format);
    return picker;
}

rt::Date pickerDate(const QDateEdit *picker)
{
    const QDate d = picker->date();
    return rt::DateSerial(d.year(), d.month(), d.day());
}

void setPickerDate(QDateEdit *picker, rt::Date date)
{
    picker->setDate(QDate(rt::Year(date), rt::Month(date), rt::Day(date)));
}

void fillCategoryLists(QComboBox *cmbcat, QComboBox *cmbcat1, const QStringList &names)
{
    cmbcat1->addItems(names);
    for (int i = 0; i < cmbcat1->count(); ++i)
        cmbcat->addItem(cmbcat1->itemText(i));
    cmbcat->setCurrentIndex(0);
    cmbcat->addItem(kNewCategory);
}

int addCategory(const QStringList &knownNames, int count)
{
    // Blanks around a name do not survive the store, so they do not count here either.
    const QString name = rt::InputBox(QStringLiteral("Enter the new Category")).trimmed();
    if (name.isEmpty())
        return 0;
    for (const QString &known : knownNames) {
        if (known.toUpper() == name.toUpper()) {
            rt::MsgBox(QStringLiteral("Category already exists!"), rt::vbCritical);
            return 0;
        }
    }
    backup::beforeChange();
    if (count == 0)
        store::writeNewCategory(count++, store::kMoreCategory, store::kMoreColour);
    store::writeNewCategory(count, name);
    store::afterChange();
    return count + 1;
}

} // namespace dialogs
