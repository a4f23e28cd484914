#pragma once

#include <QApplication>

namespace rt
{

// The program's application object. It is where an untrapped run-time error from any
// handler ends up: the error box is shown and the program ends.
class Application : public QApplication
{
public:
    Application(int &argc, char **argv);
    bool notify(QObject *receiver, QEvent *event) override;

private:
    bool reportingError_ = false;
};

} // namespace rt
