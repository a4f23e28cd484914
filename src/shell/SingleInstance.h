#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

// One running copy per user and program folder. The first start listens on a local socket
// named from both; a later start finds it, asks that copy to show itself and stands down.
// Two program folders (two installs) get two names and so run side by side.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(QObject *parent = nullptr);
    ~SingleInstance() override;

    // The socket's name: short, fixed for one user and folder, unlike for any other pair.
    static QString serverName(const QString &user, const QString &folder);

    // True when this is the first copy, which then listens for later ones. False once a
    // running copy took the request to show itself: this copy should end.
    bool claim();

signals:
    // A later start asked this copy to show its main window.
    void showRequested();

private:
    QString socketPath() const;
    bool handOver(const QString &path) const;

    QLocalServer *server_ = nullptr;
};
