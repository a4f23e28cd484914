#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

namespace rt
{

// The pieces of the user's regional settings that the run-time conversions read.
struct RtLocale {
    enum class Order { MonthDayYear, DayMonthYear, YearMonthDay };

    Order dateOrder = Order::MonthDayYear;
    QString dateSeparator = "/";
    bool dayLeadingZero = false; // "07/29/2004" vs "7/29/2004"
    bool monthLeadingZero = false;
    QString timeSeparator = ":";
    bool twelveHour = true; // "9:00:00 AM" vs "09:00:00"
    bool hourLeadingZero = false;
    QString amText = "AM";
    QString pmText = "PM";
    QString decimalSeparator = ".";
    QString thousandsSeparator = ",";
    QString currencySymbol = "$";
    QStringList weekdayNames; // full names, Sunday first
    int firstDayOfWeek = 1;   // Sunday = 1 .. Saturday = 7
    QStringList monthNames;   // full names, January first
    QStringList monthShortNames;

    static RtLocale fromQLocale(const QLocale &locale); // C and POSIX read as en_US

    // The locale every conversion uses: the system's, unless a test pinned another.
    static const RtLocale &current();
    static void setForTest(const QLocale &locale);
    static void resetToSystem();
};

} // namespace rt
