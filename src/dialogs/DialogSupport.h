#pragma once

#include "runtime/DateTime.h"

#include <QString>
#include <QStringList>

class QComboBox;
class QDateEdit;
class QWidget;

// Pieces the event windows share.
namespace dialogs
{

// The last entry of every category list; choosing it adds a category.
inline const QString kNewCategory = QStringLiteral("New..");

// A date picker with a calendar pop-up that shows the year in full.
QDateEdit *newDatePicker(QWidget *parent, const char *name);
rt::Date pickerDate(const QDateEdit *picker);
void setPickerDate(QDateEdit *picker, rt::Date date);

// Fills a category list the way both windows do: the names go into the auxiliary list,
// are copied from it in order, the first is selected and "New.." comes last.
void fillCategoryLists(QComboBox *cmbcat, QComboBox *cmbcat1, const QStringList &names);

// Asks for a new category and writes it as category count + 1 with colour "0". Gives its
// number, or 0 when the answer was blank or a known name in any case. A store without
// categories first gets category 1, "More", which no event is filed under, in a colour of
// its own so that days of several categories stay readable.
int addCategory(const QStringList &knownNames, int count);

} // namespace dialogs
