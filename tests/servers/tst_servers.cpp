// SPDX-License-Identifier: MIT
#include "engine/ccdserver.h"
#include "engine/imodbuslaser.h"
#include "engine/manualresetevent.h"
#include "engine/rundatagather.h"
#include "engine/systemparam.h"
#include "simengine/servers/rundatagatheraccess.h"
#include "simengine/servers/runrecord.h"
#include "support/approot.h"
#include "support/logtexts.h"
#include "support/socketclient.h"

#include <QTemporaryDir>
#include <QtTest>
#include <atomic>
#include <thread>

namespace {

class Laser : public IModbusLaser {
public:
    double QCWWPulse() override { return 1.5; }
    bool IsConnected() override { return true; }
    bool IsAutoCalcPWM() override { return false; }
    void AutoCalcPWM(double&, double&) override {}
    void SetQCWParam(int, double, double) override {}
    void SetQCWParam(int, int, double, double, double, double, double, double, double) override {}
};

} // namespace

class TestServers : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

    /// The link, made on the first call, at another address than before.
    CCDServer* cameraLink(QString const& address) {
        SystemParam::Instance()->SetStaticIP("nowhere");
        if (!CCDServer::Instance())
            CCDServer::InitCCDServer();
        CCDServer* const server = CCDServer::Instance();
        server->SetStaticIP();
        SystemParam::Instance()->SetStaticIP(address);
        server->SetStaticIP();
        CCDServer::InitCCDServer();
        return CCDServer::Instance() == server ? server : nullptr;
    }
    /// Where the link listens, as the log tells.
    static quint16 cameraPort() {
        QByteArray const log = tests::logBytes();
        QByteArray const mark = "camera link: listens at 127.0.0.1 port ";
        return log.mid(log.lastIndexOf(mark) + mark.size()).split('\n').first().toUShort();
    }

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void there_is_no_camera_link_before_it_is_made() { QVERIFY(!CCDServer::Instance()); }

    void an_address_that_the_machine_has_not_is_told_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QByteArray>("logged");
        QTest::newRow("elsewhere") << "192.0.2.1" << QByteArray("camera link: 192.0.2.1 port 7661: ");
        QTest::newRow("a name") << "localhost" << QByteArray("camera link: \"localhost\" is no address");
        QTest::newRow("empty") << "" << QByteArray("camera link: \"\" is no address");
        QTest::newRow("bad port") << "127.0.0.1:65536" << QByteArray("is no address");
        QTest::newRow("IPv6") << "::1" << QByteArray("is no address");
    }
    void an_address_that_the_machine_has_not_is_told() {
        QFETCH(QString, address);
        QFETCH(QByteArray, logged);
        CCDServer* const server = cameraLink(address);
        QVERIFY(!server->HasClient());
        QVERIFY2(tests::logBytes().contains(logged), tests::logBytes());
    }

    void a_camera_is_seen_while_it_is_connected() {
        CCDServer* const server = cameraLink("127.0.0.1:0");
        QVERIFY(!server->HasClient());
        tests::SocketClient camera;
        QVERIFY(camera.connectTcp(cameraPort()));
        QTRY_VERIFY(server->HasClient());
        QVERIFY(tests::logBytes().contains("camera link: camera at 127.0.0.1"));
        QVERIFY(camera.write(QByteArray(1 << 20, 'x'))); // far more than the buffers hold: it is taken
        QVERIFY(server->HasClient());
        camera.close();
        QTRY_VERIFY(!server->HasClient());
        QVERIFY(tests::logBytes().contains("camera link: the camera has gone"));
    }

    void the_newest_camera_is_the_camera() {
        CCDServer* const server = cameraLink("127.0.0.1:0");
        tests::SocketClient older;
        QVERIFY(older.connectTcp(cameraPort()));
        QTRY_VERIFY(server->HasClient());
        tests::SocketClient newer;
        QVERIFY(newer.connectTcp(cameraPort()));
        QVERIFY(older.waitForEnd());
        QVERIFY(server->HasClient());
        newer.abort();
        QTRY_VERIFY(!server->HasClient());
    }

    void a_changed_address_is_taken_over_and_the_same_one_disturbs_nothing() {
        CCDServer* const server = cameraLink("127.0.0.1:0");
        quint16 const port = cameraPort();
        tests::SocketClient camera;
        QVERIFY(camera.connectTcp(port));
        QTRY_VERIFY(server->HasClient());
        server->SetStaticIP();
        QVERIFY(server->HasClient());
        QCOMPARE(cameraPort(), port);
        SystemParam::Instance()->SetStaticIP("127.0.0.2:0");
        server->SetStaticIP();
        QVERIFY(!server->HasClient());
        QVERIFY(camera.waitForEnd());
        QVERIFY(!camera.connectTcp(port, 100));
    }

    void run_figures_are_kept_from_any_thread() {
        RunDataGather& data = *RunDataGather::Instance();
        QVERIFY(!data.GetRunResult() && data.GetRunTime() == 0 && data.GetLayerList().isEmpty());
        QDateTime const now = QDateTime::currentDateTime();
        data.SetOpenTimeStamp(now);
        data.SetCurDocName("plate.mkf");
        data.SetRunStatus(RunStatusLaserAlarm);
        LayerData layer;
        layer.MarkSpeed = 123.0;
        std::thread([&layer] { RunDataGatherAccess::setRun(true, 4500, {layer}); }).join();
        QCOMPARE(data.GetOpenTimeStamp(), now);
        QCOMPARE(data.GetCurDocName(), QString("plate.mkf"));
        QCOMPARE(data.GetRunStatus(), RunStatusLaserAlarm);
        QVERIFY(data.GetRunResult());
        QCOMPARE(data.GetRunTime(), qint64(4500));
        QCOMPARE(data.GetLayerList().size(), 1);
        QCOMPARE(data.GetLayerList().at(0).MarkSpeed, 123.0);
    }

    void a_run_tells_its_pens_in_the_order_of_use() {
        LayerParamEx layers;
        for (int i = 0; i < kLayerCount; ++i) {
            LayerData data;
            layers.GetLayerData(i, data);
            data.MarkSpeed = 100.0 + i;
            data.UseDefault = false;
            layers.SetLayerData(i, data);
        }
        sim::Job job;
        for (int pen : {7, 3, 7, 99, 3}) {
            sim::Stroke stroke;
            stroke.pen = pen;
            job.strokes.push_back(stroke);
        }
        sim::RunRecord(job, &layers).ended(false);
        QVector<LayerData> const used = RunDataGather::Instance()->GetLayerList();
        QCOMPARE(used.size(), 3);
        QVERIFY(used[0].MarkSpeed == 107.0 && used[1].MarkSpeed == 103.0 && used[2].MarkSpeed == 100.0);
        QVERIFY(!RunDataGather::Instance()->GetRunResult());
        QVERIFY(tests::logBytes().contains("stopped: 5 strokes"));
        sim::RunRecord(job, nullptr).ended(true);
        QVERIFY(RunDataGather::Instance()->GetLayerList().isEmpty() && RunDataGather::Instance()->GetRunResult());
    }

    void the_event_stays_set_until_reset() {
        ManualResetEvent event(true);
        QVERIFY(event.IsSet() && event.WaitOne(0) && event.WaitOne());
        event.Reset();
        QVERIFY(!event.IsSet() && !event.WaitOne(0));
        QVERIFY(!event.WaitOne(5));
        std::atomic<int> through{0};
        std::thread first([&] {
            event.WaitOne();
            ++through;
        });
        std::thread second([&] {
            event.WaitOne(60'000);
            ++through;
        });
        event.Set();
        first.join();
        second.join();
        QCOMPARE(through.load(), 2);
        QVERIFY(event.IsSet());
    }

    void the_serial_laser_takes_itself_back() {
        QVERIFY(!IModbusLaser::Instance());
        {
            Laser laser;
            IModbusLaser::m_hInstance = &laser;
            QCOMPARE(IModbusLaser::Instance()->QCWWPulse(), 1.5);
        }
        QVERIFY(!IModbusLaser::Instance());
    }
};

QTEST_GUILESS_MAIN(TestServers)
#include "tst_servers.moc"
