// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/simcontrol.h"

#include "simengine/card/bordersettings.h"
#include "simengine/card/cardcore.h"
#include "simengine/card/fitteddevices.h"
#include "simengine/card/headsettings.h"
#include "simengine/card/markedrows.h"
#include "simengine/card/measurement.h"
#include "simengine/card/traceexport.h"
#include "simengine/log/runtimes.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/panel/panelwindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

namespace {

SimActivity activityOf(Activity activity) {
    switch (activity) {
    case Activity::Running:
        return SimActivity::Running;
    case Activity::Paused:
        return SimActivity::Paused;
    case Activity::Waiting:
        return SimActivity::Waiting;
    case Activity::Idle:
        break;
    }
    return SimActivity::Idle;
}

class MachineControl final : public SimControl {
public:
    /// The axes make the names of their faults known.
    MachineControl() { simulatedAxes(); }

    unsigned version() const override { return kSimControlVersion; }

    SimCardState state() const override {
        SimCardState state;
        const HeadState head = m_card.head();
        state.open = m_card.isOpen();
        state.activity = activityOf(head.activity);
        state.status = static_cast<int>(m_card.state());
        state.type = static_cast<int>(m_card.kind());
        state.waitCode = m_card.waitCode();
        state.inputs = m_card.io().inputs();
        state.outputs = m_card.io().outputs();
        state.errorOutput = m_card.errorOutput();
        state.waveNumber = m_card.devices().waveNumber();
        state.x = head.at.x;
        state.y = head.at.y;
        const Point spot = m_card.spot();
        state.spotX = spot.x;
        state.spotY = spot.y;
        state.laser = head.laser;
        state.pen = head.pen;
        state.runTimeMs = m_card.bufferRunTimeMs();
        state.jobs = m_card.runner().jobs();
        state.speed = m_card.speed();
        state.markInfo = m_card.markInfo();
        state.scanState = m_card.scanState();
        state.alarmWord = m_card.alarmWord();
        state.encoder = m_card.encoder().count();
        state.gridCorrection = m_card.isOpen() && m_card.headWay().hasGrid();
        return state;
    }

    SimJobTime lastJobTime() const override {
        const JobTime time = m_card.lastTime();
        return {time.jumpMs, time.markMs, time.delayMs, time.totalMs, time.markedMm, time.jumpedMm, time.vertices};
    }

    bool setInput(int bit, bool on) override { return m_card.io().setInput(bit, on); }
    void setInputs(std::uint32_t word) override { m_card.io().setInputs(word); }
    void setEncoder(int position) override { m_card.encoder().setCount(position); }

    std::vector<SimCall> journal(std::uint64_t since, std::size_t limit) const override {
        std::vector<SimCall> calls;
        for (JournalEntry& entry : m_card.journal().since(since, limit))
            calls.push_back({entry.sequence, entry.ms, std::move(entry.name), std::move(entry.args)});
        return calls;
    }
    std::uint64_t journalEnd() const override { return m_card.journal().lastSequence(); }
    void clearJournal() override { m_card.journal().clear(); }
    void setJournalEnabled(bool on) override { m_card.journal().setEnabled(on); }

    SimOutcome writeTrace(const std::string& file, std::string& error, bool commanded) const override {
        QString reason;
        const TraceSnapshot rows = m_card.trace().snapshot();
        const SimOutcome outcome =
            sim::writeTrace(commanded ? rows.commanded() : rows, QString::fromStdString(file), reason);
        error = reason.toStdString();
        return outcome;
    }

    std::size_t followTrace(std::uint64_t& pass, std::size_t& from, std::vector<SimTraceRow>& rows,
                            std::size_t limit) const override {
        const TraceSnapshot snapshot = m_card.trace().snapshot();
        if (pass != snapshot.pass())
            from = 0;
        pass = snapshot.pass();
        rows.clear();
        for (; from < snapshot.size() && rows.size() < limit; ++from) {
            forEachMarked(snapshot, from, from + 1, [&rows](const TraceRow& row, const Point& commanded, bool vertex) {
                rows.push_back({row.ms, row.at.x, row.at.y, commanded.x, commanded.y, row.pen, row.laser, row.drawn,
                                row.power, vertex});
            });
        }
        return rows.size();
    }

    std::size_t traceSize(std::uint64_t& pass) const override {
        const TraceSnapshot snapshot = m_card.trace().snapshot();
        pass = snapshot.pass();
        return snapshot.size();
    }

    std::vector<std::string> faultNames() const override { return m_card.faults().names(); }
    bool faultIsOn(const std::string& name) const override { return m_card.faults().isOn(name); }
    bool setFault(const std::string& name, bool on) override { return m_card.setFault(name, on); }
    void clearFaults() override { m_card.clearFaults(); }

    bool setSpeed(double factor) override {
        if (!(factor >= 0.0) || !std::isfinite(factor))
            return false;
        m_card.setSpeed(factor);
        return true;
    }
    void setHardwareBits(std::uint32_t word) override { m_card.devices().setHardwareBits(word); }

    SimOutcome setHead(const SimHeadDistortion& distortion, std::string& error) override {
        return setHeadDistortion(distortion, error);
    }
    bool head(SimHeadDistortion& distortion, std::string&) const override {
        distortion = headDistortion();
        return true;
    }
    SimOutcome measureHead(const std::string& file, std::string& error) override {
        return measureFigures(m_card, QString::fromStdString(file), error);
    }
    bool showPanel(bool on, std::string& error) override { return PanelWindow::showPanel(*this, on, error); }
    std::vector<SimDevice> devices() const override { return machineDevices(); }
    SimOutcome setDevice(const std::string& name, double value, std::string& error) override {
        return setMachineDevice(name, value, error);
    }
    SimOutcome writeFlash(const std::string& file, std::uint32_t address, std::uint32_t size,
                          std::string& error) const override {
        return writeFlashImage(file, address, size, error);
    }
    SimBorder border() const override {
        const BorderSettings settings = readBorderSettings();
        const bool hull = settings.outline == BorderOutline::Hull;
        return {hull ? SimBorderOutline::Hull : SimBorderOutline::Rectangle, settings.speed};
    }
    bool setBorder(const SimBorder& border, std::string& error) override {
        if (!(border.speed >= 0.0) || !std::isfinite(border.speed)) {
            error = "the speed must be 0 or more";
            return false;
        }
        const bool hull = border.outline == SimBorderOutline::Hull;
        if (writeBorderSettings({hull ? BorderOutline::Hull : BorderOutline::Rectangle, border.speed}))
            return true;
        error = "/ini/VZMarkPara.cfg cannot be written";
        return false;
    }

    std::vector<SimRunTime> runTimes(const std::string& document, std::size_t limit) const override {
        std::vector<SimRunTime> times;
        for (const RunTime& run : RunTimes::instance().newest(QString::fromStdString(document), limit))
            times.push_back({run.document.toStdString(), run.when.toMSecsSinceEpoch(), run.estimateMs, run.actualMs,
                             run.wallMs, run.whole, run.selectedOnly});
        return times;
    }

private:
    CardCore& m_card = simulatedCard();
};

} // namespace

} // namespace sim

sim::SimControl* tessera_sim_control() {
    static sim::MachineControl control;
    return &control;
}

void tessera_sim_finish_records() {
    sim::RunTimes::instance().flush();
}
