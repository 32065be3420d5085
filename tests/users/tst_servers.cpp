// SPDX-License-Identifier: MIT
#include "engine/ccdserver.h"
#include "engine/imodbuslaser.h"
#include "engine/manualresetevent.h"
#include "engine/rundatagather.h"
#include "simengine/servers/rundatagatheraccess.h"
#include "simengine/servers/runrecord.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <atomic>
#include <thread>

namespace {

QByteArray logText() {
    QByteArray all;
    QDir const folder(tessera::rootPath("/日志文件"));
    for (QString const& name : folder.entryList({"*.log"}, QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll();
    }
    return all;
}

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

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void the_camera_link_has_no_client_and_says_so() {
        QVERIFY(!CCDServer::Instance());
        CCDServer::InitCCDServer();
        CCDServer* server = CCDServer::Instance();
        QVERIFY(server);
        CCDServer::InitCCDServer();
        QCOMPARE(CCDServer::Instance(), server);
        QVERIFY(!server->HasClient());
        server->SetStaticIP();
        QCOMPARE(logText().count("camera link: not available"), 2);
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
        QVERIFY(logText().contains("stopped: 5 strokes"));
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
