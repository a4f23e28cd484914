#include "shell/SingleInstance.h"

#include <QTemporaryDir>
#include <QTest>

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void serverName_data();
    void serverName();
};

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

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
