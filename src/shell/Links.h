#pragma once

#include <QString>
#include <QUrl>
#include <functional>

// The maker's web links: the homepage behind the logo and the twelve departments of the
// online shop.
namespace links
{

// The maker's pages ship with the program, in its folder, so that no link leads to a dead
// page: the homepage, which also lists the shop's departments.
QString homepage();

// The shop department page of a link id, "1" to "12"; empty for any other id.
QString shopAddress(const QString &linkId);

// Writes "temp.url" in the program folder as an internet shortcut to the department and
// opens it. An id outside the table still writes the shortcut, with an empty address.
void shopLink(const QString &linkId);

// Opens the homepage directly, without a shortcut file.
void openHomepage();

// What tests put in place of the desktop: every address that would be opened.
void setOpenForTest(std::function<void(const QUrl &)> open); // empty restores the desktop

} // namespace links
