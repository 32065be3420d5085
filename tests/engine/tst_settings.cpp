// SPDX-License-Identifier: MIT
#include "engine/authoritymanager.h"
#include "engine/boxspliceparam.h"
#include "engine/class_cardpara.h"
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/layerdata.h"
#include "engine/markingmparam_vz.h"
#include "engine/standardcalibparam.h"
#include "engine/systemparam.h"
#include "tests/support/temporaryroot.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

// Settings are read once in a process, so what was stored is asked of a second process of this same program: it prints
// what it reads, and the two prints are compared.

namespace {

char const kPrint[] = "--print-settings";

void setEverything() {
    SystemParam* const system = SystemParam::Instance();
    system->SetWorkMode(2);
    system->SetStartUpMark(1);
    system->SetMarkDebugMode(true);
    system->SetBufLoop(true);
    system->SetChaneLayerDelay(17);
    system->SetZAxisnum(3);
    system->SetInvertX(true);
    system->SetCanvas(120.5, 90.25, 1.5, -2.5);
    system->SetMaxDA(4.75);
    system->SetPasteOffset(0.5, -0.5);
    system->SetEnableCodeTool(true);
    system->SetScribePort(20123);
    system->SetCardName(QStringLiteral("卡=[1];#\\\"x\""));
    system->SetLogDays(44);
    system->FlyMarkSetPluseQua(12.5, 25.25);
    system->m_nCustomUIType = 2;
    system->m_nResponseIO = 0;
    GlassParam::Instance()->SetCheckSafeInRun(true);
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerPause);
    MarkingMParam_VZ::Instance()->SetAutoSetCardType(false);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardSPI);
    MarkingMParam_VZ::Instance()->SetIPG100WType(FilberYLPN);
    IOOutputSet::Instance()->SetLight(4, 5, 6, 7);
    IOOutputSet::Instance()->SetReadyOut(11);
    IOOutputSet::Instance()->SetEnableReadyOut(true);
    QVector<IOFuncList> functions = IOCheckedSys::Instance()->GetIOFunctions();
    functions[0].InputEnable = true;
    functions[0].InputMask = 0x80000001U;
    functions[0].InputValue = 0x80000000U;
    functions[0].DelayTime = 250;
    IOCheckedSys::Instance()->SetIOFunctions(functions);
    Class_CardPara::Instance()->AxisCount = 2;
    Class_CardPara::Instance()->Axis[1].JogLowSpeed = 7.25;
    Class_CardPara::Instance()->Home[1].Order = 5;
    LayerData pen = LayerData::GetDefaultLayerData();
    pen.MarkSpeed = 777.5;
    LayerData::SetDefaultLatyerData(pen);
}

bool saveEverything() {
    bool ok = SystemParam::Instance()->Save();
    ok = GlassParam::Instance()->SaveParam() && ok;
    ok = MarkingMParam_VZ::Instance()->SaveParaData() && ok;
    ok = IOOutputSet::Instance()->Save() && ok;
    ok = IOCheckedSys::Instance()->SaveFile() && ok;
    ok = Class_CardPara::Instance()->SaveParaData() && ok;
    return BoxSpliceParam::Save(1, 0.125, -0.25, 1.5) && ok;
}

QByteArray printEverything() {
    SystemParam const* const system = SystemParam::Instance();
    QString text;
    QDebug print(&text);
    print.noquote().nospace();
    BoxSpliceParam::Read();
    double pasteX = 0;
    double pasteY = 0;
    system->GetPasteOffSet(pasteX, pasteY);
    double flyX = 0;
    double flyY = 0;
    system->FlyMarkGetPluseQua(flyX, flyY);
    int red = 0;
    int green = 0;
    int yellow = 0;
    int buzzer = 0;
    IOOutputSet::Instance()->GetLight(red, green, yellow, buzzer);
    IOFuncList const function = IOCheckedSys::Instance()->GetIOFunctions().at(0);
    Class_CardPara const* const axes = Class_CardPara::Instance();
    print << system->GetWorkMode() << ' ' << system->GetStartUpMark() << ' ' << system->GetMarkDebugMode() << ' '
          << system->UsedBufLoop() << ' ' << system->GetChangeLayerDelay() << ' ' << system->GetZAxisnum() << ' '
          << system->InvertX() << ' ' << system->InvertY() << ' ' << system->GetCanvasRect() << ' '
          << system->GetMaxDA() << ' ' << pasteX << ' ' << pasteY << ' ' << system->EnableCodeTool() << ' '
          << system->GetScribePort() << ' ' << system->GetCardName().toUtf8().toHex() << ' ' << system->GetLogDays()
          << ' ' << flyX << ' ' << flyY << ' ' << system->m_nCustomUIType << ' ' << system->m_nResponseIO << '\n'
          << GlassParam::Instance()->IsCheckeSafeInRun() << ' ' << GlassParam::Instance()->GetSafeTrigerType() << ' '
          << MarkingMParam_VZ::Instance()->IsAutoSetCardType() << ' ' << MarkingMParam_VZ::Instance()->GetMarkCardType()
          << ' ' << MarkingMParam_VZ::Instance()->GetIPG100WType() << '\n'
          << red << ' ' << green << ' ' << yellow << ' ' << buzzer << ' ' << IOOutputSet::Instance()->GetReadyOut()
          << ' ' << IOOutputSet::Instance()->EnableReadyOut() << '\n'
          << function.Name.toUtf8().toHex() << ' ' << function.InputEnable << ' ' << function.InputMask << ' '
          << function.InputValue << ' ' << function.DelayTime << '\n'
          << axes->AxisCount << ' ' << axes->Axis[1].JogLowSpeed << ' ' << axes->Home[1].Order << '\n'
          << LayerData::GetDefaultLayerData().MarkSpeed << '\n'
          << BoxSpliceParam::m_EnableSplice << ' ' << BoxSpliceParam::m_OffsetX << ' ' << BoxSpliceParam::m_OffsetY
          << ' ' << BoxSpliceParam::m_OffsetA;
    return text.toUtf8();
}

/// What a process of its own reads below the present root.
QByteArray printOfAnotherProcess() {
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kPrint)});
    process.waitForFinished(60000);
    return process.readAllStandardOutput();
}

} // namespace

class TestSettings : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LayerData::InitLayerData();
    }
    void cleanupTestCase() { m_root.reset(); }

    void with_user_management_off_every_right_is_given() {
        QVERIFY(!SystemParam::Instance()->IsEnableUserManager());
        QVERIFY(AuthorityManager::CanNewFile());
        QVERIFY(AuthorityManager::CanOpenFile());
        QVERIFY(AuthorityManager::CanSaveFile());
        QVERIFY(AuthorityManager::CanDeleteFile());
        QVERIFY(AuthorityManager::CanAddMarkShape());
        QVERIFY(AuthorityManager::CanEditMarkTool());
        QVERIFY(AuthorityManager::CanEditMarkParam());
    }

    void fibre_variant_is_the_one_that_was_set_and_leaves_the_type() {
        MarkingMParam_VZ* const marking = MarkingMParam_VZ::Instance();
        MarkCardType const type = marking->GetMarkCardType();
        for (FilberLaserType variant : {FilberMOPA, FilberYLPN, FilberAPD, FilberIPG20W}) {
            marking->SetIPG100WType(variant);
            QCOMPARE(marking->GetIPG100WType(), variant);
            QCOMPARE(marking->GetMarkCardType(), type);
        }
    }

    void function_table_has_the_names_the_program_asks_for() {
        for (char const* name :
             {"运行", "终止", "暂停", "红光预览", "手动", "自动", "机台就绪", "机台安全门1", "机台安全门2",
              "机台安全门3", "机台安全门4", "机台安全门5", "安全光栅", "急停按钮", "激光器报警", "水冷机报警"})
            QVERIFY2(IOCheckedSys::Instance()->GetFunObject(QString::fromUtf8(name)), name);
        QVERIFY(!IOCheckedSys::Instance()->GetFunObject("no such function"));
    }

    void function_record_is_written_through_its_address() {
        IOFuncList* const record = IOCheckedSys::Instance()->GetFunObject(QStringLiteral("运行"));
        record->LastInput = 0x55;
        QCOMPARE(IOCheckedSys::Instance()->GetFunObject(QStringLiteral("运行")), record);
        QCOMPARE(record->LastInput, 0x55U);
    }

    void saved_settings_are_there_in_the_next_process() {
        QByteArray const before = printOfAnotherProcess();
        setEverything();
        QVERIFY(saveEverything());
        QByteArray const here = printEverything();
        QVERIFY(before != here);
        QCOMPARE(printOfAnotherProcess(), here);
    }

    void unsaved_settings_are_not() {
        QByteArray const stored = printOfAnotherProcess();
        SystemParam::Instance()->SetLogDays(SystemParam::Instance()->GetLogDays() + 1);
        QVERIFY(printEverything() != stored);
        QCOMPARE(printOfAnotherProcess(), stored);
    }

    void settings_that_cannot_be_written_are_told() {
        QDir root(m_root->path());
        QVERIFY(root.rename("ini", "ini.aside"));
        QVERIFY(m_root->write("/ini", "a file where the folder should be"));
        SystemParam::Instance()->SetLogDays(99);
        QVERIFY(!SystemParam::Instance()->Save());
        QVERIFY(!BoxSpliceParam::Save(0, 0, 0, 0));
        QVERIFY(root.remove("ini"));
        QVERIFY(root.rename("ini.aside", "ini"));
        QVERIFY(SystemParam::Instance()->Save());
    }

    void calibration_record_is_twenty_lines() {
        tests::TemporaryRoot root;
        StandardCalibParam record;
        record.MaxArea = 175.5;
        record.Mirror2.Trapezoid = -0.0125;
        record.FileName = QStringLiteral("conformance.txt");
        QVERIFY(record.Save());
        QByteArrayList const lines = root.read("/ini/conformance.txt").trimmed().split('\n');
        QCOMPARE(lines.size(), 20);
        QCOMPARE(lines.first().trimmed().toDouble(), 175.5);
    }

    void splice_turns_and_shifts_points_only_when_on() {
        QVERIFY(BoxSpliceParam::Save(0, 1.0, 2.0, 90.0));
        DOT3 point{10.0, 0.0, 0.0};
        BoxSpliceParam::ChangeManualBox(&point, 1);
        QCOMPARE(point.X, 10.0);
        QCOMPARE(point.Y, 0.0);
        QVERIFY(BoxSpliceParam::Save(1, 1.0, 2.0, 90.0));
        BoxSpliceParam::ChangeManualBox(&point, 1);
        QVERIFY2(qAbs(point.X - 1.0) < 1e-9 && qAbs(point.Y - 12.0) < 1e-9,
                 qPrintable(QStringLiteral("%1 %2").arg(point.X).arg(point.Y)));
        QVERIFY(BoxSpliceParam::Save(0, 0.0, 0.0, 0.0));
    }
};

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (application.arguments().contains(QString::fromLatin1(kPrint))) {
        LayerData::InitLayerData();
        std::fputs(printEverything().constData(), stdout);
        return 0;
    }
    TestSettings test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_settings.moc"
