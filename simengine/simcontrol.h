// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

/// Control of the simulated machine from outside the boundary: what a plant, a test bench and a person at the panel do.
/// Found at run time by the symbol tessera_sim_control, so that a program links and runs with another engine as well:
///
///     auto find = reinterpret_cast<sim::SimControlFunction>(dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
///     sim::SimControl* control = find ? find() : nullptr;
///     if (control && control->version() != sim::kSimControlVersion)
///         control = nullptr;
namespace sim {

/// Raised with every change of this file that is not an addition at the end of SimControl.
constexpr unsigned kSimControlVersion = 2;
constexpr char kSimControlSymbol[] = "tessera_sim_control";

enum class SimActivity { Idle, Running, Paused, Waiting };

struct SimCardState {
    bool open = false;
    SimActivity activity = SimActivity::Idle;
    int status = 2;   ///< run state: 0 run, 1 pause, 2 stop
    int type = 0;     ///< kind of the next job: 0 laser, 1 red light, 2 border
    int waitCode = 0; ///< 0 nothing, 1 input, 2 motion module, 3 encoder, 4 mirrors
    std::uint32_t inputs = 0;
    std::uint32_t outputs = 0;
    bool errorOutput = false;
    int waveNumber = 0; ///< on the waveform outputs
    double x = 0.0;     ///< mm, commanded position of the head
    double y = 0.0;
    bool laser = false;
    int pen = 0;
    double runTimeMs = 0.0; ///< time of the last job as GetBufferRunTime() gives it
    std::uint64_t jobs = 0; ///< jobs that came to the card so far
    double speed = 1.0;     ///< simulated seconds a second, 0 as fast as possible
    std::uint32_t markInfo = 0;
    std::uint32_t scanState = 0;
    std::uint32_t alarmWord = 0;
    int encoder = 0;
};

/// Where the time of the last job went: ms and mm.
struct SimJobTime {
    double jumpMs = 0.0;
    double markMs = 0.0;
    double delayMs = 0.0;
    double totalMs = 0.0;
    double markedMm = 0.0;
    double jumpedMm = 0.0;
    std::size_t vertices = 0;
};

using SimValue = std::variant<std::int64_t, double, std::string>;

/// One recorded call at the boundary.
struct SimCall {
    std::uint64_t sequence = 0;
    double ms = 0.0; ///< steady clock since the machine was made
    std::string name;
    std::vector<SimValue> args;
};

/// One vertex of the trace.
struct SimTraceRow {
    double ms = 0.0;
    double x = 0.0; ///< mm, as marked
    double y = 0.0;
    int pen = 0;
    bool laser = false;
    bool drawn = false; ///< part of a contour, with the laser or the pilot beam; else a jump
    /// Percent of the laser's full power reached here, straight from the row before; of a jump what it opens with.
    double power = 0.0;
};

/// Distortion between the commanded and the marked position.
struct SimHeadDistortion {
    double scaleX = 1.0;
    double scaleY = 1.0;
    double rotation = 0.0;   ///< degrees, counter-clockwise
    double barrel = 0.0;     ///< share of growth at the edge of the field
    double trapezoidX = 0.0; ///< share by which X grows from the field's middle to its upper edge
    double trapezoidY = 0.0; ///< share by which Y grows from the field's middle to its right edge
    double noise = 0.0;      ///< mm, standard deviation of a position
};

/// All calls from any thread, from the loading of the engine to the end of the process.
class SimControl {
public:
    /// kSimControlVersion of the engine.
    virtual unsigned version() const = 0;

    virtual SimCardState state() const = 0;
    virtual SimJobTime lastJobTime() const = 0;

    /// Inputs are set whether the card is open or not. False for a bit outside 0 to 31.
    virtual bool setInput(int bit, bool on) = 0;
    virtual void setInputs(std::uint32_t word) = 0;
    virtual void setEncoder(int position) = 0;

    /// Calls with a sequence number above `since`, oldest first, at most `limit`.
    virtual std::vector<SimCall> journal(std::uint64_t since, std::size_t limit = SIZE_MAX) const = 0;
    /// Sequence number of the newest call so far.
    virtual std::uint64_t journalEnd() const = 0;
    virtual void clearJournal() = 0;
    virtual void setJournalEnabled(bool on) = 0;

    /// Writes the trace of the last job; the ending .csv, .svg or .png decides the form. False with a reason in
    /// `error` when the ending is another one or the file cannot be written.
    virtual bool writeTrace(const std::string& file, std::string& error) const = 0;
    /// Rows marked since the last call, for a display that follows: keep `pass` and `from` between calls, both 0 at
    /// first. A changed pass means that the rows before are to be forgotten. Returns the number of rows.
    virtual std::size_t followTrace(std::uint64_t& pass, std::size_t& from, std::vector<SimTraceRow>& rows,
                                    std::size_t limit = 65536) const = 0;

    virtual std::vector<std::string> faultNames() const = 0;
    virtual bool faultIsOn(const std::string& name) const = 0;
    /// False for an unknown name.
    virtual bool setFault(const std::string& name, bool on) = 0;
    virtual void clearFaults() = 0;

    /// 1 real time, 10 ten times as fast, 0 as fast as possible; false for a negative or invalid factor.
    virtual bool setSpeed(double factor) = 0;
    /// Bits that the hardware word shows besides those of the laser type (bits 5 to 7).
    virtual void setHardwareBits(std::uint32_t word) = 0;

    /// False with a reason in `error` when the machine has no head whose distortion can be set, or for values that
    /// are not finite.
    virtual bool setHead(const SimHeadDistortion& distortion, std::string& error) = 0;
    virtual bool head(SimHeadDistortion& distortion, std::string& error) const = 0;
    /// Writes the crosses of the last job as a measurement file.
    virtual bool measureHead(const std::string& file, std::string& error) const = 0;

    /// Shows or hides the machine's own window. Main thread. False with a reason in `error` when there is none.
    virtual bool showPanel(bool on, std::string& error) = 0;

protected:
    ~SimControl() = default;
};

using SimControlFunction = SimControl* (*)();

} // namespace sim

/// The control of the one simulated machine. Never null in an engine that has it.
extern "C" __attribute__((visibility("default"))) sim::SimControl* tessera_sim_control();
