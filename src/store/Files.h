#pragma once

#include <QString>

// The fixed files of the program folder. A path is the program folder, "/" and the name,
// joined as plain text and formed anew at every use.
namespace files
{

inline constexpr char kDataIni[] = "Data.ini";
inline constexpr char kPassIni[] = "Pass.ini";
inline constexpr char kAlarmWav[] = "alarm.wav";
inline constexpr char kHelpHlp[] = "help.hlp";
inline constexpr char kLogoX[] = "logo.x";
inline constexpr char kMdataIni[] = "mdata.ini";
inline constexpr char kTempUrl[] = "temp.url";
inline constexpr char kLastPrintTxt[] = "Last_Print.txt";
inline constexpr char kHomepageHtml[] = "homepage.html";

QString inProgramFolder(const char *name);

// Every read of the store names it: built once for each program folder.
QString dataIni();
inline QString passIni()
{
    return inProgramFolder(kPassIni);
}
inline QString alarmWav()
{
    return inProgramFolder(kAlarmWav);
}
inline QString helpHlp()
{
    return inProgramFolder(kHelpHlp);
}
inline QString logoX()
{
    return inProgramFolder(kLogoX);
}
inline QString tempUrl()
{
    return inProgramFolder(kTempUrl);
}
inline QString lastPrintTxt()
{
    return inProgramFolder(kLastPrintTxt);
}

} // namespace files
