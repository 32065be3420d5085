// SPDX-License-Identifier: MIT
#include "support/approot.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <vector>

using tessera::applicationRoot;
using tessera::rootPath;
using tessera::setApplicationRoot;

class TestAppRoot : public QObject {
    Q_OBJECT

private slots:
    void cleanup();
    void without_a_choice_it_is_the_directory_of_the_program();
    void the_environment_names_another_root();
    void the_launchers_choice_wins_over_the_environment();
    void an_empty_choice_goes_back();
    void a_relative_environment_value_does_not_move_with_the_current_directory();
    void a_relative_choice_does_not_move_with_the_current_directory();
    void the_root_is_clean_and_absolute();
    void paths_are_joined_by_one_slash_data();
    void paths_are_joined_by_one_slash();
    void threads_may_ask_while_the_root_changes();
};

void TestAppRoot::cleanup() {
    setApplicationRoot(QString());
    qunsetenv("TESSERA_ROOT");
}

void TestAppRoot::without_a_choice_it_is_the_directory_of_the_program() {
    QCOMPARE(applicationRoot(), QCoreApplication::applicationDirPath());
    QVERIFY(
        QFileInfo(applicationRoot() + "/" + QFileInfo(QCoreApplication::applicationFilePath()).fileName()).exists());
}

void TestAppRoot::the_environment_names_another_root() {
    qputenv("TESSERA_ROOT", "/opt/tessera");
    QCOMPARE(applicationRoot(), QStringLiteral("/opt/tessera"));
    qputenv("TESSERA_ROOT", "/srv/打标");
    QCOMPARE(applicationRoot(), QStringLiteral("/srv/打标"));
    qputenv("TESSERA_ROOT", "");
    QCOMPARE(applicationRoot(), QCoreApplication::applicationDirPath());
}

void TestAppRoot::the_launchers_choice_wins_over_the_environment() {
    qputenv("TESSERA_ROOT", "/opt/tessera");
    setApplicationRoot(QStringLiteral("/srv/machine"));
    QCOMPARE(applicationRoot(), QStringLiteral("/srv/machine"));
}

void TestAppRoot::an_empty_choice_goes_back() {
    setApplicationRoot(QStringLiteral("/srv/machine"));
    setApplicationRoot(QString());
    QCOMPARE(applicationRoot(), QCoreApplication::applicationDirPath());
}

void TestAppRoot::a_relative_environment_value_does_not_move_with_the_current_directory() {
    const QString before = QDir::currentPath();
    QTemporaryDir elsewhere;
    qputenv("TESSERA_ROOT", "machine");
    QCOMPARE(applicationRoot(), before + "/machine");
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    const QString after = applicationRoot();
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(after, before + "/machine");
}

void TestAppRoot::a_relative_choice_does_not_move_with_the_current_directory() {
    const QString before = QDir::currentPath();
    QTemporaryDir elsewhere;
    setApplicationRoot(QStringLiteral("./machine/"));
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    const QString after = applicationRoot();
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(after, before + "/machine");
}

void TestAppRoot::the_root_is_clean_and_absolute() {
    setApplicationRoot(QStringLiteral("/srv//machine/../press/"));
    QCOMPARE(applicationRoot(), QStringLiteral("/srv/press"));
    setApplicationRoot(QStringLiteral("/"));
    QCOMPARE(applicationRoot(), QStringLiteral("/"));
}

void TestAppRoot::paths_are_joined_by_one_slash_data() {
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("relative");
    QTest::addColumn<QString>("path");
    QTest::newRow("slash at the start") << "/srv/press"
                                        << "/ini/Marking.ini"
                                        << "/srv/press/ini/Marking.ini";
    QTest::newRow("no slash at the start") << "/srv/press"
                                           << "ini/Marking.ini"
                                           << "/srv/press/ini/Marking.ini";
    QTest::newRow("root of the file system") << "/"
                                             << "/ini/Marking.ini"
                                             << "/ini/Marking.ini";
    QTest::newRow("root of the file system, no slash") << "/"
                                                       << "ini/Marking.ini"
                                                       << "/ini/Marking.ini";
    QTest::newRow("Chinese folder") << "/srv/press"
                                    << "/日志文件/Debug.txt"
                                    << "/srv/press/日志文件/Debug.txt";
    QTest::newRow("the root itself") << "/srv/press"
                                     << ""
                                     << "/srv/press";
}

void TestAppRoot::paths_are_joined_by_one_slash() {
    QFETCH(QString, root);
    QFETCH(QString, relative);
    setApplicationRoot(root);
    QTEST(rootPath(relative), "path");
}

void TestAppRoot::threads_may_ask_while_the_root_changes() {
    const QString first = QStringLiteral("/srv/first");
    const QString second = QStringLiteral("/srv/second");
    setApplicationRoot(first);
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            for (int n = 0; n < 2000; ++n) {
                const QString path = rootPath(QStringLiteral("/a"));
                if (path != first + "/a" && path != second + "/a")
                    ++wrong;
            }
        });
    }
    for (int n = 0; n < 2000; ++n)
        setApplicationRoot(n % 2 == 0 ? second : first);
    for (std::thread& reader : readers)
        reader.join();
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(TestAppRoot)
#include "tst_approot.moc"
