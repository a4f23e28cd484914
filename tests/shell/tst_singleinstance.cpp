#include "runtime/ProgramFolder.h"
#include "shell/SingleInstance.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { rt::setProgramFolderForTest({}); }
    void serverName_data();
    void serverName();
    void secondClaimHandsOver();
    void staleSocketIsTakenOver();

private:
    QTemporaryDir runtime_;
    QTemporaryDir folder_;
};

void tst_SingleInstance::init()
{
    qputenv("XDG_RUNTIME_DIR", runtime_.path().toLocal8Bit());
    rt::setProgramFolderForTest(folder_.path());
}

void tst_SingleInstance::serverName_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("same");
    QTest::newRow("same pair") << QStringLiteral("1000") << QStringLiteral("/opt/a") << true;
    QTest::newRow("one path, spelt longer")
        << QStringLiteral("1000") << QStringLiteral("/opt/./a") << true;
    QTest::newRow("other user") << QStringLiteral("1001") << QStringLiteral("/opt/a") << false;
    QTest::newRow("other folder") << QStringLiteral("1000") << QStringLiteral("/opt/b") << false;
}

void tst_SingleInstance::serverName()
{
    QFETCH(QString, user);
    QFETCH(QString, folder);
    QFETCH(bool, same);
    // Real folders, so that the spelling of a path does not matter.
    QTemporaryDir root;
    QVERIFY(QDir(root.path()).mkpath(QStringLiteral("opt/a")));
    QVERIFY(QDir(root.path()).mkpath(QStringLiteral("opt/b")));
    const QString name = SingleInstance::serverName(user, root.path() + folder);
    const QString reference =
        SingleInstance::serverName(QStringLiteral("1000"), root.path() + QStringLiteral("/opt/a"));
    QCOMPARE(name == reference, same);
    QVERIFY(name.size() < 64);
    QVERIFY(!name.contains(QLatin1Char('/')));
}

void tst_SingleInstance::secondClaimHandsOver()
{
    SingleInstance first;
    QVERIFY(first.claim());
    QSignalSpy shown(&first, &SingleInstance::showRequested);
    SingleInstance second;
    QVERIFY(!second.claim());
    QVERIFY(shown.wait(5000));
    // Another program folder is another calendar.
    QTemporaryDir other;
    rt::setProgramFolderForTest(other.path());
    SingleInstance beside;
    QVERIFY(beside.claim());
}

void tst_SingleInstance::staleSocketIsTakenOver()
{
    // What a killed copy leaves: a socket file that nobody listens on.
    const QString path = runtime_.path() + QLatin1Char('/') +
                         SingleInstance::serverName(QString::number(::getuid()), folder_.path());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    QCOMPARE(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ::close(fd);
    QVERIFY(QFileInfo::exists(path));

    SingleInstance next;
    QVERIFY(next.claim());
    SingleInstance after;
    QVERIFY(!after.claim());
}

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
