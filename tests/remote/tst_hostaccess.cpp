// SPDX-License-Identifier: MIT
#include "remote/hostaccess.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

using tessera::HostAccess;

class TestHostAccess : public QObject {
    Q_OBJECT

private slots:
    void without_a_file_every_interface_and_any_host() {
        const tests::TemporaryRoot root;
        const HostAccess access = HostAccess::FromFile();
        QCOMPARE(access.Bind(), QHostAddress(QHostAddress::AnyIPv4));
        QVERIFY(access.Admits(QHostAddress("203.0.113.9")));
        QVERIFY(access.Problems().isEmpty());
    }

    void the_file_names_interface_and_hosts() {
        tests::TemporaryRoot root;
        QVERIFY(root.write("/ini/HostTcp.ini", "[Host]\nBind=127.0.0.1\nAllow=127.0.0.2, 192.168.1.0/24\n"));
        const HostAccess access = HostAccess::FromFile();
        QCOMPARE(access.Bind(), QHostAddress("127.0.0.1"));
        QVERIFY(access.Admits(QHostAddress("127.0.0.2")));
        QVERIFY(!access.Admits(QHostAddress("127.0.0.1")));
        QVERIFY(access.Admits(QHostAddress("192.168.1.255")));
        QVERIFY(!access.Admits(QHostAddress("192.168.2.1")));
        QVERIFY(access.Problems().isEmpty());
    }

    void an_address_is_understood_or_opens_nothing_data() {
        QTest::addColumn<QString>("bind");
        QTest::addColumn<QString>("taken");
        QTest::addColumn<int>("problems");
        QTest::newRow("empty") << ""
                               << "0.0.0.0" << 0;
        QTest::newRow("blanks") << "  "
                                << "0.0.0.0" << 0;
        QTest::newRow("all written out") << "0.0.0.0"
                                         << "0.0.0.0" << 0;
        QTest::newRow("one") << " 10.0.0.5 "
                             << "10.0.0.5" << 0;
        QTest::newRow("name") << "localhost"
                              << "127.0.0.1" << 1;
        QTest::newRow("short form") << "10.1"
                                    << "127.0.0.1" << 1;
        QTest::newRow("number too large") << "10.0.0.256"
                                          << "127.0.0.1" << 1;
        QTest::newRow("IPv6") << "::"
                              << "127.0.0.1" << 1;
        QTest::newRow("two") << "10.0.0.5,10.0.0.6"
                             << "127.0.0.1" << 1;
        QTest::newRow("subnet") << "10.0.0.0/8"
                                << "127.0.0.1" << 1;
    }
    void an_address_is_understood_or_opens_nothing() {
        QFETCH(QString, bind);
        QFETCH(QString, taken);
        const HostAccess access(bind, QString());
        QCOMPARE(access.Bind(), QHostAddress(taken));
        QTEST(access.Problems().size(), "problems");
    }

    void a_host_is_admitted_by_an_entry_that_is_understood_data() {
        QTest::addColumn<QString>("allow");
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("admitted");
        QTest::addColumn<int>("problems");
        QTest::newRow("empty") << ""
                               << "10.0.0.5" << true << 0;
        QTest::newRow("itself") << "10.0.0.5"
                                << "10.0.0.5" << true << 0;
        QTest::newRow("another") << "10.0.0.5"
                                 << "10.0.0.6" << false << 0;
        QTest::newRow("second entry") << "10.0.0.5,10.0.0.6"
                                      << "10.0.0.6" << true << 0;
        QTest::newRow("subnet") << "10.0.0.0/30"
                                << "10.0.0.3" << true << 0;
        QTest::newRow("beyond the subnet") << "10.0.0.0/30"
                                           << "10.0.0.4" << false << 0;
        QTest::newRow("subnet of a host's address") << "10.0.0.7/24"
                                                    << "10.0.0.200" << true << 0;
        QTest::newRow("everything") << "0.0.0.0/0"
                                    << "203.0.113.9" << true << 0;
        QTest::newRow("name") << "plc"
                              << "10.0.0.5" << false << 1;
        QTest::newRow("name and an address") << "plc,10.0.0.5"
                                             << "10.0.0.5" << true << 1;
        QTest::newRow("nothing but a comma") << ","
                                             << "10.0.0.5" << false << 2;
        QTest::newRow("33 bits") << "10.0.0.0/33"
                                 << "10.0.0.1" << false << 1;
        QTest::newRow("no bits") << "10.0.0.0/"
                                 << "10.0.0.1" << false << 1;
        QTest::newRow("negative bits") << "0.0.0.0/-1"
                                       << "10.0.0.1" << false << 1;
        QTest::newRow("part of an address") << "10.0"
                                            << "10.0.0.0" << false << 1;
        QTest::newRow("IPv6") << "::1"
                              << "10.0.0.1" << false << 1;
    }
    void a_host_is_admitted_by_an_entry_that_is_understood() {
        QFETCH(QString, allow);
        QFETCH(QString, host);
        const HostAccess access(QString(), allow);
        QTEST(access.Admits(QHostAddress(host)), "admitted");
        QTEST(access.Problems().size(), "problems");
    }

    void a_problem_names_file_key_and_entry() {
        const HostAccess access("x", "y");
        QCOMPARE(access.Problems(),
                 (QStringList{"HostTcp.ini: Bind: \"x\" is no IPv4 address, only this machine itself can connect",
                              "HostTcp.ini: Allow: \"y\" is no IPv4 address or subnet and admits nobody"}));
    }
};

QTEST_GUILESS_MAIN(TestHostAccess)
#include "tst_hostaccess.moc"
