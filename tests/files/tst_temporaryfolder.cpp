// SPDX-License-Identifier: MIT
#include "support/temporaryfolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using tessera::TemporaryFolder;

/// The private folder in which archives are packed and unpacked.
class TemporaryFolderTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_Base = std::make_unique<QTemporaryDir>();
        QVERIFY(m_Base->isValid());
        m_Former = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(m_Base->path()));
    }
    void cleanup() {
        if (m_Former.isEmpty())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_Former);
    }

    void folder_is_for_its_owner_only_and_goes_with_the_object() {
        QString path;
        {
            const TemporaryFolder folder;
            QVERIFY(folder.isValid());
            path = folder.path();
            QCOMPARE(QFileInfo(path).absolutePath(), QDir(m_Base->path()).absolutePath());
            QCOMPARE(folder.filePath("a.zip"), path + "/a.zip");
            struct stat status = {};
            QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
            QCOMPARE(int(status.st_mode & 07777), 0700);
            QFile file(folder.filePath("a.zip"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(QDir(path).mkpath("a/b"));
        }
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(left(), QStringList());
    }

    void folders_at_one_time_are_different() {
        const TemporaryFolder first;
        const TemporaryFolder second;
        QVERIFY(first.isValid() && second.isValid());
        QVERIFY(first.path() != second.path());
        QCOMPARE(left().size(), 2);
    }

    void folders_of_killed_processes_are_removed() {
        QDir base(m_Base->path());
        const QString orphan = ".work.00000001-4711-12-3.tessera-tmp";
        QVERIFY(base.mkpath(orphan + "/a/b"));
        QVERIFY(base.mkpath(".other.00000001-4711-12-3.tessera-tmp"));
        QVERIFY(base.mkpath("work.00000001-4711-12-3"));
        QVERIFY(base.mkpath("kept"));
        QVERIFY(QFile::link(base.filePath("kept"), base.filePath(".work.00000001-4711-12-4.tessera-tmp")));
        const TemporaryFolder folder;
        QVERIFY(!base.exists(orphan));
        QVERIFY(base.exists(".other.00000001-4711-12-3.tessera-tmp"));
        QVERIFY(base.exists("work.00000001-4711-12-3"));
        QVERIFY(base.exists("kept"));
        QVERIFY(QFileInfo(base.filePath(".work.00000001-4711-12-4.tessera-tmp")).isSymLink());
    }

    void without_a_temporary_folder_it_is_not_valid() {
        qputenv("TMPDIR", QFile::encodeName(m_Base->filePath("nothing")));
        const TemporaryFolder folder;
        QVERIFY(!folder.isValid());
        QCOMPARE(folder.path(), QString());
    }

private:
    QStringList left() const {
        return QDir(m_Base->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    std::unique_ptr<QTemporaryDir> m_Base;
    QByteArray m_Former;
};

QTEST_GUILESS_MAIN(TemporaryFolderTest)
#include "tst_temporaryfolder.moc"
