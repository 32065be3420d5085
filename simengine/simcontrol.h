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

/// Raised with every change of this file that is not an addition at the end of SimControl, be it of a meaning only.
constexpr unsigned kSimControlVersion = 4;
constexpr char kSimControlSymbol[] = "tessera_sim_control";
constexpr char kSimFinishRecordsSymbol[] = "tessera_sim_finish_records";

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
    double spotX = 0.0; ///< mm, where the spot is on the workpiece
    double spotY = 0.0;
    bool laser = false;
    int pen = 0;
    double runTimeMs = 0.0; ///< time of the last job as GetBufferRunTime() gives it
    std::uint64_t jobs = 0; ///< jobs that came to the card so far
    double speed = 1.0;     ///< simulated seconds a second, 0 as fast as possible
    std::uint32_t markInfo = 0;
    std::uint32_t scanState = 0;
    std::uint32_t alarmWord = 0;
    int encoder = 0;
    bool gridCorrection = false; ///< a high-precision correction table is in force
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

/// The line on which a border preview goes round a job: the rectangle round it, or its convex hull.
enum class SimBorderOutline { Rectangle, Hull };

struct SimBorder {
    SimBorderOutline outline = SimBorderOutline::Rectangle;
    double speed = 0.0; ///< mm/s; 0 for the red-light speed of the first stroke's pen
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
    double commandedX = 0.0; ///< mm
    double commandedY = 0.0;
    int pen = 0;
    bool laser = false;
    bool drawn = false; ///< part of a contour, with the laser or the pilot beam; else a jump
    /// Percent of the laser's full power reached here, straight from the row before; of a jump what it opens with.
    double power = 0.0;
    bool vertex = true; ///< else a place on a way that the head bends
};

/// Distortion between the position to which the mirrors are sent and the marked one. The pilot beam's own values come
/// first, then skew and scale, trapezoid and barrel, rotation and offset. Shares hold 50 mm from the middle.
struct SimHeadDistortion {
    double scaleX = 1.0; ///< 0.1 to 10; below 0 for an inverted mirror
    double scaleY = 1.0;
    double rotation = 0.0; ///< degrees, -360 to 360, counter-clockwise
    double offsetX = 0.0;  ///< mm, -100 to 100
    double offsetY = 0.0;
    double barrel = 0.0;      ///< share of growth, times the square of the distance from the middle, -0.5 to 0.5
    double trapezoidX = 0.0;  ///< share by which X grows from the field's middle to its upper edge, -0.4 to 0.4
    double trapezoidY = 0.0;  ///< share by which Y grows from the field's middle to its right edge
    double skew = 0.0;        ///< degrees by which the Y axis leans to the right, -45 to 45
    double pilotScaleX = 1.0; ///< of the pilot beam beside the laser, 0.1 to 10
    double pilotScaleY = 1.0;
    double pilotOffsetX = 0.0; ///< mm, -100 to 100
    double pilotOffsetY = 0.0;
    double noise = 0.0; ///< mm, 0 to 1: standard deviation of X and of Y of a vertex, and once more of a measurement
    double seed = 0.0;  ///< of the noise, a whole number of 32 bits
};

/// How an order to the machine ended.
enum class SimOutcome {
    Done,
    NotThere,  ///< the machine has no such part
    BadValue,  ///< a value is out of its limits
    NoFigures, ///< there is nothing to be measured: no job yet, one on the card, or nothing of the kind in the last one
    FileError, ///< a file could not be written
    TooLarge,  ///< there is more to be written than the form has room for
};

/// Estimate and time of one laser run.
struct SimRunTime {
    std::string document;     ///< path of its file
    std::int64_t whenMs = 0;  ///< its beginning, ms since 1970, UTC
    double estimateMs = -1.0; ///< of the card's time, made from the document; below 0 when none could be made
    double actualMs = 0.0;    ///< of the card
    double wallMs = 0.0;      ///< by the wall's clock, with preparation, pauses and end signal
    bool whole = false;       ///< not stopped
    bool selectedOnly = false;
};

/// A value of what stands beside the card: belt, encoder, beam splitter, flash.
struct SimDevice {
    std::string name;
    double value = 0.0;
    double low = 0.0; ///< limits
    double high = 0.0;
    bool settable = false;
};

/// All calls from any thread, from the loading of the engine to the end of the process. Texts and names of files are
/// UTF-8, whatever the locale.
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

    /// Writes the trace of the last job; the ending .csv, .svg or .png decides the form. The places are those that were
    /// marked, with `commanded` those that were told. A drawing has room for 10 million points, a table for every
    /// trace. TooLarge when that is too few, BadValue for another ending, FileError when the file cannot be written,
    /// with a reason in `error`.
    virtual SimOutcome writeTrace(const std::string& file, std::string& error, bool commanded = false) const = 0;
    /// Rows marked since the last call, for a display that follows: keep `pass` and `from` between calls, both 0 at
    /// first; `from` counts vertices. A changed pass means that the rows before are to be forgotten. Ends with the
    /// vertex with which `limit` rows are reached; the head may bend the way to it by 999 rows more. Returns the number
    /// of rows.
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

    /// Sets the head for the jobs to come and keeps it for the next start of the program; the noise begins anew. What
    /// is not done changes nothing and has a reason in `error`.
    virtual SimOutcome setHead(const SimHeadDistortion& distortion, std::string& error) = 0;
    /// False with a reason in `error` when the machine has no head whose distortion can be set.
    virtual bool head(SimHeadDistortion& distortion, std::string& error) const = 0;
    /// Writes where the crosses of the last job came to lie, or its mark points when it has no crosses, as a
    /// measurement file: "x,y" in mm a line, six significant digits, in the order of marking, with the noise of an
    /// instrument.
    virtual SimOutcome measureHead(const std::string& file, std::string& error) = 0;

    /// Shows or hides the machine's own window. Main thread. False with a reason in `error` when there is none.
    virtual bool showPanel(bool on, std::string& error) = 0;

    /// How the next border preview goes round its job. The card keeps it in its parameter file.
    virtual SimBorder border() const = 0;
    /// False with a reason in `error` for a speed below 0 or not finite, and when the file cannot be written.
    virtual bool setBorder(const SimBorder& border, std::string& error) = 0;

    /// The newest laser runs of a document, of all documents with an empty path; the newest first. A run is there soon
    /// after its end, when its estimate has been made.
    virtual std::vector<SimRunTime> runTimes(const std::string& document, std::size_t limit) const = 0;

    virtual std::vector<SimDevice> devices() const = 0;
    /// What is not done changes nothing and has a reason in `error`.
    virtual SimOutcome setDevice(const std::string& name, double value, std::string& error) = 0;
    /// Writes a part of the card's flash as a file, or with `size` 0 all that was ever written to it.
    virtual SimOutcome writeFlash(const std::string& file, std::uint32_t address, std::uint32_t size,
                                  std::string& error) const = 0;

    /// Vertices of the trace so far and its pass: followTrace() from there on gives only what comes later.
    virtual std::size_t traceSize(std::uint64_t& pass) const = 0;

protected:
    ~SimControl() = default;
};

using SimControlFunction = SimControl* (*)();
using SimFinishRecordsFunction = void (*)();

} // namespace sim

/// The control of the one simulated machine. Never null in an engine that has it.
extern "C" __attribute__((visibility("default"))) sim::SimControl* tessera_sim_control();

/// Waits until the times of the runs so far are in their file, which is written a moment later: for who is about to
/// take its folder away. Any thread. A function of its own, since it needs no machine and makes none.
extern "C" __attribute__((visibility("default"))) void tessera_sim_finish_records();
