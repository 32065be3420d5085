// SPDX-License-Identifier: MIT
#include "engine/drawnparts.h"
#include "run/delayedstop.h"
#include "shell/alarmctrl.h"
#include "tests/shell/safetymodel.h"
#include "tests/shell/supervisionfixture.h"
#include "tests/support/timeoutscale.h"

#include <QCheckBox>
#include <QSpinBox>
#include <condition_variable>
#include <random>
#include <thread>

using namespace tests;

namespace {

constexpr int kUsualInjections = 3000;
constexpr int kWatchdogMs = 30000;
/// The laser's fault lines.
constexpr unsigned int kHot = 3U << 22;
/// Real pace of the jobs; the slow one does not end by itself.
constexpr double kSpeeds[] = {0.0, 1.0, 10.0, 1000.0, kSlowJob};

/// The given number, or TESSERA_STORM of the environment for a long run.
int injections() {
    const int wanted = qEnvironmentVariableIntValue("TESSERA_STORM");
    return wanted > 0 ? wanted : kUsualInjections;
}

/// Ends the process when nothing is told to it for too long: a deadlock then shows where every thread stands.
class Watchdog {
public:
    Watchdog()
        : m_thread([this] { watch(); }) {}
    ~Watchdog() {
        {
            const std::lock_guard<std::mutex> lock(m_lock);
            m_end = true;
        }
        m_wake.notify_all();
        m_thread.join();
    }
    void alive() { ++m_beats; }

private:
    void watch() {
        std::unique_lock<std::mutex> lock(m_lock);
        for (int seen = -1;
             !m_wake.wait_for(lock, std::chrono::milliseconds(scaled(kWatchdogMs)), [this] { return m_end; });) {
            if (seen == m_beats)
                qFatal("nothing has gone on for %d ms behind injection %d", scaled(kWatchdogMs), seen);
            seen = m_beats;
        }
    }
    std::atomic<int> m_beats{0};
    std::mutex m_lock;
    std::condition_variable m_wake;
    bool m_end = false;
    std::thread m_thread;
};

/// What the storm has met, so that a run which met nothing does not pass for a good one.
struct StormCount {
    int starts = 0, stops = 0, holds = 0, resumes = 0, closings = 0, alarms = 0, rewirings = 0;
    int stopsOfRuns = 0;    ///< stops of a job that was on the card
    int looksWhileHeld = 0; ///< looks at the trace after an acknowledged stop or hold
    int marksWhileFree = 0; ///< looks that found new marks when marking was allowed
};

} // namespace

/// Random events, poll by poll, into jobs under way: the program beside a model of what it is to decide.
class SafetyStormTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginSupervision(); }
    void cleanup();
    void nothing_is_marked_after_a_stop_and_alarms_lamps_and_runs_follow_the_model();

private:
    QString inject();
    void toggle(unsigned int bits) { m_word ^= bits; }
    void toggleInput();
    void becomeReady();
    void rewireFunction();
    void turnCard();
    void pressStart();
    QString poll();
    QString compare(PollResult const& expected, unsigned int before);
    QString judgeStep();
    QString judgeMarks(char const* when);
    int newMarks();
    QString indicator();
    void hold(char const* by);
    void setFree();
    template<typename T>
    T* part(char const* name) {
        return dialog().findChild<T*>(QString::fromLatin1(name));
    }

    std::mt19937 m_random{20};
    SafetyModel m_model;
    unsigned int m_word = 0;
    unsigned int m_mask = 0;
    bool m_open = true;
    bool m_fibreLatched = false;
    QString m_heldBy;
    bool m_held = false;      ///< a stop or hold was acknowledged and nothing has been started since
    bool m_mayResume = false; ///< something in this step was to resume or start
    std::thread m_otherStop;
    QString m_lastMark;
    std::uint64_t m_pass = 0;
    std::size_t m_from = 0;
    StormCount m_count;
};

void SafetyStormTest::cleanup() {
    if (m_otherStop.joinable())
        m_otherStop.join();
    MarkCardInstance::Instance()->OpenCard();
    endSupervision();
}

/// Rows of the trace since the last look that were marked with the laser.
int SafetyStormTest::newMarks() {
    int marks = 0;
    std::vector<sim::SimTraceRow> rows;
    while (machine().followTrace(m_pass, m_from, rows) > 0) {
        for (sim::SimTraceRow const& row : rows) {
            if (!row.laser || !row.drawn)
                continue;
            ++marks;
            m_lastMark = QStringLiteral("pass %1 at %2 ms (%3, %4)").arg(m_pass).arg(row.ms).arg(row.x).arg(row.y);
        }
    }
    return marks;
}

void SafetyStormTest::hold(char const* by) {
    m_held = true;
    m_heldBy = by;
    newMarks();
}

void SafetyStormTest::setFree() {
    m_held = false;
    m_mayResume = true;
}

QString SafetyStormTest::judgeMarks(char const* when) {
    const int marks = newMarks();
    if (!m_held) {
        m_count.marksWhileFree += marks > 0;
        return QString();
    }
    ++m_count.looksWhileHeld;
    return marks == 0 ? QString()
                      : QStringLiteral("%1 rows marked while held by %2, %3; last %4")
                            .arg(QString::number(marks), m_heldBy, QLatin1String(when), m_lastMark);
}

QString SafetyStormTest::indicator() {
    auto const* label = m_Window->child<AlarmCtrl>("alarmSafe")->findChild<QLabel*>(QStringLiteral("labelImg"));
    const QColor colour = label->pixmap(Qt::ReturnByValue).toImage().pixelColor(8, 8);
    return colour.red() > colour.green() ? QStringLiteral("bad") : QStringLiteral("good");
}

void SafetyStormTest::toggleInput() {
    // A preview by input waits for its end and would hold up the storm; that input rests.
    unsigned int bit = 1U << (m_random() % InputCount);
    if (bit == 1U << InPreview)
        bit = 1U << InRun;
    toggle(bit);
}

/// What an operator does towards the next run: the card on, all doors shut and all alarms gone, then the run input.
void SafetyStormTest::becomeReady() {
    if (!m_open) {
        turnCard();
        return;
    }
    unsigned int quiet = m_word & 0xFFFFU >> (16 - InReady);
    for (int i = InReady; i < InputCount; ++i)
        quiet |= ~m_model.machine[kInputNames[i]].InputValue & 1U << i;
    if (m_word != quiet)
        m_word = quiet;
    else
        toggle(1U << InRun);
}

void SafetyStormTest::rewireFunction() {
    char const* name = kInputNames[m_random() % InputCount];
    IOFuncList& real = *IOCheckedSys::Instance()->GetFunObject(QString::fromUtf8(name));
    IOFuncList& modelled = m_model.machine[name];
    real.InputEnable = modelled.InputEnable = !real.InputEnable || m_random() % 4 != 0;
    real.InputValue = modelled.InputValue = m_random() % 4 == 0 ? 0U : real.InputMask;
    ++m_count.rewirings;
}

/// Nobody opens a card again before a run that goes on has found it closed; in a loop that run would set out anew.
void SafetyStormTest::turnCard() {
    if (!m_open && dialog().IsRunning() && machine().state().status != MarkStatusPause)
        return;
    m_open = !m_open;
    if (m_open) {
        MarkCardInstance::Instance()->OpenCard();
        return;
    }
    MarkCardInstance::Instance()->CloseCard();
    ++m_count.closings;
    hold("the card's closing");
}

void SafetyStormTest::pressStart() {
    part<QPushButton>("pushButtonStart")->click();
    // The button pauses a run that goes on; where an alarm refuses it, it does nothing.
    const bool refused = (m_mask & kRefusingAlarms) != 0;
    if (!refused && machine().state().status == MarkStatusPause)
        hold("the button");
    else if (!refused)
        setFree();
}

/// One event from outside, chosen at random. Inputs take effect with the next poll, the rest at once.
QString SafetyStormTest::inject() {
    m_mayResume = false;
    const bool idle = machine().state().activity == sim::SimActivity::Idle;
    const unsigned int kind = idle && m_random() % 4 != 0 ? 0 : m_random() % 100;
    if (kind == 0) {
        becomeReady();
    } else if (kind < 60) {
        toggleInput();
    } else if (kind < 72) {
        toggle(1U << InRun);
    } else if (kind < 76) {
        pressStart();
    } else if (kind < 79) {
        dialog().StopMark();
        hold("a stop");
    } else if (kind < 82) {
        dialog().PauseMark();
        hold("a pause");
    } else if (kind < 85) {
        dialog().ReStartMark();
        setFree();
        ++m_count.resumes;
    } else if (kind < 87) {
        m_otherStop = std::thread([ms = int(m_random() % 3)] { StopWithDelay(ms); });
    } else if (kind < 89) {
        turnCard();
    } else if (kind < 91) {
        rewireFunction();
    } else if (kind < 93) {
        toggle(kHot);
    } else if (kind < 95) {
        GlassParam::Instance()->SetSafeTrigerType(m_random() % 2 ? SafeTrigerPause : SafeTrigerStop);
    } else if (kind < 97) {
        GlassParam::Instance()->SetCheckSafeInRun(m_random() % 4 == 0);
    } else if (kind < 98) {
        machine().setFault("card_alarm", !machine().faultIsOn("card_alarm"));
    } else if (kind < 99) {
        part<QCheckBox>("checkBoxLoopMark")->setChecked(m_random() % 2 != 0);
    } else {
        machine().setSpeed(kSpeeds[m_random() % std::size(kSpeeds)]);
    }
    return QStringLiteral("kind %1, word %2").arg(kind).arg(m_word, 0, 16);
}

/// A poll of the program and one of the model. Empty when both have decided the same.
QString SafetyStormTest::poll() {
    machine().setInputs(m_word);
    if (!m_open) {
        window().timerUpDate();
        return window().GetSafeAlarm() == m_mask ? QString() : QStringLiteral("alarms changed without a card");
    }
    const bool inRunOnly = GlassParam::Instance()->IsCheckeSafeInRun();
    // A job may end or set out between this look and the poll's own.
    const bool surelyRuns = MarkCardInstance::Instance()->GetMarkStatus() != MarkStatusStop;
    const bool onCard = machine().state().activity != sim::SimActivity::Idle;
    const unsigned int before = m_mask;
    const tessera::SafetySettings settings{!inRunOnly || surelyRuns,
                                           GlassParam::Instance()->GetSafeTrigerType() != SafeTrigerStop};
    const PollResult expected = m_model.poll(m_word, settings, m_mask, 1, std::nullopt);
    m_mask = expected.mask;
    window().timerUpDate();
    const auto order = static_cast<tessera::RunOrder>(expected.text.section(' ', -1).toInt());
    const bool stops = expected.text.contains('S') || order == tessera::RunOrder::Stop;
    const bool holds = expected.text.contains('P') || order == tessera::RunOrder::Pause;
    if (stops || holds)
        hold(qPrintable(expected.text));
    if (order == tessera::RunOrder::Start)
        setFree();
    m_count.stops += stops;
    m_count.stopsOfRuns += stops && onCard;
    m_count.holds += holds;
    m_count.starts += order == tessera::RunOrder::Start;
    m_count.alarms += (m_mask & ~before) != 0;
    return compare(expected, before);
}

QString SafetyStormTest::compare(PollResult const& expected, unsigned int before) {
    bool fibre = false;
    if (machine().faultIsOn("card_alarm") && !m_fibreLatched) {
        fibre = m_fibreLatched = true;
        m_mask |= tessera::AlarmLaser;
    }
    if (window().GetSafeAlarm() != m_mask)
        return QStringLiteral("alarms %1 instead of %2").arg(window().GetSafeAlarm()).arg(m_mask);
    if (window().CheckAlarmStatus() != ((m_mask & kRefusingAlarms) == 0))
        return QStringLiteral("a start is refused or allowed by %1").arg(m_mask);
    if (!expected.text.contains(indicator() + ' '))
        return QStringLiteral("indicator for ") + expected.text;
    if ((m_mask != 0 || fibre) && !light(true, false, false))
        return QStringLiteral("lamp is not red with %1").arg(m_mask);
    if (m_mask == 0 && before != 0 && !light(false, false, true))
        return QStringLiteral("lamp is not yellow behind the last alarm");
    if ((RunDataGather::Instance()->GetRunStatus() == RunStatusLaserAlarm) != ((m_word & kHot) == kHot))
        return QStringLiteral("run status does not follow the laser's lines");
    for (char const* name : kInputNames) {
        if (IOCheckedSys::Instance()->GetFunObject(QString::fromUtf8(name))->LastInput !=
            m_model.machine[name].LastInput)
            return QStringLiteral("state of ") + QString::fromUtf8(name);
    }
    return QString();
}

/// What the program may not have done by itself in this step, and what must fit together whatever has happened.
QString SafetyStormTest::judgeStep() {
    if (!m_mayResume && machineCalls("RestartMark") > 0)
        return QStringLiteral("a run was resumed by nobody");
    bool lamp[3] = {};
    IOOutputSet::Instance()->GetLightStatus(lamp[0], lamp[1], lamp[2]);
    if (lamp[0] && (lamp[1] || lamp[2]))
        return QStringLiteral("lamps beside the red one");
    if (m_open && m_mask == 0 && lamp[0])
        return QStringLiteral("lamp is red without an alarm");
    if (m_open && (label("labelRedLamp")->isEnabled() && m_mask == 0))
        return QStringLiteral("red lamp in the status bar without an alarm");
    return judgeMarks("at the end of the step");
}

void SafetyStormTest::nothing_is_marked_after_a_stop_and_alarms_lamps_and_runs_follow_the_model() {
    start(false);
    m_Window->newDocument();
    QVector<DrawnRect> rects;
    for (int i = 0; i < 6; ++i)
        rects.append({QRectF(-20.0 + 6 * i, -10.0, 5.0, 20.0), i, {}});
    QVERIFY(window().GetActiveView()->AddDrawing(rects, {}));
    window().ShowNormalMarkWindow();
    part<QSpinBox>("spinBox")->setValue(1);
    RunLaserStart::Instance()->nFiberAlarm = 1;
    watchLaser();
    for (int i = 0; i < InputCount; ++i) {
        m_model.machine[kInputNames[i]].InputMask = 1U << i;
        m_model.machine[kInputNames[i]].InputValue = 1U << i;
    }
    Watchdog watchdog;
    for (int i = 0, n = injections(); i < n; ++i) {
        watchdog.alive();
        machine().clearJournal();
        const QString what = QStringLiteral("injection %1, ").arg(i) + inject();
        for (int polls = 0; polls < 2; ++polls) {
            const QString difference = poll();
            QVERIFY2(difference.isEmpty(), qPrintable(what + ": " + difference));
            QCoreApplication::processEvents();
        }
        if (m_otherStop.joinable()) {
            m_otherStop.join();
            if (!m_mayResume)
                hold("a stop from another thread");
        }
        // The run's messages may have written their lamps behind the poll's.
        const QString difference = poll() + judgeStep();
        QVERIFY2(difference.isEmpty(), qPrintable(what + ": " + difference));
        const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(m_random() % 300);
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        const QString later = judgeMarks("before the next step");
        QVERIFY2(later.isEmpty(), qPrintable(what + ": " + later));
    }
    qInfo("%d injections: %d starts, %d stops (%d of a job on the card), %d holds, %d resumes, %d alarms, "
          "%d closings, %d rewirings, %llu jobs; %d looks while held, %d found marks while free",
          injections(), m_count.starts, m_count.stops, m_count.stopsOfRuns, m_count.holds, m_count.resumes,
          m_count.alarms, m_count.closings, m_count.rewirings, static_cast<unsigned long long>(machine().state().jobs),
          m_count.looksWhileHeld, m_count.marksWhileFree);
    QVERIFY(m_count.starts > injections() / 200 && m_count.stopsOfRuns > injections() / 200);
    QVERIFY(m_count.marksWhileFree > injections() / 200 && m_count.looksWhileHeld > injections() / 4);
    QVERIFY(m_count.closings > 0 && m_count.holds > 0 && m_count.resumes > 0);
}

QTEST_MAIN(SafetyStormTest)
#include "tst_safetystorm.moc"
