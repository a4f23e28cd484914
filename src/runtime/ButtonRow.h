#pragma once

class QHBoxLayout;
class QPushButton;
class QWidget;

namespace rt
{

// The OK and Cancel buttons a window ends with, right-aligned, named "OKButton" and
// "CancelButton", OK the default.
struct ButtonRow {
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
    QHBoxLayout *layout = nullptr;
};

ButtonRow okCancelRow(QWidget *parent);

} // namespace rt
