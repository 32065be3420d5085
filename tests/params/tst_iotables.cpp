// SPDX-License-Identifier: MIT
#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/vzmarkcard.h"
#include "simengine/io/iofunctable.h"
#include "simengine/io/iooutputtable.h"
#include "support/approot.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace sim;

class TestIOTables : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void all_functions_are_there_in_order_and_off() {
        QStringList const names = {"运行",        "暂停",        "终止",        "红光预览",
                                   "手动",        "自动",        "机台就绪",    "机台安全门1",
                                   "机台安全门2", "机台安全门3", "机台安全门4", "机台安全门5",
                                   "安全光栅",    "急停按钮",    "激光器报警",  "水冷机报警"};
        QVector<IOFuncList> const functions = IOCheckedSys::Instance()->GetIOFunctions();
        QCOMPARE(functions.size(), names.size());
        unsigned int used = 0;
        for (int i = 0; i < functions.size(); ++i) {
            QCOMPARE(functions[i].Name, names[i]);
            QVERIFY(!functions[i].InputEnable && !functions[i].OutputEnable && !functions[i].DelayEnable);
            QVERIFY(functions[i].InputMask != 0 && (used & functions[i].InputMask) == 0);
            QCOMPARE(functions[i].InputValue, functions[i].InputMask);
            QCOMPARE(functions[i].LastInput, 0u);
            used |= functions[i].InputMask;
        }
    }

    void an_unknown_name_gives_null() {
        QVERIFY(!IOCheckedSys::Instance()->GetFunObject("不存在"));
        QVERIFY(!IOCheckedSys::Instance()->GetFunObject(""));
    }

    void the_address_stays_while_copies_are_taken_and_changed() {
        IOCheckedSys& system = *IOCheckedSys::Instance();
        IOFuncList* const run = system.GetFunObject("运行");
        QVERIFY(run);
        QVector<IOFuncList> copy = system.GetIOFunctions();
        copy[0].InputMask = 77;
        run->LastInput = 5;
        QCOMPARE(system.GetFunObject("运行"), run);
        QCOMPARE(system.GetFunObject("运行")->LastInput, 5u);
        QVERIFY(system.GetFunObject("运行")->InputMask != 77);
        QVERIFY(system.SaveFile());
        QCOMPARE(system.GetFunObject("运行"), run);
    }

    void every_field_survives_but_the_last_input() {
        QVector<IOFuncList> functions = defaultIOFunctions();
        for (int i = 0; i < functions.size(); ++i) {
            unsigned int const bit = static_cast<unsigned int>(i);
            functions[i] = {functions[i].Name, i - 3, 9u,         i % 2 == 0, 0x80000000u >> bit, 3u << bit, i % 3 == 0,
                            7u + bit,          bit,   i % 2 == 1, 10 * i};
        }
        IOFuncList own;
        own.Name = "自定义 1";
        own.InputMask = 0xFFFFFFFFu;
        functions.append(own);
        IOCheckedSys::Instance()->SetIOFunctions(functions);
        QVERIFY(IOCheckedSys::Instance()->SaveFile());
        QVector<IOFuncList> loaded = defaultIOFunctions();
        loadIOFunctions(loaded, IniFile(tessera::rootPath(kIOFunctionFile)));
        QCOMPARE(loaded.size(), functions.size());
        for (int i = 0; i < loaded.size(); ++i) {
            QCOMPARE(loaded[i].Name, functions[i].Name);
            QCOMPARE(loaded[i].Reserved, functions[i].Reserved);
            QCOMPARE(loaded[i].LastInput, 0u);
            QCOMPARE(loaded[i].InputEnable, functions[i].InputEnable);
            QCOMPARE(loaded[i].InputMask, functions[i].InputMask);
            QCOMPARE(loaded[i].InputValue, functions[i].InputValue);
            QCOMPARE(loaded[i].OutputEnable, functions[i].OutputEnable);
            QCOMPARE(loaded[i].OutputMask, functions[i].OutputMask);
            QCOMPARE(loaded[i].OutputValue, functions[i].OutputValue);
            QCOMPARE(loaded[i].DelayEnable, functions[i].DelayEnable);
            QCOMPARE(loaded[i].DelayTime, functions[i].DelayTime);
        }
    }

    void a_damaged_table_leaves_the_defaults() {
        IniFile file(tessera::rootPath("/ini/damaged.ini"));
        QVERIFY(file.change([](IniDocument& document) {
            return document.setValue("Functions", "Count", "2000000000") &&
                   document.setValue("Function0", "Name", "运行") &&
                   document.setValue("Function0", "InputMask", "all") &&
                   document.setValue("Function1", "InputMask", "4");
        }));
        QVector<IOFuncList> functions = defaultIOFunctions();
        loadIOFunctions(functions, file);
        QCOMPARE(functions.size(), defaultIOFunctions().size());
        QCOMPARE(functions[0].InputMask, 1u);
    }

    void lamps_are_told_without_a_card() {
        IOOutputSet& outputs = *IOOutputSet::Instance();
        bool red = true;
        bool green = true;
        bool yellow = true;
        outputs.GetLightStatus(red, green, yellow);
        QVERIFY(!red && !green && !yellow);
        outputs.SetGreenYellow(nullptr);
        outputs.GetLightStatus(red, green, yellow);
        QVERIFY(!red && green && yellow);
        outputs.SetRed(nullptr);
        outputs.GetLightStatus(red, green, yellow);
        QVERIFY(red && !green && !yellow);
        outputs.SetGreen(nullptr);
        outputs.GetLightStatus(red, green, yellow);
        QVERIFY(!red && green && !yellow);
        outputs.SetYellow(nullptr);
        outputs.GetLightStatus(red, green, yellow);
        QVERIFY(!red && !green && yellow);
    }

    void lamps_are_written_to_their_outputs_data() {
        QTest::addColumn<bool>("invert");
        QTest::newRow("lit by 1") << false;
        QTest::newRow("lit by 0") << true;
    }

    void lamps_are_written_to_their_outputs() {
        QFETCH(bool, invert);
        VZMarkCard card;
        card.OpenCard();
        QVERIFY(card.IsCardOpend());
        IOOutputSet& outputs = *IOOutputSet::Instance();
        outputs.SetLight(8, 9, -1, 11);
        outputs.SetOutputInv(invert);
        int const on = invert ? 0 : 1;
        int const off = 1 - on;
        outputs.SetRed(&card);
        QVERIFY(card.GetOutputBit(8) == on && card.GetOutputBit(9) == off && card.GetOutputBit(11) == on);
        outputs.SetGreenYellow(&card);
        QVERIFY(card.GetOutputBit(8) == off && card.GetOutputBit(9) == on && card.GetOutputBit(11) == off);
        QCOMPARE(card.GetOutput() & ~0xB00u, 0u); // the yellow lamp is not fitted
        outputs.SetOutputInv(false);
    }

    void switches_are_written_and_read_back() {
        VZMarkCard card;
        card.OpenCard();
        IOOutputSet& outputs = *IOOutputSet::Instance();
        int bit = 14;
        double delay = 20.0;
        outputs.SetProtectGas(bit, delay, "gas");
        outputs.SetProtectGas(&card, true);
        QVERIFY(outputs.ProtectGasEnabled(&card) && card.GetOutputBit(14) == 1);
        outputs.SetProtectGas(&card, false);
        QVERIFY(!outputs.ProtectGasEnabled(&card));
        bit = 15;
        outputs.SetRedLight(bit, "red");
        outputs.SetRedLight(&card, true);
        QVERIFY(outputs.RedLightEnabled(&card) && card.GetOutputBit(15) == 1);
        bit = -1;
        outputs.SetRedLight(bit, "red");
        unsigned int const before = card.GetOutput();
        outputs.SetRedLight(&card, false);
        QCOMPARE(card.GetOutput(), before);
        QVERIFY(!outputs.RedLightEnabled(&card));
    }

    void every_output_setting_survives() {
        IOOutputSet& outputs = *IOOutputSet::Instance();
        outputs.SetLight(3, 4, 5, 6);
        outputs.SetReadyOut(7);
        outputs.SetEnableReadyOut(true);
        outputs.SetOutputInv(true);
        int redBit = -1;
        outputs.SetRedLight(redBit, "红光灯");
        int gasBit = 11;
        double gasDelay = 12.5;
        outputs.SetProtectGas(gasBit, gasDelay, "氩气");
        outputs.SetEndSignal(true, 14, 0, 2, 150, 17, 0, 2500, true);
        outputs.m_bStopHasEndSig = true;
        QVERIFY(outputs.Save());
        ParamStore const stored(kOutputSetFile, kOutputParams, OutputRowCount);
        double const expected[] = {3, 4, 5, 6, 1, 7, 1, -1, 0, 11, 12.5, 0, 1, 14, 0, 2, 150, 17, 0, 2500, 1, 1};
        static_assert(std::size(expected) == OutputRowCount, "a value for each row");
        for (std::size_t i = 0; i < OutputRowCount; ++i) {
            if (kOutputParams[i].type != ParamType::Text)
                QVERIFY2(stored.real(i) == expected[i], kOutputParams[i].key);
        }
        QCOMPARE(stored.text(RedLightNameRow), QString("红光灯"));
        QCOMPARE(stored.text(GasNameRow), QString("氩气"));
    }

    void output_settings_are_given_back() {
        IOOutputSet const& outputs = *IOOutputSet::Instance();
        int bit[4] = {};
        outputs.GetLight(bit[0], bit[1], bit[2], bit[3]);
        QVERIFY(bit[0] == 3 && bit[1] == 4 && bit[2] == 5 && bit[3] == 6);
        bool enable = false;
        bool check = false;
        int v[7] = {};
        outputs.GetEndSignal(enable, v[0], v[1], v[2], v[3], v[4], v[5], v[6], check);
        QVERIFY(enable && check);
        QCOMPARE(QVector<int>({v[0], v[1], v[2], v[3], v[4], v[5], v[6]}), QVector<int>({14, 0, 2, 150, 17, 0, 2500}));
        int gas = 0;
        double delay = 0.0;
        QString name;
        outputs.GetProtectGas(gas, delay, name);
        QVERIFY(gas == 11 && delay == 12.5 && name == "氩气");
        outputs.GetRedLight(gas, name);
        QVERIFY(gas == -1 && name == "红光灯");
        QVERIFY(outputs.EnableReadyOut() && outputs.GetReadyOut() == 7 && outputs.IsOutputInv());
        QVERIFY(!outputs.RedLightEnabled(nullptr) && !outputs.ProtectGasEnabled(nullptr));
    }
};

QTEST_GUILESS_MAIN(TestIOTables)
#include "tst_iotables.moc"
