// SPDX-License-Identifier: MIT
#include "engine/boxspliceparam.h"
#include "engine/class_cardpara.h"
#include "engine/cmtype.h"
#include "engine/glassparam.h"
#include "engine/markingmparam_vz.h"
#include "engine/standardcalibparam.h"
#include "params/systemparamvalues.h"
#include "simengine/params/boardtype.h"
#include "simengine/params/cardparatable.h"
#include "simengine/params/mediafolder.h"
#include "simengine/params/smalltables.h"
#include "simengine/params/standardcalibfile.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <set>
#include <thread>

using namespace sim;

namespace {

/// A value other than the default, different for each row and each round.
double otherNumber(ParamRow const& row, std::size_t index, int round) {
    if (row.type == ParamType::Flag)
        return row.number != 0.0 ? (round + 1) % 2 : round % 2;
    double const value = row.number + 1.0 + static_cast<double>(index) + 1000.0 * round;
    return row.type == ParamType::Real ? value + 0.125 : value;
}

QString otherText(std::size_t index, int round) {
    return QString::fromUtf8("值 %1 %2").arg(index).arg(round);
}

void change(ParamStore& store, ParamRow const* rows, std::size_t count, int round) {
    for (std::size_t i = 0; i < count; ++i) {
        double const number = otherNumber(rows[i], i, round);
        if (rows[i].type == ParamType::Flag)
            store.setFlag(i, number != 0.0);
        else if (rows[i].type == ParamType::Int)
            store.setInteger(i, static_cast<int>(number));
        else if (rows[i].type == ParamType::Real)
            store.setReal(i, number);
        else
            store.setText(i, otherText(i, round));
    }
}

void compare(ParamStore const& store, ParamRow const* rows, std::size_t count, int round) {
    for (std::size_t i = 0; i < count; ++i) {
        if (rows[i].type == ParamType::Text)
            QCOMPARE(store.text(i), otherText(i, round));
        else
            QVERIFY2(store.real(i) == otherNumber(rows[i], i, round), rows[i].key);
    }
}

struct Table {
    char const* file;
    ParamRow const* rows;
    std::size_t count;
};

constexpr Table kTables[] = {
    {kSystemParamFile, kSystemParams, SystemRowCount},
    {kGlassParamFile, kGlassParams, GlassRowCount},
    {kMarkingParamFile, kMarkingParams, MarkingRowCount},
    {kBoxSpliceFile, kBoxSpliceParams, BoxSpliceRowCount},
};

/// The rows that have no plain pair: canvas, paste offset, encoder pulses and the four public members.
constexpr std::size_t kRowsWithoutPair = 4 + 2 + 2 + 4;

void checkSystemParam(ParamStore const& expected) {
    SystemParam const& param = *SystemParam::Instance();
    for (auto const& pair : kFlagPairs)
        QVERIFY2((param.*pair.get)() == expected.flag(pair.row), kSystemParams[pair.row].key);
    for (auto const& pair : kIntPairs)
        QVERIFY2((param.*pair.get)() == expected.integer(pair.row), kSystemParams[pair.row].key);
    for (auto const& pair : kRealPairs)
        QVERIFY2((param.*pair.get)() == expected.real(pair.row), kSystemParams[pair.row].key);
    for (auto const& pair : kTextPairs)
        QVERIFY2((param.*pair.get)() == expected.text(pair.row), kSystemParams[pair.row].key);
    double const width = expected.real(CanvasWidthRow);
    double const height = expected.real(CanvasHeightRow);
    QCOMPARE(param.GetCanvasRect(), QRectF(expected.real(CanvasCenterXRow) - width / 2,
                                           expected.real(CanvasCenterYRow) - height / 2, width, height));
    double x = 0.0;
    double y = 0.0;
    param.GetPasteOffSet(x, y);
    QCOMPARE(QPointF(x, y), QPointF(expected.real(PasteOffsetXRow), expected.real(PasteOffsetYRow)));
    param.FlyMarkGetPluseQua(x, y);
    QCOMPARE(QPointF(x, y), QPointF(expected.real(FlyPulseXRow), expected.real(FlyPulseYRow)));
    QCOMPARE(param.m_nCustomUIType, expected.integer(CustomUITypeRow));
    QCOMPARE(param.m_nHideMainMenu, expected.integer(HideMainMenuRow));
    QCOMPARE(param.m_nResponseShortcut, expected.integer(ResponseShortcutRow));
    QCOMPARE(param.m_nResponseIO, expected.integer(ResponseIORow));
}

void setSystemParam(ParamStore const& from) {
    SystemParam& param = *SystemParam::Instance();
    for (auto const& pair : kFlagPairs)
        (param.*pair.set)(from.flag(pair.row));
    for (auto const& pair : kIntPairs)
        (param.*pair.set)(from.integer(pair.row));
    for (auto const& pair : kRealPairs)
        (param.*pair.set)(from.real(pair.row));
    for (auto const& pair : kTextPairs)
        (param.*pair.set)(from.text(pair.row));
    param.SetCanvas(from.real(CanvasWidthRow), from.real(CanvasHeightRow), from.real(CanvasCenterXRow),
                    from.real(CanvasCenterYRow));
    param.SetPasteOffset(from.real(PasteOffsetXRow), from.real(PasteOffsetYRow));
    param.FlyMarkSetPluseQua(from.real(FlyPulseXRow), from.real(FlyPulseYRow));
    param.m_nCustomUIType = from.integer(CustomUITypeRow);
    param.m_nHideMainMenu = from.integer(HideMainMenuRow);
    param.m_nResponseShortcut = from.integer(ResponseShortcutRow);
    param.m_nResponseIO = from.integer(ResponseIORow);
}

/// Moves every field of a record away from its value.
template<typename Record, typename Fields>
void moveFields(Record& record, Fields const& fields, int& count) {
    for (auto const& field : fields) {
        ++count;
        std::visit(
            [&](auto member) {
                using Value = std::decay_t<decltype(record.*member)>;
                if constexpr (std::is_same_v<Value, bool>)
                    record.*member = !(record.*member);
                else if constexpr (std::is_same_v<Value, QString>)
                    record.*member += QString::number(count);
                else
                    record.*member += static_cast<Value>(count);
            },
            field.member);
    }
}

QByteArray textOf(Class_CardPara const& para) {
    IniDocument document;
    storeCardPara(para, document);
    return document.bytes();
}

QByteArray fileBytes(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

} // namespace

class TestParameters : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void tables_name_each_place_once() {
        for (Table const& table : kTables) {
            std::set<std::pair<QByteArray, QByteArray>> places;
            for (std::size_t i = 0; i < table.count; ++i)
                QVERIFY2(places.emplace(table.rows[i].section, table.rows[i].key).second, table.rows[i].key);
        }
    }

    void pairs_cover_the_table() {
        std::set<std::size_t> rows;
        for (auto const& pair : kFlagPairs)
            QVERIFY2(rows.insert(pair.row).second && kSystemParams[pair.row].type == ParamType::Flag, "flag");
        for (auto const& pair : kIntPairs)
            QVERIFY2(rows.insert(pair.row).second && kSystemParams[pair.row].type == ParamType::Int, "int");
        for (auto const& pair : kRealPairs)
            QVERIFY2(rows.insert(pair.row).second && kSystemParams[pair.row].type == ParamType::Real, "real");
        for (auto const& pair : kTextPairs)
            QVERIFY2(rows.insert(pair.row).second && kSystemParams[pair.row].type == ParamType::Text, "text");
        QCOMPARE(rows.size() + kRowsWithoutPair, static_cast<std::size_t>(SystemRowCount));
    }

    void without_a_file_the_defaults_hold() {
        for (Table const& table : kTables) {
            ParamStore const store(table.file, table.rows, table.count);
            for (std::size_t i = 0; i < table.count; ++i) {
                QCOMPARE(store.text(i), QString::fromUtf8(table.rows[i].text));
                if (table.rows[i].type != ParamType::Text)
                    QCOMPARE(store.real(i), table.rows[i].number);
            }
            QVERIFY(!QFile::exists(tessera::rootPath(table.file)));
        }
    }

    void every_row_survives_a_restart() {
        for (Table const& table : kTables) {
            QString const file = QStringLiteral("/copy") + table.file;
            ParamStore store(file, table.rows, table.count);
            change(store, table.rows, table.count, 1);
            QVERIFY(store.save());
            compare(ParamStore(file, table.rows, table.count), table.rows, table.count, 1);
        }
    }

    void values_that_are_no_numbers_give_the_default() {
        for (Table const& table : kTables) {
            QString const file = QStringLiteral("/broken") + table.file;
            IniFile ini(tessera::rootPath(file));
            QVERIFY(ini.change([&table](IniDocument& document) {
                bool done = true;
                for (std::size_t i = 0; i < table.count; ++i)
                    done &= document.setValue(table.rows[i].section, table.rows[i].key, "?");
                return done;
            }));
            ParamStore const store(file, table.rows, table.count);
            for (std::size_t i = 0; i < table.count; ++i) {
                if (table.rows[i].type == ParamType::Text)
                    QCOMPARE(store.text(i), QString("?"));
                else
                    QVERIFY2(store.real(i) == table.rows[i].number, table.rows[i].key);
            }
        }
    }

    void keys_of_others_stay() {
        IniFile file(tessera::rootPath("/others.ini"));
        QVERIFY(file.change([](IniDocument& document) { return document.setValue("Mode", "Unknown", "x"); }));
        ParamStore store("/others.ini", kSystemParams, SystemRowCount);
        QVERIFY(store.save());
        QCOMPARE(file.value("Mode", "Unknown").value(), QString("x"));
    }

    void a_failed_save_is_told() {
        QVERIFY(QDir(m_root.path()).mkpath("blocked.ini"));
        ParamStore store("/blocked.ini", kGlassParams, GlassRowCount);
        QVERIFY(!store.save());
    }

    void numbers_that_are_not_finite_are_not_taken() {
        ParamStore store("/finite.ini", kSystemParams, SystemRowCount);
        store.setReal(MaxDARow, qQNaN());
        store.setReal(CutOffRow, qInf());
        QCOMPARE(store.real(MaxDARow), kSystemParams[MaxDARow].number);
        QCOMPARE(store.real(CutOffRow), kSystemParams[CutOffRow].number);
    }

    void system_param_loads_saves_and_gives_every_row() {
        ParamStore before(kSystemParamFile, kSystemParams, SystemRowCount);
        change(before, kSystemParams, SystemRowCount, 1);
        QVERIFY(before.save());
        checkSystemParam(before);
        ParamStore next("/next.ini", kSystemParams, SystemRowCount);
        change(next, kSystemParams, SystemRowCount, 2);
        setSystemParam(next);
        checkSystemParam(next);
        QVERIFY(SystemParam::Instance()->Save());
        compare(ParamStore(kSystemParamFile, kSystemParams, SystemRowCount), kSystemParams, SystemRowCount, 2);
    }

    void the_loop_delay_is_not_stored() {
        SystemParam::Instance()->LoopMarkDelay(12.5);
        QCOMPARE(SystemParam::Instance()->GetLoopMarkDelay(), 12.5);
        QVERIFY(SystemParam::Instance()->Save());
        QVERIFY(!fileBytes(tessera::rootPath(kSystemParamFile)).contains("=12.5\n"));
    }

    void the_canvas_is_never_seen_half_set() {
        SystemParam& param = *SystemParam::Instance();
        param.SetCanvas(100.0, 100.0, 100.0, 100.0);
        std::atomic<bool> stop{false};
        std::atomic<bool> mixed{false};
        std::thread reader([&] {
            while (!stop) {
                QRectF const canvas = param.GetCanvasRect();
                if (canvas.width() != canvas.height() || canvas.center() != QPointF(canvas.width(), canvas.width()))
                    mixed = true;
            }
        });
        for (int i = 1; i < 5000; ++i)
            param.SetCanvas(2.0 * i, 2.0 * i, 2.0 * i, 2.0 * i);
        stop = true;
        reader.join();
        QVERIFY(!mixed);
    }

    void glass_param_survives() {
        GlassParam& glass = *GlassParam::Instance();
        QCOMPARE(glass.GetSafeTrigerType(), SafeTrigerStop);
        QVERIFY(!glass.IsCheckeSafeInRun());
        QCOMPARE(glass.QPulseWidthType(), 0);
        glass.SetCheckSafeInRun(true);
        glass.SetSafeTrigerType(SafeTrigerPause);
        glass.SetShowLaserAlarm(false);
        QVERIFY(glass.SaveParam());
        ParamStore const stored(kGlassParamFile, kGlassParams, GlassRowCount);
        QVERIFY(stored.flag(CheckSafeInRunRow));
        QCOMPARE(stored.integer(SafeTrigerTypeRow), 1);
        QVERIFY(!stored.flag(ShowLaserAlarmRow));
    }

    void any_other_triger_type_pauses() {
        GlassParam::Instance()->SetSafeTrigerType(static_cast<SafeTrigerType>(3));
        QCOMPARE(GlassParam::Instance()->GetSafeTrigerType(), SafeTrigerPause);
    }

    void marking_param_survives_and_refuses_types_that_are_not_there() {
        MarkingMParam_VZ& marking = *MarkingMParam_VZ::Instance();
        marking.SetMarkCardType(MarkCardYLM);
        marking.SetAutoSetCardType(true);
        marking.SetIPG100WType(FilberAPD);
        QVERIFY(marking.SaveParaData());
        ParamStore const stored(kMarkingParamFile, kMarkingParams, MarkingRowCount);
        QCOMPARE(stored.integer(MarkCardTypeRow), 5);
        QVERIFY(stored.flag(AutoSetCardTypeRow));
        QCOMPARE(stored.integer(FilberTypeRow), 3);
        marking.SetMarkCardType(static_cast<MarkCardType>(6));
        QCOMPARE(marking.GetMarkCardType(), MarkCardFilber);
    }

    void box_splice_turns_then_shifts_what_is_stored() {
        DOT3 points[] = {{10.0, 0.0, 3.0}, {0.0, 10.0, 0.0}};
        QVERIFY(BoxSpliceParam::Save(1, 5.0, -2.0, 90.0));
        QCOMPARE(BoxSpliceParam::m_EnableSplice, 0);
        BoxSpliceParam::ChangeManualBox(points, 2);
        QVERIFY(qAbs(points[0].X - 5.0) < 1e-12 && qAbs(points[0].Y - 8.0) < 1e-12 && points[0].Z == 3.0);
        QVERIFY(qAbs(points[1].X + 5.0) < 1e-12 && qAbs(points[1].Y + 2.0) < 1e-12);
        BoxSpliceParam::Read();
        QCOMPARE(BoxSpliceParam::m_EnableSplice, 1);
        QCOMPARE(BoxSpliceParam::m_OffsetX, 5.0);
        QCOMPARE(BoxSpliceParam::m_OffsetY, -2.0);
        QCOMPARE(BoxSpliceParam::m_OffsetA, 90.0);
    }

    void box_splice_switched_off_changes_nothing() {
        QVERIFY(BoxSpliceParam::Save(0, 5.0, -2.0, 90.0));
        DOT3 point{1.0, 2.0, 0.0};
        BoxSpliceParam::ChangeManualBox(&point, 1);
        QCOMPARE(QPointF(point.X, point.Y), QPointF(1.0, 2.0));
        QVERIFY(BoxSpliceParam::Save(1, 5.0, -2.0, 0.0));
        BoxSpliceParam::ChangeManualBox(&point, 0);
        BoxSpliceParam::ChangeManualBox(nullptr, 3);
        QCOMPARE(QPointF(point.X, point.Y), QPointF(1.0, 2.0));
    }

    void motion_parameters_survive_field_by_field() {
        Class_CardPara changed;
        int count = 0;
        moveFields(changed, kCardFields, count);
        for (std::size_t i = 0; i < kAxisSlots; ++i) {
            moveFields(changed.Axis[i], kAxisFields, count);
            moveFields(changed.Home[i], kHomeFields, count);
        }
        changed.AxisCount = 6;
        IniFile file(tessera::rootPath("/motion.ini"));
        QVERIFY(file.change([&changed](IniDocument& document) {
            storeCardPara(changed, document);
            return true;
        }));
        Class_CardPara loaded;
        loadCardPara(loaded, file);
        QCOMPARE(textOf(loaded), textOf(changed));
        QVERIFY(textOf(Class_CardPara()) != textOf(changed));
        QCOMPARE(textOf(changed).count('='), count);
    }

    void motion_parameters_defaults_and_a_count_out_of_range() {
        Class_CardPara const fresh;
        QVERIFY(!fresh.EnableMotion);
        QCOMPARE(fresh.Axis[2].Name, QString("Z"));
        QCOMPARE(fresh.Axis[2].MotorNo, 3);
        QCOMPARE(fresh.Home[2].Order, 2);
        IniFile file(tessera::rootPath("/count.ini"));
        QVERIFY(file.change([](IniDocument& d) { return d.setValue(kCardSection, "AxisCount", "99"); }));
        Class_CardPara loaded;
        loadCardPara(loaded, file);
        QCOMPARE(loaded.AxisCount, static_cast<int>(kAxisSlots));
    }

    void motion_parameters_are_saved_by_a_copy_too() {
        Class_CardPara copy = *Class_CardPara::Instance();
        copy.Axis[0].Screw = 4.5;
        QVERIFY(copy.SaveParaData());
        Class_CardPara loaded;
        loadCardPara(loaded, IniFile(tessera::rootPath(kCardParaFile)));
        QCOMPARE(loaded.Axis[0].Screw, 4.5);
        QCOMPARE(Class_CardPara::Instance()->Axis[0].Screw, 10.0);
    }

    void calibration_record_has_twenty_lines_with_the_light_pairs_last() {
        StandardCalibParam record;
        record.MaxArea = 100.0;
        record.TestSize = 1.0 / 3.0;
        record.OffsetX = -0.5;
        record.OffsetY = 1234567.0;
        record.Angle = 45.0;
        record.Mirror1IsX = false;
        record.Mirror1Reverse = true;
        record.Mirror1 = {1.1, 1.2, 1.3, 1.4, 1.5, 1.6};
        record.Mirror2 = {2.1, 2.2, 2.3, 2.4, 2.5, 2.6};
        QByteArray const expected = "100\n0.333333\n-0.5\n1.23457e+06\n45\n0\n1\n0\n1.1\n1.2\n1.3\n1.4\n2.1\n2.2\n2.3\n"
                                    "2.4\n1.5\n1.6\n2.5\n2.6\n";
        QCOMPARE(standardCalibText(record), expected);
        QVERIFY(!record.Save());
        record.FileName = "Box.txt";
        QVERIFY(record.Save());
        QCOMPARE(fileBytes(tessera::rootPath("/ini/Box.txt")), expected);
    }

    void calibration_record_leaves_what_stands_behind_it() {
        QFile file(tessera::rootPath("/ini/Tail.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(400, 'x'));
        file.close();
        StandardCalibParam record;
        record.FileName = "Tail.txt";
        QVERIFY(record.Save());
        QByteArray const text = standardCalibText(record);
        QCOMPARE(fileBytes(file.fileName()), text + QByteArray(400 - text.size(), 'x'));
    }

    void calibration_record_comes_back_or_is_refused_whole() {
        StandardCalibParam record;
        record.FileName = "Back.txt";
        record.Angle = 12.5;
        record.Mirror2Reverse = true;
        record.Mirror2.LightOffset = -3.25;
        QVERIFY(record.Save());
        StandardCalibParam loaded;
        loaded.FileName = "Back.txt";
        QVERIFY(loadStandardCalib(loaded));
        QCOMPARE(standardCalibText(loaded), standardCalibText(record));
        QFile file(tessera::rootPath("/ini/Back.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("1\n2\nnan\n");
        file.close();
        QVERIFY(!loadStandardCalib(loaded));
        QCOMPARE(loaded.Angle, 12.5);
    }

    void board_data() {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QByteArray>("model");
        QTest::addColumn<int>("board");
        QTest::newRow("desktop") << "" << QByteArray() << 0;
        QTest::newRow("raspberry") << "" << QByteArray("Raspberry Pi 4 Model B Rev 1.1") << 1;
        QTest::newRow("rockchip") << "" << QByteArray("Rockchip RK3399 Board") << 0;
        QTest::newRow("setting wins") << "1" << QByteArray("Rockchip RK3399 Board") << 1;
        QTest::newRow("setting wins back") << "0" << QByteArray("Raspberry Pi 4") << 0;
        QTest::newRow("unknown number") << "7" << QByteArray() << 0;
        QTest::newRow("no number") << "x" << QByteArray("Raspberry Pi") << 1;
    }

    void board() {
        QFETCH(QString, setting);
        QFETCH(QByteArray, model);
        QTEST(sim::boardType(setting, model), "board");
    }

    void the_board_follows_the_environment() {
        qputenv("TESSERA_BOARD", "1");
        QCOMPARE(GetCMType(), 1);
        qputenv("TESSERA_BOARD", "0");
        QCOMPARE(GetCMType(), 0);
        qunsetenv("TESSERA_BOARD");
    }

    void usb_mounts_are_found_below_the_root_with_escapes() {
        QByteArray const mounts = "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                  "30 22 8:17 / /media/pi/MY\\040STICK rw - vfat /dev/sdb1 rw\n"
                                  "31 22 8:33 / /mediaother rw - vfat /dev/sdc1 rw\n"
                                  "32 22 8:49 / /media/second rw - vfat /dev/sdd1 rw\nshort line\n";
        QCOMPARE(mountPointsBelow(mounts, "/media"), QStringList({"/media/pi/MY STICK", "/media/second"}));
    }

    void usb_path_follows_the_media_root() {
        QTemporaryDir media;
        qputenv("TESSERA_MEDIA_ROOT", media.path().toUtf8());
        QString path = "unchanged";
        QVERIFY(!SystemParam::Instance()->GetUsbPath(path));
        QCOMPARE(path, QString("unchanged"));
        QVERIFY(QDir(media.path()).mkpath("STICK"));
        QVERIFY(SystemParam::Instance()->GetUsbPath(path));
        QCOMPARE(path, media.filePath("STICK"));
        qunsetenv("TESSERA_MEDIA_ROOT");
    }
};

QTEST_GUILESS_MAIN(TestParameters)
#include "tst_parameters.moc"
