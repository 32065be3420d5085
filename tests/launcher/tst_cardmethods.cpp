// SPDX-License-Identifier: MIT
// The automation port's methods of the machine, without the port.
#include "cardmethods.h"

#include "engine/cardfunctions.h"
#include "engine/layerparamex.h"
#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "machinecontrol.h"
#include "simengine/simcontrol.h"
#include "support/temporaryroot.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QtTest>

using namespace tessera;

class TestCardMethods : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;
    MachineControl m_machine;
    CardMethods m_methods{m_machine};

    static IMarkCardBase& card() { return *MarkCardInstance::Instance(); }
    RpcReply call(char const* method, QJsonObject const& params = {}) {
        RpcReply reply;
        if (!m_methods.call(QLatin1String(method), params, reply))
            qFatal("no method %s", method);
        return reply;
    }
    QJsonObject objectOf(char const* method, QJsonObject const& params = {}) {
        return call(method, params).result.toObject();
    }
    int errorOf(char const* method, QJsonObject const& params) {
        RpcReply const reply = call(method, params);
        return reply.error ? reply.error->code : 0;
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(m_root->isValid());
        QVERIFY(m_machine.isSimulated());
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard);
    }
    void cleanupTestCase() { MarkCardInstance::SetMarkCardInstance(nullptr); }
    void init() {
        m_machine.sim()->clearFaults();
        m_machine.setSpeed(0.0);
        card().OpenCard();
        LayerParamEx layers;
        card().DownLayerPara(&layers, 20);
        m_machine.sim()->clearJournal();
    }
    void cleanup() { card().CloseCard(); }

    void faults_are_told_by_name_and_switched() {
        QJsonObject faults = objectOf("card.faults");
        QCOMPARE(faults.size(), int(m_machine.sim()->faultNames().size()));
        for (QJsonValue const& on : qAsConst(faults))
            QCOMPARE(on, QJsonValue(false));
        QCOMPARE(call("card.fault", {{"name", "laser_pd"}, {"on", true}}).result, QJsonValue(true));
        faults.insert("laser_pd", true);
        QCOMPARE(objectOf("card.faults"), faults);
        RpcReply const unknown = call("card.fault", {{"name", "laser"}, {"on", true}});
        QCOMPARE(unknown.error->code, int(RpcInvalidParams));
        QCOMPARE(unknown.error->data.toObject().value("candidates").toArray().size(), faults.size());
        QCOMPARE(errorOf("card.fault", {{"name", "laser_pd"}}), int(RpcInvalidParams));
    }

    void the_state_has_what_the_card_shows() {
        QJsonObject const before = objectOf("card.state");
        QCOMPARE(before.value("waitCode"), QJsonValue(0));
        QCOMPARE(before.value("scanState"), QJsonValue(0x103));
        QCOMPARE(before.value("errorOutput"), QJsonValue(false));
        VZ_OutputError(1);
        VZ_OutputWaveNo(5);
        VZ_SetFlyEncInitPos(-9);
        m_machine.sim()->setFault("card_alarm", true);
        m_machine.sim()->setFault("io_timeout", true);
        QJsonObject const state = objectOf("card.state");
        QCOMPARE(state.value("errorOutput"), QJsonValue(true));
        QCOMPARE(state.value("waveNumber"), QJsonValue(5));
        QCOMPARE(state.value("encoder"), QJsonValue(-9));
        QCOMPARE(state.value("alarms"), QJsonValue(1));
        QCOMPARE(state.value("markInfo").toInt() & 1 << 25, 1 << 25);
        VZ_OutputError(0);
    }

    void devices_are_set_and_read() {
        QCOMPARE(objectOf("card.device", {{"name", "belt_speed"}, {"value", -80.5}}),
                 (QJsonObject{{"belt_speed", -80.5}}));
        QCOMPARE(objectOf("card.device", {{"name", "belt_speed"}}), (QJsonObject{{"belt_speed", -80.5}}));
        QCOMPARE(objectOf("card.device").size(), int(m_machine.sim()->devices().size()));
        QCOMPARE(objectOf("card.device", {{"name", "belt_speed"}, {"value", 0}}), (QJsonObject{{"belt_speed", 0}}));
        QCOMPARE(errorOf("card.device", {{"name", "anchor"}}), int(RpcMachineRefused));
        QCOMPARE(errorOf("card.device", {{"name", "anchor"}, {"value", 1}}), int(RpcMachineRefused));
        QCOMPARE(errorOf("card.device", {{"name", "encoder"}, {"value", 0.5}}), int(RpcInvalidParams));
        QCOMPARE(errorOf("card.device", {{"name", "belt_pulses"}, {"value", 1e9}}), int(RpcInvalidParams));
        QCOMPARE(errorOf("card.device", {{"name", "flash_end"}, {"value", 1}}), int(RpcInvalidParams));
        QCOMPARE(errorOf("card.device", {{"name", "belt_speed"}, {"value", "fast"}}), int(RpcInvalidParams));
    }

    void flash_comes_as_a_file() {
        QString const file = m_root->path("闪存.bin");
        QCOMPARE(errorOf("card.flash", {{"file", file}}), int(RpcMachineRefused));
        unsigned char const bytes[] = {1, 2, 3};
        QCOMPARE(VZ_FlashWriteAddr(0x800000, bytes, 3), 0);
        QCOMPARE(objectOf("card.flash", {{"file", file}}), (QJsonObject{{"file", file}}));
        QCOMPARE(m_root->read("闪存.bin"), QByteArray("\x01\x02\x03"));
        QCOMPARE(objectOf("card.flash", {{"file", file}, {"address", 0x800002}, {"size", 2}}).value("file"),
                 QJsonValue(file));
        QCOMPARE(m_root->read("闪存.bin"), QByteArray("\x03\xFF"));
        QCOMPARE(objectOf("card.flash", {{"file", file}, {"size", 1}}).value("file"), QJsonValue(file));
        QCOMPARE(m_root->read("闪存.bin"), QByteArray("\xFF"));
        QCOMPARE(errorOf("card.flash", {{"file", file}, {"address", 1}}), int(RpcInvalidParams));
        QCOMPARE(errorOf("card.flash", {{"file", file}, {"address", 33554431}, {"size", 2}}), int(RpcInvalidParams));
        QCOMPARE(errorOf("card.flash", {{"file", "/proc/none/f.bin"}, {"size", 2}}), int(RpcFileError));
        card().ResetCardFlash();
    }

    void a_long_journal_comes_in_pages() {
        constexpr int kCalls = 30000;
        for (int i = 0; i < kCalls; ++i)
            card().SetOutputBit(i % 32, i & 1);
        int calls = 0;
        int pages = 0;
        double last = 0.0;
        for (;;) {
            QJsonArray const page = call("card.journal", {{"since", last}}).result.toArray();
            if (page.isEmpty())
                break;
            QVERIFY(QJsonDocument(page).toJson(QJsonDocument::Compact).size() <= 1024 * 1024 + 2);
            if (pages > 0)
                QCOMPARE(page.first().toObject().value("seq").toDouble(), last + 1.0);
            last = page.last().toObject().value("seq").toDouble();
            calls += page.size();
            ++pages;
        }
        QCOMPARE(calls, kCalls);
        QVERIFY(pages > 1);
    }

    void crosses_are_measured_into_a_file() {
        QString const file = m_root->path("测量.txt");
        card().BeginList(1);
        DOT3 across[] = {{-2, 0, 0}, {2, 0, 0}};
        DOT3 up[] = {{0, 2, 0}, {0, -2, 0}};
        card().AddList(across, 2, 0);
        card().AddList(up, 2, 0);
        card().EndList();
        QCOMPARE(objectOf("head.measure", {{"file", file}}), (QJsonObject{{"file", file}}));
        QCOMPARE(m_root->read("测量.txt"), QByteArray("0,0\n"));
        QCOMPARE(errorOf("head.measure", {{"file", "/proc/none/m.txt"}}), int(RpcFileError));
    }
};

QTEST_MAIN(TestCardMethods)
#include "tst_cardmethods.moc"
