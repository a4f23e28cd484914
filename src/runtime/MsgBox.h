#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace rt
{

// The original message-box constants.
enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbYesNo = 4,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
};
enum MsgBoxResult : int { vbOK = 1, vbCancel = 2, vbYes = 6, vbNo = 7 };

QString appTitle(); // "ORVA Calendar"

// A modal message box; an empty title means the program's title.
int MsgBox(const QString &prompt, int style = vbOKOnly, const QString &title = {});

// A modal input box; Cancel gives an empty text.
QString InputBox(const QString &prompt, const QString &title = {}, const QString &defaultText = {});

// What tests put in place of the real boxes: each box is noted, and the answer comes from
// the queue (vbOK, or an empty text, when it is empty).
struct MsgBoxCall {
    QString prompt;
    int style = 0;
    QString title; // as shown, so the program's title where none was given
    bool input = false;
};

// One recorder at a time.
class MsgBoxRecorder
{
public:
    MsgBoxRecorder();  // installs itself
    ~MsgBoxRecorder(); // restores the real boxes
    Q_DISABLE_COPY_MOVE(MsgBoxRecorder)

    QList<MsgBoxCall> calls;
    QList<int> nextAnswers;
    QStringList nextInputs;
    std::function<void(const MsgBoxCall &)> onShow; // runs as the box "shows"
};

} // namespace rt
