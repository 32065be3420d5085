// SPDX-License-Identifier: MIT
// The simulated head as the machine keeps it: its file, its corrections and its measurements.
#include "headfixture.h"

#include "engine/boxspliceparam.h"
#include "engine/languagemanager.h"
#include "engine/standardcalibparam.h"
#include "simengine/card/cardlink.h"

#include <QDir>
#include <cmath>
#include <thread>

using sim::SimHeadDistortion;
using sim::SimOutcome;

namespace {

QStringList g_messages;

void takeMessage(char const* text, int kind) {
    g_messages.append(QString::number(kind) + ' ' + QString::fromUtf8(text));
}

/// A table that adds 0.25 mm in X everywhere.
QByteArray shiftTable() {
    double const cell[2] = {0.25, 0.0};
    return QByteArray(reinterpret_cast<char const*>(cell), sizeof cell).repeated(257 * 257);
}

} // namespace

class TestHeadMachine : public QObject, private tests::HeadFixture {
    Q_OBJECT

private:
    /// Marks one line and gives its rows.
    static std::vector<sim::SimTraceRow> markLine(double x0, double y0, double x1, double y1,
                                                  MarkType type = MarkTypeLaser) {
        LayerParamEx layers;
        card().DownLayerPara(&layers, 20);
        card().SetMarkType(type);
        card().BeginList(1);
        DOT3 line[] = {{x0, y0, 0}, {x1, y1, 0}};
        card().AddList(line, 2, 0);
        card().EndList();
        std::uint64_t pass = 0;
        std::size_t from = 0;
        std::vector<sim::SimTraceRow> rows;
        machine().followTrace(pass, from, rows);
        return rows;
    }

private slots:
    void initTestCase() { QVERIFY(makeMachine()); }
    void cleanupTestCase() { MarkCardInstance::SetMarkCardInstance(nullptr); }
    void init() {
        VZ_SetFuncMessageDisp(takeMessage, nullptr);
        card().OpenCard();
        QVERIFY(set({}) == SimOutcome::Done);
        QFile::remove(m_root->path("ini/HighPrecisionCali.cl"));
        QFile::remove(m_root->path("ini/VZMarkPara.cfg"));
        VZ_SetCardParaFile(cardFile().constData());
        *card().GetStabtadrCalibParam() = StandardCalibParam();
        card().SetCalibrationParam();
        g_messages.clear();
    }
    void cleanup() {
        card().CloseCard();
        VZ_SetFuncMessageDisp(nullptr, nullptr);
    }

    void nothing_can_be_measured_before_the_first_job() {
        std::string error;
        QVERIFY(machine().state().jobs == 0);
        QVERIFY(machine().measureHead(m_root->path("m.txt").toStdString(), error) == SimOutcome::NoFigures);
        QCOMPARE(error, std::string("nothing has been marked yet"));
        QVERIFY(!m_root->exists("m.txt"));
    }

    void what_was_set_is_read_back_and_outlasts_the_card() {
        SimHeadDistortion wanted;
        wanted.scaleX = 1.01;
        wanted.rotation = -0.5;
        wanted.offsetY = 3.25;
        wanted.barrel = 0.03;
        wanted.skew = 0.125;
        wanted.pilotOffsetX = -1.5;
        wanted.noise = 0.005;
        wanted.seed = 4294967295.0;
        QVERIFY(set(wanted) == SimOutcome::Done);
        card().CloseCard();
        card().OpenCard();
        SimHeadDistortion const now = head();
        QCOMPARE(now.scaleX, 1.01);
        QCOMPARE(now.scaleY, 1.0);
        QCOMPARE(now.rotation, -0.5);
        QCOMPARE(now.offsetY, 3.25);
        QCOMPARE(now.barrel, 0.03);
        QCOMPARE(now.skew, 0.125);
        QCOMPARE(now.pilotOffsetX, -1.5);
        QCOMPARE(now.noise, 0.005);
        QCOMPARE(now.seed, 4294967295.0);
        ProfIniFile file(m_root->path("ini/SimHead.ini"));
        QCOMPARE(file.ReadDouble("Head", "barrel", 0.0), 0.03);
    }

    void a_strange_file_gives_an_ideal_value_for_each_strange_line() {
        QVERIFY(m_root->write("ini/SimHead.ini", "[Head]\nscaleX=0\nscaleY=2\nbarrel=wide\nnoise=-1\nrotation=90\n"));
        card().CloseCard();
        card().OpenCard();
        SimHeadDistortion const now = head();
        QCOMPARE(now.scaleX, 1.0);
        QCOMPARE(now.scaleY, 2.0);
        QCOMPARE(now.barrel, 0.0);
        QCOMPARE(now.noise, 0.0);
        QCOMPARE(now.rotation, 90.0);
    }

    void bad_values_are_refused_and_change_nothing() {
        SimHeadDistortion good;
        good.barrel = 0.02;
        QVERIFY(set(good) == SimOutcome::Done);
        SimHeadDistortion bad = good;
        bad.rotation = 5.0;
        bad.trapezoidX = 0.41;
        std::string error;
        QVERIFY(machine().setHead(bad, error) == SimOutcome::BadValue);
        QVERIFY2(error.find("trapezoidX") != std::string::npos, error.c_str());
        QCOMPARE(head().rotation, 0.0);
        QCOMPARE(head().barrel, 0.02);
    }

    void a_head_that_cannot_be_stored_is_not_changed() {
        QFile::remove(m_root->path("ini/SimHead.ini"));
        QVERIFY(QDir(m_root->path()).mkdir("ini/SimHead.ini"));
        SimHeadDistortion wanted;
        wanted.barrel = 0.02;
        std::string error;
        QVERIFY(machine().setHead(wanted, error) == SimOutcome::FileError);
        QVERIFY(!error.empty());
        QCOMPARE(head().barrel, 0.0);
        QVERIFY(QDir(m_root->path()).rmdir("ini/SimHead.ini"));
    }

    void a_job_is_marked_by_the_head_as_it_was_when_the_job_began() {
        SimHeadDistortion wanted;
        wanted.offsetX = 1.0;
        QVERIFY(set(wanted) == SimOutcome::Done);
        std::vector<sim::SimTraceRow> rows = markLine(0, 0, 10, 0);
        QCOMPARE(rows.back().x, 11.0);
        QCOMPARE(rows.back().commandedX, 10.0);
        QVERIFY(set({}) == SimOutcome::Done);
        std::uint64_t pass = 0;
        std::size_t from = 0;
        machine().followTrace(pass, from, rows);
        QCOMPARE(rows.back().x, 11.0);
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.0);
    }

    void trace_files_have_the_marked_places_and_on_demand_the_commanded_ones() {
        SimHeadDistortion wanted;
        wanted.offsetX = 1.0;
        wanted.barrel = 0.03;
        QVERIFY(set(wanted) == SimOutcome::Done);
        markLine(-50, 50, 50, 50);
        std::string error;
        QCOMPARE(machine().writeTrace(m_root->path("t.csv").toStdString(), error), SimOutcome::Done);
        QCOMPARE(machine().writeTrace(m_root->path("c.csv").toStdString(), error, true), SimOutcome::Done);
        QCOMPARE(machine().writeTrace(m_root->path("t.svg").toStdString(), error), SimOutcome::Done);
        QCOMPARE(machine().writeTrace(m_root->path("t.png").toStdString(), error), SimOutcome::Done);
        // A row a vertex in a table of vertices,
        QList<QByteArray> const marked = m_root->read("t.csv").trimmed().split('\n');
        QList<QByteArray> const told = m_root->read("c.csv").trimmed().split('\n');
        QCOMPARE(marked.size(), 3);
        QVERIFY(marked[2].contains(",54.000000,53.000000,1,0"));
        QVERIFY(told[2].contains(",50.000000,50.000000,1,0"));
        // and the bow of the line in a drawing: its middle is at 51.5.
        QVERIFY(m_root->read("t.svg").contains("1.0000,-51.5000"));
    }

    /// Each of the long ways is bent by 1000 rows: 10.1 million in all.
    void a_trace_of_many_bent_ways_is_followed_in_pieces_and_not_drawn_at_once() {
        SimHeadDistortion wanted;
        wanted.barrel = 0.001;
        QVERIFY(set(wanted) == SimOutcome::Done);
        constexpr int kWays = 10100;
        std::vector<DOT3> line;
        for (int i = 0; i <= kWays; ++i)
            line.push_back({i % 2 ? 600.0 : -600.0, 0, 0});
        card().SetMarkType(MarkTypeLaser);
        card().BeginList(1);
        card().AddList(line.data(), int(line.size()), 0);
        card().EndList();

        std::uint64_t pass = 0;
        std::size_t from = 0;
        std::vector<sim::SimTraceRow> rows;
        QCOMPARE(machine().followTrace(pass, from, rows, 1), std::size_t(1)); // from where the head stood, no way
        std::size_t vertices = from;
        QCOMPARE(machine().followTrace(pass, from, rows, 2500), std::size_t(3000));
        QCOMPARE(from, vertices + 3);
        std::vector<sim::SimTraceRow> next;
        machine().followTrace(pass, from, next, 1);
        QCOMPARE(next.size(), std::size_t(1000));
        QVERIFY(next.back().vertex && rows.back().vertex && !next.front().vertex);
        QVERIFY(next.front().ms > rows.back().ms);
        QCOMPARE(next.back().commandedX, line[4].X);
        std::uint64_t now = 0;
        QCOMPARE(machine().traceSize(now), std::size_t(kWays + 1));
        QCOMPARE(now, pass);

        std::string error;
        QCOMPARE(machine().writeTrace(m_root->path("large.svg").toStdString(), error), SimOutcome::TooLarge);
        QVERIFY2(QString::fromStdString(error).contains("10000000 points"), error.c_str());
        QCOMPARE(machine().writeTrace(m_root->path("large.png").toStdString(), error), SimOutcome::TooLarge);
        QCOMPARE(machine().writeTrace(m_root->path("large.csv").toStdString(), error), SimOutcome::Done);
        QCOMPARE(m_root->read("large.csv").count('\n'), kWays + 2);
        QCOMPARE(machine().writeTrace(m_root->path("large.svg").toStdString(), error, true),
                 SimOutcome::Done); // as commanded: no bows
    }

    void the_spot_is_shown_where_it_is_on_the_workpiece() {
        SimHeadDistortion wanted;
        wanted.scaleX = 2.0;
        wanted.pilotOffsetY = 4.0;
        QVERIFY(set(wanted) == SimOutcome::Done);
        card().SetMarkType(MarkTypeLaser);
        card().MoveMirrorPos(10, 20, 1000.0, 0);
        QCOMPARE(machine().state().x, 10.0);
        QCOMPARE(machine().state().spotX, 20.0);
        QCOMPARE(machine().state().spotY, 20.0);
        card().SetMarkType(MarkTypeRedPreview);
        QCOMPARE(machine().state().spotY, 24.0);
    }

    void distortion_changes_neither_time_nor_lengths() {
        markLine(-50, 50, 50, 50);
        sim::SimJobTime const plain = machine().lastJobTime();
        SimHeadDistortion wanted;
        wanted.scaleX = 1.5;
        wanted.barrel = 0.2;
        wanted.noise = 0.1;
        QVERIFY(set(wanted) == SimOutcome::Done);
        card().MoveMirrorPos(0, 0, 1000.0, 0);
        markLine(-50, 50, 50, 50);
        card().MoveMirrorPos(50, 50, 1000.0, 0);
        sim::SimJobTime const bent = machine().lastJobTime();
        QCOMPARE(bent.markMs, plain.markMs);
        QCOMPARE(bent.markedMm, plain.markedMm);
        QCOMPARE(bent.vertices, plain.vertices);
    }

    void the_box_record_acts_when_the_card_takes_it_over() {
        SimHeadDistortion wanted;
        wanted.scaleX = 0.98;
        QVERIFY(set(wanted) == SimOutcome::Done);
        StandardCalibParam& record = *card().GetStabtadrCalibParam();
        record.Mirror1.Scale = 1.0 * 100.0 / 98.0; // as the scale calculator gives it for 98 instead of 100
        QCOMPARE(markLine(0, 0, 50, 0).back().x, 49.0);
        card().SetCalibrationParam();
        QVERIFY(qAbs(markLine(0, 0, 50, 0).back().x - 50.0) < 1e-9);
    }

    void the_saved_box_record_is_in_force_when_the_card_opens() {
        StandardCalibParam& record = *card().GetStabtadrCalibParam();
        record.Angle = 90.0;
        record.FileName = "StandardCalib.txt";
        QVERIFY(record.Save());
        card().CloseCard();
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        card().OpenCard();
        sim::SimTraceRow const row = markLine(0, 0, 10, 0).back();
        QVERIFY(qAbs(row.x) < 1e-9 && qAbs(row.y - 10.0) < 1e-9);
        QVERIFY(QFile::remove(m_root->path("ini/StandardCalib.txt")));
    }

    void a_record_taken_over_with_the_card_closed_waits_for_the_opening() {
        card().CloseCard();
        card().GetStabtadrCalibParam()->OffsetX = 2.0;
        card().SetCalibrationParam();
        card().OpenCard();
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 12.0);
    }

    void swapped_and_inverted_mirrors_show_in_the_mark() {
        StandardCalibParam& record = *card().GetStabtadrCalibParam();
        record.Mirror1IsX = false;
        record.Mirror2Reverse = true;
        card().SetCalibrationParam();
        sim::SimTraceRow const row = markLine(0, 0, 10, 3).back();
        QCOMPARE(row.x, 3.0);
        QCOMPARE(row.y, -10.0);
    }

    void light_pairs_act_on_previews_alone() {
        StandardCalibParam& record = *card().GetStabtadrCalibParam();
        record.Mirror1.LightScale = 1.1;
        record.Mirror2.LightOffset = 2.0;
        card().SetCalibrationParam();
        sim::SimTraceRow row = markLine(0, 0, 10, 3).back();
        QVERIFY(row.x == 10.0 && row.y == 3.0);
        row = markLine(0, 0, 10, 3, MarkTypeRedPreview).back();
        QVERIFY(qAbs(row.x - 11.0) < 1e-9 && qAbs(row.y - 5.0) < 1e-9);
        row = markLine(0, 0, 10, 3, MarkTypeBorderPreview).back();
        QVERIFY(qAbs(row.x) < 1e-9 && qAbs(row.y - 2.0) < 1e-9); // the border ends where it began
    }

    void the_manual_compensation_turns_and_shifts_documents_and_not_lists() {
        BoxSpliceParam::Read();
        QVERIFY(BoxSpliceParam::Save(1, 5.0, -2.0, 90.0));
        SimHeadDistortion wanted;
        wanted.scaleX = 2.0; // behind the compensation
        QVERIFY(set(wanted) == SimOutcome::Done);
        sim::Job job;
        job.strokes.push_back({0, {{0, 0}, {10, 3}}});
        card().SetMarkType(MarkTypeLaser);
        card().SetMarkStaus(MarkStatusRun);
        QVERIFY(sim::CardRun(false, false).start(job));
        std::uint64_t pass = 0;
        std::size_t from = 0;
        std::vector<sim::SimTraceRow> rows;
        machine().followTrace(pass, from, rows);
        QVERIFY(qAbs(rows.back().x - 2.0 * (-3.0 + 5.0)) < 1e-9 && qAbs(rows.back().y - (10.0 - 2.0)) < 1e-9);
        QVERIFY(rows.back().commandedX == 10.0 && rows.back().commandedY == 3.0);
        QCOMPARE(machine().state().spotX, rows.back().x);
        // A list's points come with it applied already.
        QCOMPARE(markLine(0, 0, 10, 3).back().x, 20.0);
        QCOMPARE(machine().state().spotX, 20.0);
        // A taught place is where a document would mark it.
        card().MoveMirrorPos(10, 3, 1000.0, 0);
        QVERIFY(qAbs(machine().state().spotX - 4.0) < 1e-9);
        QVERIFY(BoxSpliceParam::Save(0, 5.0, -2.0, 90.0));
        QVERIFY(sim::CardRun(false, false).start(job));
        machine().followTrace(pass, from, rows);
        QCOMPARE(rows.back().x, 20.0);
    }

    void the_table_is_in_force_only_while_it_is_enabled() {
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", shiftTable()));
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.0);
        enableTable(true);
        QVERIFY(hasTable());
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.25);
        enableTable(false);
        QVERIFY(!hasTable());
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.0);
        QVERIFY(g_messages.isEmpty());
    }

    void a_table_written_anew_acts_when_the_card_rereads_its_parameters() {
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", shiftTable()));
        enableTable(true);
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", QByteArray(1056784, '\0')));
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.25);
        enableTable(true);
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.0);
    }

    void the_table_is_taken_when_the_card_opens() {
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", shiftTable()));
        card().CloseCard();
        XProfIniFile_CardCfg::Instance()->WriteInt("HARDWARE", "bHighPrecisionCali", 1);
        QVERIFY(!hasTable());
        card().OpenCard();
        QVERIFY(hasTable());
    }

    void the_field_of_the_table_follows_the_counts_a_millimetre() {
        // Without a count the field is that of an uncalibrated card, 140 mm: 69 mm is in it and 71 mm is not.
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", shiftTable()));
        enableTable(true);
        QCOMPARE(markLine(0, 0, 69, 0).back().x, 69.25);
        QCOMPARE(markLine(0, 0, 71, 0).back().x, 71.0);
        ProfIniFile* file = XProfIniFile_CardCfg::Instance();
        file->WriteDouble("Calibration", "VZC1000_NO0_CaliKx", 65535.0 * 8192.0 / 100.0);
        file->WriteDouble("Calibration", "VZC1000_NO0_CaliKy", 65535.0 * 8192.0 / 100.0);
        enableTable(true);
        QCOMPARE(markLine(0, 0, 49, 0).back().x, 49.25);
        QCOMPARE(markLine(0, 0, 51, 0).back().x, 51.0);
        file->WriteDouble("Calibration", "VZC1000_NO0_CaliKx", 0.0); // a field without end
        enableTable(true);
        QVERIFY(!hasTable());
        QCOMPARE(g_messages.size(), 1);
    }

    void a_table_that_is_absent_or_damaged_is_told_and_not_used_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("there");
        QTest::addColumn<int>("kind");
        QTest::newRow("absent") << QByteArray() << false << 0;
        QTest::newRow("empty") << QByteArray("") << true << 1;
        QTest::newRow("cut off") << shiftTable().left(1056783) << true << 1;
        QTest::newRow("a byte too long") << shiftTable() + '\0' << true << 1;
        QTest::newRow("not numbers") << QByteArray(1056784, '\xFF') << true << 1;
        QTest::newRow("text") << QByteArray(1056784, 'x') << true << 1;
    }
    void a_table_that_is_absent_or_damaged_is_told_and_not_used() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, there);
        QFETCH(int, kind);
        QVERIFY(m_root->write("ini/HighPrecisionCali.cl", shiftTable()));
        enableTable(true);
        QVERIFY(hasTable());
        QVERIFY(QFile::remove(m_root->path("ini/HighPrecisionCali.cl")));
        if (there)
            QVERIFY(m_root->write("ini/HighPrecisionCali.cl", bytes));
        enableTable(true);
        QVERIFY(!hasTable());
        QCOMPARE(g_messages.size(), 1);
        QString const text =
            LanguageManager::GetLanText(there ? "高精度校正文件已损坏,不校正" : "没有高精度校正文件,不校正");
        QVERIFY2(g_messages[0].startsWith(QString::number(kind) + ' ' + text), qPrintable(g_messages[0]));
        QVERIFY(g_messages[0].contains("HighPrecisionCali.cl"));
        QCOMPARE(markLine(0, 0, 10, 0).back().x, 10.0);
    }

    void a_measurement_is_a_file_of_points_in_the_order_of_marking() {
        SimHeadDistortion wanted;
        wanted.offsetX = 0.123456789;
        QVERIFY(set(wanted) == SimOutcome::Done);
        markCrosses({{-50, -50}, {-50, 0}, {0, 0}, {100, 20}});
        std::string error;
        QVERIFY2(machine().measureHead(m_root->path("new/m.txt").toStdString(), error) == SimOutcome::Done,
                 error.c_str());
        QCOMPARE(m_root->read("new/m.txt"), QByteArray("-49.8765,-50\n-49.8765,0\n0.123457,0\n100.123,20\n"));
    }

    void measurements_are_noisy_and_follow_from_the_seed() {
        SimHeadDistortion wanted;
        wanted.noise = 0.005;
        wanted.seed = 7;
        auto const measure = [this] {
            std::string error;
            machine().measureHead(m_root->path("m.txt").toStdString(), error);
            return m_root->read("m.txt");
        };
        QVERIFY(set(wanted) == SimOutcome::Done);
        markCrosses({{10, 10}, {20, 20}});
        QByteArray const first = measure();
        QByteArray const second = measure();
        QVERIFY(first != second);
        QVERIFY(set(wanted) == SimOutcome::Done);
        markCrosses({{10, 10}, {20, 20}});
        QCOMPARE(measure(), first);
        QCOMPARE(measure(), second);
        wanted.seed = 8;
        QVERIFY(set(wanted) == SimOutcome::Done);
        markCrosses({{10, 10}, {20, 20}});
        QVERIFY(measure() != first);
    }

    void what_cannot_be_measured_or_written_is_told() {
        std::string error;
        QString const file = m_root->path("none.txt");
        markLine(0, 0, 10, 0);
        QVERIFY(machine().measureHead(file.toStdString(), error) == SimOutcome::NoFigures);
        QCOMPARE(error, std::string("the last job marked neither crosses nor points"));
        QVERIFY(!QFile::exists(file));
        markCrosses({{0, 0}});
        QVERIFY(machine().measureHead("/proc/none/m.txt", error) == SimOutcome::FileError);
        QVERIFY(!error.empty());
    }

    void a_job_that_is_still_on_the_card_is_not_measured() {
        machine().setSpeed(1.0);
        QVERIFY(machine().setFault("wait_input", true));
        std::thread job([] { markCrosses({{0, 0}}); });
        QTRY_VERIFY(machine().state().activity == sim::SimActivity::Waiting);
        std::string error;
        QVERIFY(machine().measureHead(m_root->path("none.txt").toStdString(), error) == SimOutcome::NoFigures);
        QCOMPARE(error, std::string("a job is on the card"));
        machine().clearFaults();
        machine().setSpeed(0.0);
        job.join();
    }
};

QTEST_MAIN(TestHeadMachine)
#include "tst_headmachine.moc"
