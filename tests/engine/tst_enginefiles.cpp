// SPDX-License-Identifier: MIT
#include "engine/cmtype.h"
#include "engine/filehelpers.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

class TestEngineFiles : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void init() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void cleanup() { m_root.reset(); }

    void copy_replaces_the_target() {
        QVERIFY(m_root->write("/a", "new content"));
        QVERIFY(m_root->write("/b", "old"));
        QVERIFY(CopyFile(m_root->path("a"), m_root->path("b")));
        QCOMPARE(m_root->read("/b"), QByteArray("new content"));
        QCOMPARE(m_root->read("/a"), QByteArray("new content"));
    }

    void copy_that_fails_leaves_the_target() {
        QVERIFY(m_root->write("/b", "old"));
        QVERIFY(!CopyFile(m_root->path("missing"), m_root->path("b")));
        QCOMPARE(m_root->read("/b"), QByteArray("old"));
        QVERIFY(m_root->write("/a", "x"));
        QVERIFY(!CopyFile(m_root->path("a"), "/proc/none/b"));
    }

    void files_are_listed_with_and_without_ending() {
        for (char const* name : {"/d/one.mkf", "/d/two.mkf", "/d/three.txt"})
            QVERIFY(m_root->write(name, "x"));
        QStringList with = ListFiles(QDir(m_root->path("d")), true);
        QStringList without = ListFiles(QDir(m_root->path("d")), false);
        with.sort();
        without.sort();
        QCOMPARE(with, QStringList({"one.mkf", "three.txt", "two.mkf"}));
        QCOMPARE(without, QStringList({"one", "three", "two"}));
        QVERIFY(ListFiles(QDir(m_root->path("none")), true).isEmpty());
    }

    void names_of_one_ending_are_added() {
        for (char const* name : {"/d/one.mkf", "/d/two.mkf", "/d/three.txt"})
            QVERIFY(m_root->write(name, "x"));
        QSet<QString> names{"zero"};
        GetFileExtInPath(m_root->path("d"), ".mkf", names);
        QCOMPARE(names, QSet<QString>({"zero", "one", "two"}));
    }

    void board_is_one_of_the_two() { QVERIFY(GetCMType() == 0 || GetCMType() == 1); }
};

QTEST_GUILESS_MAIN(TestEngineFiles)
#include "tst_enginefiles.moc"
