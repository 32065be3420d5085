// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/simcontrol.h"

#include "simengine/card/cardcore.h"
#include "simengine/card/traceexport.h"
#include "simengine/panel/panelwindow.h"

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
        state.laser = head.laser;
        state.pen = head.pen;
        state.runTimeMs = m_card.bufferRunTimeMs();
        state.jobs = m_card.runner().jobs();
        state.speed = m_card.speed();
        state.markInfo = m_card.markInfo();
        state.scanState = m_card.scanState();
        state.alarmWord = m_card.alarmWord();
        state.encoder = m_card.devices().encoder();
        return state;
    }

    SimJobTime lastJobTime() const override {
        const JobTime time = m_card.lastTime();
        return {time.jumpMs, time.markMs, time.delayMs, time.totalMs, time.markedMm, time.jumpedMm, time.vertices};
    }

    bool setInput(int bit, bool on) override { return m_card.io().setInput(bit, on); }
    void setInputs(std::uint32_t word) override { m_card.io().setInputs(word); }
    void setEncoder(int position) override { m_card.devices().setEncoder(position); }

    std::vector<SimCall> journal(std::uint64_t since, std::size_t limit) const override {
        std::vector<SimCall> calls;
        for (JournalEntry& entry : m_card.journal().since(since, limit))
            calls.push_back({entry.sequence, entry.ms, std::move(entry.name), std::move(entry.args)});
        return calls;
    }
    std::uint64_t journalEnd() const override { return m_card.journal().lastSequence(); }
    void clearJournal() override { m_card.journal().clear(); }
    void setJournalEnabled(bool on) override { m_card.journal().setEnabled(on); }

    bool writeTrace(const std::string& file, std::string& error) const override {
        QString reason;
        const bool ok = sim::writeTrace(m_card.trace().snapshot(), QString::fromStdString(file), reason);
        error = reason.toStdString();
        return ok;
    }

    std::size_t followTrace(std::uint64_t& pass, std::size_t& from, std::vector<SimTraceRow>& rows,
                            std::size_t limit) const override {
        std::vector<TraceRow> read;
        m_card.trace().readSince(pass, from, read, limit);
        rows.clear();
        rows.reserve(read.size());
        for (const TraceRow& row : read)
            rows.push_back({row.ms, row.at.x, row.at.y, row.pen, row.laser, row.drawn, row.power});
        return rows.size();
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

    bool setHead(const SimHeadDistortion&, std::string& error) override { return hasNo("head", error); }
    bool head(SimHeadDistortion&, std::string& error) const override { return hasNo("head", error); }
    bool measureHead(const std::string&, std::string& error) const override { return hasNo("head", error); }
    bool showPanel(bool on, std::string& error) override { return PanelWindow::showPanel(*this, on, error); }

private:
    /// For what this build of the machine does not contain.
    static bool hasNo(const char* part, std::string& error) {
        error = std::string("this machine has no ") + part;
        return false;
    }

    CardCore& m_card = simulatedCard();
};

} // namespace

} // namespace sim

sim::SimControl* tessera_sim_control() {
    static sim::MachineControl control;
    return &control;
}
