// SPDX-License-Identifier: MIT
#include "simengine/servers/ccsserveraccess.h"
#include "tests/remote/remotefixture.h"
#include "tests/servers/stationclient.h"

#include <QJsonArray>
#include <QJsonObject>
#include <sys/stat.h>

using namespace tests;

namespace {

const QByteArray kKey(64, 'k');

} // namespace

/// A controlling station over its socket: documents and runs from the first line to the last answer.
class ExternalStationTest : public QObject, private RemoteFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() {
        m_Station.reset();
        end();
    }

    void a_station_synchronises_switches_starts_and_stops_documents();
    void an_upload_that_is_damaged_closes_the_open_documents_and_says_which_failed();
    void a_station_that_comes_back_hears_how_its_run_ended();
    void orders_are_recorded_with_the_station();
    void a_station_with_another_key_changes_nothing();

private:
    bool connectStation(QByteArray const& key = kKey) {
        m_Station = std::make_unique<StationClient>();
        m_Station->pump = [] { QCoreApplication::processEvents(); };
        return m_Station->connectTo(CCSServerAccess::port(*CCSServer::Instance())) && m_Station->prove(key);
    }
    bool send(QString const& name, QStringList const& args = {}, int tag = 0) {
        return m_Station->send(StationClient::commandLine(name, args, tag));
    }
    /// Tag, status and text of the next answer.
    QString next() {
        const QJsonObject message = m_Station->message();
        const QJsonArray args = message.value(QStringLiteral("args")).toArray();
        return QStringLiteral("%1 %2 %3")
            .arg(message.value(QStringLiteral("tag")).toInt())
            .arg(args.at(0).toString(), args.at(1).toString());
    }
    QByteArray bytes(QString const& path) {
        QFile read(path);
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    }

    std::unique_ptr<StationClient> m_Station;
};

void ExternalStationTest::init() {
    const QString key = m_Root.path(QStringLiteral("/ini/CommandServer.key"));
    QVERIFY(m_Root.write(QStringLiteral("/ini/CommandServer.key"), kKey + '\n'));
    QCOMPARE(::chmod(QFile::encodeName(key).constData(), 0600), 0);
    begin();
    QVERIFY(connectStation());
}

void ExternalStationTest::a_station_synchronises_switches_starts_and_stops_documents() {
    const QByteArray plate = bytes(makeFile(QStringLiteral("plate"), 3));
    const QString inline_ = QStringLiteral("data:") + QString::fromLatin1(plate.toBase64());
    QVERIFY(send(QStringLiteral("SyncFile"), {inline_, QStringLiteral("a"), inline_, QStringLiteral("b")}, 1));
    QCOMPARE(next(), QStringLiteral("1 0 文档同步成功"));
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QVERIFY(send(QStringLiteral("SetCurDoc"), {QStringLiteral("a")}, 2));
    QCOMPARE(next(), QStringLiteral("2 0 文档切换成功"));
    QCOMPARE(window().GetActiveView(), window().GetDocs().first());
    machine().setSpeed(kSlowRun);
    QVERIFY(send(QStringLiteral("RunManualStart"), {"0", "0"}, 3));
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QVERIFY(send(QStringLiteral("SetCurDoc"), {QStringLiteral("b")}, 4));
    QCOMPARE(next(), QStringLiteral("4 1 文档正在运行中"));
    QVERIFY(send(QStringLiteral("RunManualStart"), {"0", "0"}, 5));
    QCOMPARE(next(), QStringLiteral("5 1 文档正在运行中"));
    QVERIFY(send(QStringLiteral("RunManualStop"), {}, 6));
    QCOMPARE(next(), QStringLiteral("3 0 文档执行成功"));
    QCOMPARE(next(), QStringLiteral("6 0 终止运行成功"));
    QVERIFY(send(QStringLiteral("SyncFile"), {}, 7));
    QCOMPARE(next(), QStringLiteral("7 0 "));
    QVERIFY(window().GetDocs().isEmpty());
}

void ExternalStationTest::an_upload_that_is_damaged_closes_the_open_documents_and_says_which_failed() {
    open(QStringLiteral("old"));
    QByteArray plate = bytes(makeFile(QStringLiteral("plate"), 3));
    QVERIFY(plate.size() > 100);
    plate[plate.size() / 2] = static_cast<char>(plate.at(plate.size() / 2) ^ 1);
    QVERIFY(send(QStringLiteral("SyncFile"),
                 {QStringLiteral("data:") + QString::fromLatin1(plate.toBase64()), QStringLiteral("new")}, 1));
    QCOMPARE(next(), QStringLiteral("1 1 new文档同步失败"));
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(!QFile::exists(file(QStringLiteral("new"))));
}

void ExternalStationTest::a_station_that_comes_back_hears_how_its_run_ended() {
    open(QStringLiteral("one"));
    machine().setSpeed(kSlowRun);
    QVERIFY(send(QStringLiteral("RunManualStart"), {"0", "0"}, 9));
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QVERIFY(connectStation());
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().setSpeed(0.0);
    QCOMPARE(next(), QStringLiteral("9 0 文档执行成功"));
}

void ExternalStationTest::orders_are_recorded_with_the_station() {
    open(QStringLiteral("one"));
    QVERIFY(send(QStringLiteral("RunManualStart"), {"0", "1"}, 1));
    QCOMPARE(next(), QStringLiteral("1 0 文档执行成功"));
    QVERIFY(send(QStringLiteral("SetCurDoc"), {QStringLiteral("none")}, 2));
    QCOMPARE(next(), QStringLiteral("2 1 切换文档失败"));
    QVERIFY(CCSServer::Instance()->CommandSender().isEmpty());
    response().StopRunAndWait();
    response().OrderLog().Flush();
    QStringList lines = QString::fromUtf8(m_Root.read(QStringLiteral("/日志文件/RemoteOrders.txt")))
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines = lines.mid(lines.size() - 2);
    const QRegularExpression from(QStringLiteral("^[^\t]+\t127\\.0\\.0\\.1[:0-9]* \\(line-3\\)\t"));
    for (QString& line : lines) {
        QVERIFY2(line.contains(from), qPrintable(line));
        line.remove(from);
    }
    QCOMPARE(lines, (QStringList{"RunManualStart(0,1)\t0,文档执行成功", "SetCurDoc(none)\t1,切换文档失败"}));
}

void ExternalStationTest::a_station_with_another_key_changes_nothing() {
    open(QStringLiteral("one"));
    QVERIFY(!connectStation(QByteArray(64, 'x')));
    // The connection may be closed before it has gone out.
    m_Station->send(StationClient::commandLine(QStringLiteral("SyncFile")));
    QVERIFY(m_Station->ended());
    QCoreApplication::processEvents();
    QCOMPARE(openNames(), QStringList{"one"});
    QVERIFY(machineJournal().isEmpty());
}

QTEST_MAIN(ExternalStationTest)
#include "tst_externalstation.moc"
