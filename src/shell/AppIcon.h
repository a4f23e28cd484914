#pragma once

#include <QIcon>

// The program's icon: a small calendar sheet, drawn rather than shipped.
QIcon appIcon();
