// SPDX-License-Identifier: MIT
#include "randomdocument.h"

#include "engine/markshapecontainer.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardlink.h"
#include "simengine/document/runplan.h"
#include "simengine/log/runtimes.h"
#include "simengine/view/marktoolaccess.h"
#include "support/temporaryroot.h"
#include "support/waitfor.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTest>
#include <thread>

using namespace sim;
using playback::RandomDocument;

/// The estimate of a document beside the time that its run takes, and the record of both.
class EstimateTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void estimate_is_within_one_percent_of_200_documents();
    void estimate_holds_at_fifty_times_real_time();
    void selection_alone_is_estimated();
    void what_the_head_left_behind_counts();
    void end_signal_is_told_beside_the_card_time_data();
    void end_signal_is_told_beside_the_card_time();
    void runs_are_kept_side_by_side();
    void stopped_run_is_kept_without_a_ratio();
    void previews_are_not_kept();
    void equal_passes_are_kept_each();
    void edited_document_is_estimated_as_it_was_at_the_start();
    void records_outlive_the_program_and_stay_few();
    void of_a_grown_file_the_newest_are_kept_data();
    void of_a_grown_file_the_newest_are_kept();
    void damaged_records_are_passed_over();

private:
    double estimated(bool selectedOnly = false) const;
    bool run(bool selectedOnly = false);
    void makeRandom(unsigned seed);

    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<Document> m_document;
    std::unique_ptr<MarkShapeContainer> m_container;
    std::unique_ptr<VZMarkCard> m_card;
};

void EstimateTest::init() {
    m_root = std::make_unique<tests::TemporaryRoot>();
    QVERIFY(m_root->isValid());
    LayerData::InitLayerData();
    m_card = std::make_unique<VZMarkCard>();
    simulatedCard().setSpeed(0.0);
    m_card->OpenCard();
    QVERIFY(m_card->IsCardOpend());
    makeRandom(1);
}

void EstimateTest::cleanup() {
    RunTimes::instance().flush();
    m_card->CloseCard();
    m_card.reset();
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
    SystemParam::Instance()->SetChaneLayerDelay(0);
    m_container.reset();
    m_document.reset();
    m_root.reset();
}

void EstimateTest::makeRandom(unsigned seed) {
    m_container.reset();
    m_document = std::make_unique<Document>();
    m_document->setFileName(m_root->path(QStringLiteral("MarkFile/document%1.mkf").arg(seed)));
    m_container = MarkShapeContainerAccess::make(*m_document);
    RandomDocument random(seed);
    QVERIFY(random.fill(*m_document));
    SystemParam* system = SystemParam::Instance();
    system->SetInvertX(random.one(2));
    system->SetInvertY(random.one(2));
    system->SetChaneLayerDelay(random.whole(0, 5));
    for (int i = random.one(5) ? random.whole(1, 3) : 0; i > 0; --i) {
        CCDBufdata record;
        record.Values = {random.number(-5, 5), random.number(-5, 5), random.number(-30, 30)};
        record.Valid = !random.one(4);
        m_container->AddCCDBuf(record);
    }
}

/// From the document, before the run.
double EstimateTest::estimated(bool selectedOnly) const {
    const RunPlan plan = currentPlan(m_document->state(), MarkShapeContainerAccess::options(*m_container, selectedOnly),
                                     penTable(*m_document->pens(), kLayerCount, {}));
    return JobTimeline::make(timelineJob(plan))->time().totalMs;
}

/// As the run dialog runs a document.
bool EstimateTest::run(bool selectedOnly) {
    m_card->SetMarkStaus(MarkStatusRun);
    m_card->SetMarkType(MarkTypeLaser);
    m_card->DownLayerPara(m_document->pens(), kLayerCount);
    const bool ran = m_container->StartMark(selectedOnly, false, m_document->pens());
    m_card->SetMarkStaus(MarkStatusStop);
    return ran;
}

void EstimateTest::estimate_is_within_one_percent_of_200_documents() {
    constexpr int kDocuments = 200;
    double worst = 0.0;
    unsigned worstSeed = 0;
    int ran = 0;
    double longest = 0.0;
    for (unsigned seed = 1; ran < kDocuments && seed < 2 * kDocuments; ++seed) {
        makeRandom(seed);
        const double estimate = estimated();
        if (!run()) {
            QCOMPARE(estimate, 0.0); // nothing in it works, or all of its records are invalid
            continue;
        }
        ++ran;
        const double actual = m_card->GetBufferRunTime();
        longest = std::max(longest, actual);
        const double off = std::abs(actual / estimate - 1.0);
        if (!(off <= worst)) {
            worst = off;
            worstSeed = seed;
        }
    }
    qInfo("%d documents, the longest %.1f s; worst ratio of time to estimate: 1 +- %.3g (document %u)", ran,
          longest / 1000.0, worst, worstSeed);
    QCOMPARE(ran, kDocuments);
    QVERIFY2(worst < 0.01, qPrintable(QString::number(worst)));
}

void EstimateTest::estimate_holds_at_fifty_times_real_time() {
    constexpr double kFactor = 50.0;
    constexpr double kLongest = 30000.0; // ms of the machine
    simulatedCard().setSpeed(kFactor);
    double worst = 0.0, worstWall = 0.0;
    int ran = 0;
    for (unsigned seed = 1000; ran < 10 && seed < 1100; ++seed) {
        makeRandom(seed);
        const double estimate = estimated();
        if (estimate < 1000.0 || estimate > kLongest)
            continue;
        QElapsedTimer clock;
        clock.start();
        QVERIFY(run());
        const double wall = double(clock.nsecsElapsed()) / 1e6 * kFactor;
        worst = std::max(worst, std::abs(m_card->GetBufferRunTime() / estimate - 1.0));
        worstWall = std::max(worstWall, std::abs(wall / estimate - 1.0));
        ++ran;
    }
    qInfo("%d documents at %g times real time: worst ratio 1 +- %.3g; by the wall's clock 1 +- %.3g", ran, kFactor,
          worst, worstWall);
    QCOMPARE(ran, 10);
    QVERIFY(worst < 0.01);
}

void EstimateTest::selection_alone_is_estimated() {
    for (unsigned seed = 300; seed < 310; ++seed) {
        makeRandom(seed);
        m_document->select({0});
        const double estimate = estimated(true);
        if (run(true))
            QVERIFY(std::abs(m_card->GetBufferRunTime() / estimate - 1.0) < 1e-6);
        else
            QCOMPARE(estimate, 0.0);
    }
}

/// The first jump begins where the run before ended.
void EstimateTest::what_the_head_left_behind_counts() {
    makeRandom(5);
    const double first = estimated();
    QVERIFY(run());
    QVERIFY(std::abs(m_card->GetBufferRunTime() / first - 1.0) < 1e-6);
    const double second = estimated();
    QVERIFY(first != second);
    QVERIFY(run());
    QVERIFY(std::abs(m_card->GetBufferRunTime() / second - 1.0) < 1e-6);
}

void EstimateTest::end_signal_is_told_beside_the_card_time_data() {
    QTest::addColumn<bool>("enable");
    QTest::addColumn<int>("way");
    QTest::addColumn<double>("ms");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("off") << false << 0 << 0.0 << false;
    QTest::newRow("after its duration") << true << 0 << 40.0 << false;
    QTest::newRow("with the next run") << true << 1 << 0.0 << false;
    QTest::newRow("acknowledged") << true << 2 << 0.0 << true;
    QTest::newRow("nobody waits") << true << 3 << 0.0 << false;
}

void EstimateTest::end_signal_is_told_beside_the_card_time() {
    QFETCH(bool, enable);
    QFETCH(int, way);
    QFETCH(double, ms);
    QFETCH(bool, acknowledge);
    EndSignalSettings settings;
    settings.enable = enable;
    settings.output = 3;
    settings.clear = static_cast<EndSignalClear>(way);
    settings.duration = 40;
    settings.ackTimeout = 700;
    const EndSignalWait wait = endSignalWait(settings);
    QCOMPARE(wait.ms, ms);
    QCOMPARE(wait.acknowledge, acknowledge);
    QCOMPARE(wait.mostMs, acknowledge ? 700.0 : 0.0);
    settings.output = -1;
    QCOMPARE(endSignalWait(settings).ms, 0.0);
    QVERIFY(!endSignalWait(settings).acknowledge);
}

void EstimateTest::runs_are_kept_side_by_side() {
    makeRandom(6);
    const QDateTime before = QDateTime::currentDateTimeUtc().addMSecs(-1);
    const double estimate = estimated();
    QVERIFY(run());
    RunTimes::instance().flush();
    const std::vector<RunTime> runs = RunTimes::instance().newest(m_document->fileName(), 10);
    QCOMPARE(int(runs.size()), 1);
    QCOMPARE(runs[0].document, m_document->fileName());
    QCOMPARE(runs[0].estimateMs, estimate);
    QCOMPARE(runs[0].actualMs, m_card->GetBufferRunTime());
    QVERIFY(runs[0].whole && !runs[0].selectedOnly);
    QVERIFY(std::abs(runs[0].ratio() - 1.0) < 1e-6);
    QVERIFY(runs[0].wallMs > 0.0);
    QVERIFY(runs[0].when >= before && runs[0].when <= QDateTime::currentDateTimeUtc());
    QVERIFY(m_root->exists(QStringLiteral("/ini/RunTimes.jsonl")));
    QVERIFY(RunTimes::instance().newest(QStringLiteral("/another.mkf"), 10).empty());
    QCOMPARE(int(RunTimes::instance().newest({}, 10).size()), 1);
}

void EstimateTest::stopped_run_is_kept_without_a_ratio() {
    makeRandom(6);
    simulatedCard().setSpeed(1.0);
    std::thread runner([this] { QVERIFY(run()); });
    QVERIFY(tests::waitFor([] { return simulatedCard().head().activity == Activity::Running; }));
    m_card->StopMark();
    runner.join();
    RunTimes::instance().flush();
    const std::vector<RunTime> runs = RunTimes::instance().newest(m_document->fileName(), 10);
    QCOMPARE(int(runs.size()), 1);
    QVERIFY(!runs[0].whole);
    QCOMPARE(runs[0].ratio(), 0.0);
    QVERIFY(runs[0].actualMs < runs[0].estimateMs);
}

void EstimateTest::previews_are_not_kept() {
    makeRandom(6);
    m_card->SetMarkStaus(MarkStatusRun);
    m_card->SetMarkType(MarkTypeRedPreview);
    m_card->DownLayerPara(m_document->pens(), kLayerCount);
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    RunTimes::instance().flush();
    QVERIFY(RunTimes::instance().newest({}, 10).empty());
}

void EstimateTest::equal_passes_are_kept_each() {
    makeRandom(6);
    for (int i = 0; i < 30; ++i)
        QVERIFY(run());
    RunTimes::instance().flush();
    const std::vector<RunTime> runs = RunTimes::instance().newest(m_document->fileName(), 100);
    QCOMPARE(runs.size(), RunTimeFile::kPerDocument);
    for (const RunTime& kept : runs)
        QVERIFY(std::abs(kept.ratio() - 1.0) < 1e-6);
    QVERIFY(runs.front().when >= runs.back().when);
}

void EstimateTest::edited_document_is_estimated_as_it_was_at_the_start() {
    makeRandom(6);
    const double estimate = estimated();
    QVERIFY(run());
    m_document->selectAll();
    QVERIFY(m_document->edit(edits::removeSelected));
    RunTimes::instance().flush();
    QCOMPARE(RunTimes::instance().newest(m_document->fileName(), 1).front().estimateMs, estimate);
}

void EstimateTest::records_outlive_the_program_and_stay_few() {
    const QString path = m_root->path(QStringLiteral("ini/times.jsonl"));
    QString error;
    {
        RunTimeFile file;
        file.open(path);
        QVERIFY(file.runs().empty());
        for (int i = 0; i < 6000; ++i) {
            RunTime run;
            run.document = QStringLiteral("/MarkFile/%1.mkf").arg(i % 300);
            run.when = QDateTime::fromMSecsSinceEpoch(1700000000000 + i, Qt::UTC);
            run.estimateMs = i + 0.125;
            run.actualMs = i + 0.25;
            run.whole = true;
            file.add(run);
            QVERIFY(file.runs().size() <= RunTimeFile::kAll);
            if (i % 100 == 99)
                QVERIFY2(file.save(error), qPrintable(error));
        }
        QVERIFY(QFile(path).size() <= RunTimeFile::kMaxBytes);
    }
    RunTimeFile again;
    again.open(path);
    QVERIFY(again.runs().size() >= RunTimeFile::kAll / 2 && again.runs().size() <= RunTimeFile::kAll);
    const RunTime& last = again.runs().back();
    QCOMPARE(last.estimateMs, 5999.125);
    QCOMPARE(last.actualMs, 5999.25);
    QCOMPARE(last.document, QStringLiteral("/MarkFile/299.mkf"));
    QCOMPARE(last.when.toMSecsSinceEpoch(), 1700000005999LL);
    QVERIFY(last.whole);
    RunTime more = last;
    for (std::size_t i = 0; i < 2 * RunTimeFile::kPerDocument; ++i)
        again.add(more);
    const auto ofDocument = [&](const RunTime& run) { return run.document == more.document; };
    QCOMPARE(std::size_t(std::count_if(again.runs().begin(), again.runs().end(), ofDocument)),
             RunTimeFile::kPerDocument);
}

void EstimateTest::of_a_grown_file_the_newest_are_kept_data() {
    QTest::addColumn<int>("documents");
    QTest::addColumn<int>("kept");
    QTest::newRow("of few documents") << 100 << 2000;
    QTest::newRow("of many documents") << 130 << 2000;
    QTest::newRow("of one document") << 1 << 20;
}

/// Runs of each document, one document after the other.
void EstimateTest::of_a_grown_file_the_newest_are_kept() {
    QFETCH(int, documents);
    QFETCH(int, kept);
    QByteArray bytes;
    const int each = 3000 / documents;
    for (int i = 0; i < documents * each; ++i) {
        RunTime run;
        run.document = QString::number(i / each);
        run.when = QDateTime::fromMSecsSinceEpoch(1700000000000 + i, Qt::UTC);
        bytes += lineOf(run);
    }
    QVERIFY(bytes.size() <= 2 * RunTimeFile::kMaxBytes);
    QVERIFY(m_root->write(QStringLiteral("/ini/times.jsonl"), bytes));
    RunTimeFile file;
    file.open(m_root->path(QStringLiteral("ini/times.jsonl")));
    QCOMPARE(int(file.runs().size()), kept);
    QHash<QString, int> counts;
    for (const RunTime& run : file.runs()) {
        const int count = ++counts[run.document];
        const int expected = run.document.toInt() * each + each - int(RunTimeFile::kPerDocument) + count - 1;
        QCOMPARE(run.when.toMSecsSinceEpoch(), 1700000000000 + expected);
    }
    QCOMPARE(file.runs().back().document, QString::number(documents - 1));
}

void EstimateTest::damaged_records_are_passed_over() {
    RunTime run;
    run.document = QStringLiteral("/MarkFile/\"a\n文.mkf");
    run.when = QDateTime::fromMSecsSinceEpoch(1700000000000, Qt::UTC);
    run.estimateMs = 10.0;
    const QByteArray good = lineOf(run);
    QCOMPARE(good.count('\n'), 1);
    QVERIFY(m_root->write(QStringLiteral("/ini/times.jsonl"), QByteArray("not a record\n{}\n") + good +
                                                                  "{\"when\":\"x\"}\n" + QByteArray(70000, '\0') +
                                                                  "\n" + good + good.left(good.size() / 2)));
    RunTimeFile file;
    file.open(m_root->path(QStringLiteral("ini/times.jsonl")));
    QCOMPARE(int(file.runs().size()), 2);
    QCOMPARE(file.runs()[0].document, run.document);
    QVERIFY(!file.isSaved()); // the rest goes with the next save
    QString error;
    file.add(run);
    QVERIFY2(file.save(error), qPrintable(error));
    QCOMPARE(m_root->read(QStringLiteral("/ini/times.jsonl")), good + good + good);
}

QTEST_MAIN(EstimateTest)
#include "tst_estimate.moc"
