// SPDX-License-Identifier: MIT
#include "rootdirectory.h"
#include "support/approot.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using tessera::RootDirectory;

class TestRootDirectory : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;

private slots:
    void cleanup() { QDir::setCurrent("/"); }

    void missing_root_is_made_and_entered() {
        QString const path = m_directory.filePath("a/b");
        RootDirectory root;
        QString error;
        QVERIFY2(root.take(path, error), qPrintable(error));
        QCOMPARE(root.path(), path);
        QCOMPARE(tessera::applicationRoot(), path);
        QCOMPARE(QDir::currentPath(), QDir(path).canonicalPath());
    }

    void root_in_use_is_refused_and_free_again_afterwards() {
        QString const path = m_directory.filePath("used");
        QString error;
        {
            RootDirectory first;
            QVERIFY(first.take(path, error));
            RootDirectory second;
            QVERIFY(!second.take(path, error));
            QVERIFY2(error.contains("in use by another instance") && error.contains(QString::number(getpid())),
                     qPrintable(error));
        }
        RootDirectory third;
        QVERIFY2(third.take(path, error), qPrintable(error));
    }

    void root_of_a_killed_instance_is_taken_over() {
        QString const path = m_directory.filePath("killed");
        pid_t const child = ::fork();
        if (child == 0) {
            QString ignored;
            RootDirectory root;
            root.take(path, ignored);
            ::raise(SIGKILL);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QVERIFY(QFile::exists(path + "/.tessera.lock"));
        RootDirectory root;
        QString error;
        QVERIFY2(root.take(path, error), qPrintable(error));
    }

    void root_that_cannot_be_is_told_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("below a file") << QStringLiteral("/etc/hostname/root");
        QTest::newRow("a file") << QStringLiteral("/etc/hostname");
        QTest::newRow("no such device") << QStringLiteral("/proc/tessera");
    }
    void root_that_cannot_be_is_told() {
        QFETCH(QString, path);
        RootDirectory root;
        QString error;
        QVERIFY(!root.take(path, error));
        QVERIFY2(error.contains(path), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestRootDirectory)
#include "tst_rootdirectory.moc"
