#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QString>

// A menu item named as the program names its controls.
inline QAction *addMenuItem(QMenu *menu, const QString &name, const QString &caption,
                            const QKeySequence &shortcut = {})
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    return action;
}

// A text shown as it is, its '&' no mnemonic.
inline QString menuText(const QString &caption)
{
    return QString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}
