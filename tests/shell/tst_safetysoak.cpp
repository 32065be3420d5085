// SPDX-License-Identifier: MIT
#include "shell/alarmmask.h"
#include "tests/shell/supervisionfixture.h"
#include "tests/support/processstatus.h"

#include <QDir>
#include <QElapsedTimer>
#include <random>

using namespace tests;

namespace {

constexpr int kUsualPolls = 45'000;
/// Of one shift of 24 hours at a poll every 30 ms.
constexpr int kPollsADay = 24 * 3600 * 1000 / 30;
/// Memory is compared with that after this share of the polls: until then caches and lists fill.
constexpr int kWarmUpShare = 10;
/// At least so many: the window of the log has then been full and trimmed.
constexpr int kLeastWarmUp = 15'000;
constexpr int kSamples = 20;
/// The allocator keeps what a larger moment once needed. The sanitizers keep what was given back for a while, up to 256
/// MiB, and find what is lost themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kAllowedGrowth = 3.0;
#else
constexpr double kAllowedGrowth = 1.05;
#endif

/// The given number, or TESSERA_SOAK of the environment for a long run; "day" is one of 24 hours.
int polls() {
    if (qgetenv("TESSERA_SOAK") == "day")
        return kPollsADay;
    const int wanted = qEnvironmentVariableIntValue("TESSERA_SOAK");
    return wanted > 0 ? wanted : kUsualPolls;
}

struct Sample {
    int poll = 0;
    long residentKb = 0;
    int files = 0;
    int threads = 0;
};

Sample sampleNow(int poll) {
    Sample sample;
    sample.poll = poll;
    sample.residentKb = processStatus("VmRSS:");
    sample.threads = int(processStatus("Threads:"));
    sample.files = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
    return sample;
}

} // namespace

/// Supervision for as long as a day, its polls given one behind the other, with inputs that flap all the time.
class SafetySoakTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginSupervision(); }
    void cleanup() {
        machine().setJournalEnabled(true);
        endSupervision();
    }
    void memory_files_and_threads_stay_flat_while_inputs_flap();

private:
    void flap(int poll);
    void letJobBegin();
    std::mt19937 m_random{24};
    unsigned int m_word = 0;
};

/// Doors that bounce, alarms that come and go, starts, pauses and stops; now and then minutes without a change.
void SafetySoakTest::flap(int poll) {
    if (poll / 2000 % 4 == 3 || m_random() % 4 != 0)
        return;
    const unsigned int kind = m_random() % 8;
    if (kind < 3)
        m_word ^= 1U << (InReady + m_random() % (InputCount - InReady));
    else if (kind < 5)
        m_word &= 0xFFFFU >> (16 - InReady);
    else if (kind < 7)
        m_word ^= 1U << InRun;
    else
        m_word ^= 1U << (m_random() % 2 ? InStop : InPause);
    machine().setInputs(m_word);
}

/// Polls follow each other within microseconds here; a job needs a moment to come to the card. A run that is held
/// before its job has begun has none.
void SafetySoakTest::letJobBegin() {
    QElapsedTimer time;
    time.start();
    while (!isRunning() && dialog().IsRunning() && !time.hasExpired(20))
        QCoreApplication::processEvents();
}

void SafetySoakTest::memory_files_and_threads_stay_flat_while_inputs_flap() {
    start(false);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    machine().setSpeed(kSlowJob);
    watchLaser();
    const int all = polls();
    // The machine keeps its last 200,000 calls: a short run would see only how that record fills.
    machine().setJournalEnabled(all >= kPollsADay);
    const int warmUp = qMax(all / kWarmUpShare, kLeastWarmUp);
    QVERIFY2(all > warmUp, "TESSERA_SOAK is too short to tell anything");
    QVector<Sample> samples;
    int alarms = 0;
    for (int i = 0; i < all; ++i) {
        const unsigned int before = window().GetSafeAlarm();
        const bool ran = dialog().IsRunning();
        flap(i);
        window().timerUpDate();
        alarms += (window().GetSafeAlarm() & ~before) != 0;
        QCoreApplication::processEvents();
        if (!ran && dialog().IsRunning())
            letJobBegin();
        if (i >= warmUp && (i - warmUp) % (all / kSamples) == 0)
            samples.append(sampleNow(i));
    }
    samples.append(sampleNow(all));
    const unsigned int sight = (m_word >> InReady) & 1023U;
    QCOMPARE(window().GetSafeAlarm(), sight);
    const auto jobs = machine().state().jobs;
    QVERIFY2(alarms > all / 100 && jobs > std::uint64_t(all) / 1000,
             qPrintable(QStringLiteral("%1 alarms, %2 jobs").arg(alarms).arg(jobs)));
    Sample const& reference = samples.first();
    for (Sample const& sample : qAsConst(samples)) {
        const double ratio = double(sample.residentKb) / double(reference.residentKb);
        qInfo("after %8d polls (%5.2f h): %7ld kB, ratio %5.3f, %3d files, %3d threads", sample.poll,
              sample.poll * 30.0 / 3600e3, sample.residentKb, ratio, sample.files, sample.threads);
        QVERIFY2(ratio <= kAllowedGrowth, "memory grew");
        // A sample may meet the file of the counter or a run's worker that another does not.
        QVERIFY2(sample.files <= reference.files + 2, "files were left open");
        QVERIFY2(sample.threads <= reference.threads + 2, "threads were left");
    }
    qInfo("%d alarms, %llu jobs", alarms, static_cast<unsigned long long>(jobs));
}

QTEST_MAIN(SafetySoakTest)
#include "tst_safetysoak.moc"
