#pragma once

#include <QObject>

class Form1;

// The File menu's "Export to iCalendar..." and "Import from iCalendar...".
class IcalCommands : public QObject
{
    Q_OBJECT

public:
    explicit IcalCommands(Form1 *form);

    void exportCalendar();
    void importCalendar();

private:
    Form1 *form_;
};
