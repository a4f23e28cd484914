#include "DataTable.h"
#include "Fixtures.h"
#include "mainwindow/ActionLauncher.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestActionLauncher : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;

private slots:
    void programs_data()
    {
        columns<QByteArray, bool, bool>("content", "executable", "expected");
        QTest::newRow("binary") << QByteArray("\177ELF\2\1\1") << true << true;
        QTest::newRow("script") << QByteArray("#!/bin/sh\ntrue\n") << true << true;
        QTest::newRow("document with the execute bit") << QByteArray("minutes\n") << true << false;
        QTest::newRow("empty file with the execute bit") << QByteArray() << true << false;
        QTest::newRow("non-executable script") << QByteArray("#!/bin/sh\ntrue\n") << false << false;
    }
    void programs()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, executable);
        const QString path = dir.filePath(QTest::currentDataTag());
        writeBytes(path, content);
        if (executable)
            QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
        QTEST(isProgram(path), "expected");
    }

    void folderIsNoProgram() { QVERIFY(!isProgram(dir.path())); }
};

QTEST_MAIN(TestActionLauncher)
#include "tst_actionlauncher.moc"
