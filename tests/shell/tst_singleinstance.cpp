#include "shell/SingleInstance.h"

#include <QTemporaryDir>
#include <QTest>

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    // One name per user and program folder, however the folder's path is spelt.
    void serverName_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("same");
        QTest::newRow("one path, spelt longer") << "1000"
                                                << "/opt/./a" << true;
        QTest::newRow("other user") << "1001"
                                    << "/opt/a" << false;
        QTest::newRow("other folder") << "1000"
                                      << "/opt/b" << false;
    }
    void serverName()
    {
        QFETCH(QString, user);
        QFETCH(QString, folder);
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("opt/a") && QDir(root.path()).mkpath("opt/b"));
        const QString name = SingleInstance::serverName(user, root.path() + folder);
        QTEST(name == SingleInstance::serverName("1000", root.path() + "/opt/a"), "same");
        QVERIFY(name.size() < 64 && !name.contains('/'));
    }
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
