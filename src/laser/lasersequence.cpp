// SPDX-License-Identifier: MIT
#include "laser/lasersequence.h"

namespace tessera {

namespace {

// Lines of the marking card.
constexpr int kFibreEnableOut = 21;
constexpr int kShutterOut = 23;
constexpr int kRemoteStartOut = 26;
constexpr int kTypeOut = 29;
constexpr int kReadyIn = 22; ///< active low: Ready of one family, EMISS_22 of the other
constexpr int kRdyIn = 23;   ///< active low

/// Of the YLR types: 1 and 5 differ by this bit alone.
constexpr int kYlmBit = 4;

constexpr LaserStep write(int line, int value, LaserWhen when = LaserWhen::Always) {
    return {LaserStepKind::Write, when, line, value, 0, 0, nullptr, nullptr};
}

constexpr LaserStep writeType() {
    return {LaserStepKind::WriteType, LaserWhen::Always, kTypeOut, 0, 0, 0, nullptr, nullptr};
}

constexpr LaserStep pause(int ms, char const* what, LaserWhen when = LaserWhen::Always) {
    return {LaserStepKind::Pause, when, -1, 0, ms, 0, what, nullptr};
}

constexpr LaserStep awaitLow(int line, int reads, int ms, char const* what, char const* notice) {
    return {LaserStepKind::AwaitLow, LaserWhen::Always, line, 0, ms, reads, what, notice};
}

constexpr LaserStep kFibreStartSteps[] = {
    write(kFibreEnableOut, 1, LaserWhen::FibreEnable),
};

constexpr LaserStep kFibreEndSteps[] = {
    write(kFibreEnableOut, 0, LaserWhen::FibreEnable),
};

constexpr LaserStep kYlrStartSteps[] = {
    write(kShutterOut, 0, LaserWhen::ShutterBySoftware),
    write(kRemoteStartOut, 1, LaserWhen::RemotePulse),
    pause(2000, "远程启动脉冲", LaserWhen::RemotePulse),
    write(kRemoteStartOut, 0, LaserWhen::RemotePulse),
    pause(200, "输出线路稳定"),
    writeType(),
    pause(500, "激光器类型切换", LaserWhen::ShutterBySoftware),
    write(kShutterOut, 1, LaserWhen::ShutterBySoftware),
};

constexpr LaserStep kYlrEndSteps[] = {
    write(kShutterOut, 0, LaserWhen::ShutterBySoftware),
};

constexpr LaserStep kYlsStartSteps[] = {
    write(kShutterOut, 1),
    pause(1000, "光闸使能生效"),
    write(kRemoteStartOut, 1),
    pause(100, "远程启动生效"),
    awaitLow(kReadyIn, 301, 100, "YLS激光Ready信号", "YLS激光等待Ready信号超时,请确认"),
};

/// The shutter is opened and the emission awaited after a failed RDY_23 too: the operator has seen the notice.
constexpr LaserStep kSnStartSteps[] = {
    write(kRemoteStartOut, 1),
    awaitLow(kRdyIn, 201, 50, "施恩激光器RDY_23信号", "施恩激光器等待RDY_23超时,请确认"),
    write(kShutterOut, 1),
    awaitLow(kReadyIn, 201, 50, "施恩激光器EMISS_22信号", "施恩激光器等待EMISS_22超时,请确认"),
};

constexpr LaserStep kYlsSnEndSteps[] = {
    write(kShutterOut, 0),
    pause(1000, "光闸关闭"),
    write(kRemoteStartOut, 0),
};

constexpr LaserStep kTypeChangeSteps[] = {
    write(kShutterOut, 0), pause(200, "光闸关闭"), writeType(), pause(500, "激光器类型切换"), write(kShutterOut, 1),
};

constexpr char kStartTitle[] = "激光器启动中";

template<std::size_t N>
constexpr LaserSequence shown(LaserStep const (&steps)[N]) {
    return {kStartTitle, steps, N};
}

template<std::size_t N>
constexpr LaserSequence unseen(LaserStep const (&steps)[N]) {
    return {nullptr, steps, N};
}

bool wanted(LaserWhen when, LaserChoices const& choices) {
    switch (when) {
    case LaserWhen::ShutterBySoftware:
        return choices.shutterBySoftware;
    case LaserWhen::RemotePulse:
        return choices.remotePulse;
    case LaserWhen::FibreEnable:
        return choices.fibreEnable;
    case LaserWhen::Always:
        break;
    }
    return true;
}

bool awaitLine(LaserStep const& step, LaserPort& port) {
    for (int read = 0; read < step.reads; ++read) {
        if (port.Input(step.line) == 0)
            return true;
        port.Wait(step.ms);
    }
    return false;
}

/// Tells the screen of a wait before it begins.
void showWait(LaserSequence const& sequence, LaserStep const& step, LaserPort& port) {
    if (!sequence.title)
        return;
    if (step.kind == LaserStepKind::Pause)
        port.WaitBegins({step.what, -1, step.ms});
    if (step.kind == LaserStepKind::AwaitLow)
        port.WaitBegins({step.what, step.line, step.reads * step.ms});
}

void runStep(LaserStep const& step, LaserChoices const& choices, LaserPort& port) {
    switch (step.kind) {
    case LaserStepKind::Write:
        port.SetOutput(step.line, step.value);
        break;
    case LaserStepKind::WriteType:
        port.SetOutput(step.line, choices.laserType);
        break;
    case LaserStepKind::Pause:
        port.Wait(step.ms);
        break;
    case LaserStepKind::AwaitLow:
        if (!awaitLine(step, port))
            port.Notice(step.notice);
        break;
    }
}

} // namespace

const LaserSequence kFibreStart = shown(kFibreStartSteps);
const LaserSequence kFibreEnd = unseen(kFibreEndSteps);
const LaserSequence kYagStart = {kStartTitle, nullptr, 0};
const LaserSequence kYlrStart = shown(kYlrStartSteps);
const LaserSequence kYlrEnd = unseen(kYlrEndSteps);
const LaserSequence kYlsStart = shown(kYlsStartSteps);
const LaserSequence kSnStart = shown(kSnStartSteps);
const LaserSequence kYlsSnEnd = unseen(kYlsSnEndSteps);
const LaserSequence kTypeChange = unseen(kTypeChangeSteps);

bool IsYlrType(int cardType) {
    return (cardType & ~kYlmBit) == 1;
}

LaserFamily LaserFamilyOf(int cardType, int variant) {
    constexpr LaserFamily kVariants[] = {LaserFamily::Ylr, LaserFamily::Yls, LaserFamily::Sn};
    if (IsYlrType(cardType))
        return variant >= 0 && variant < 3 ? kVariants[variant] : LaserFamily::None;
    if (cardType == 0)
        return LaserFamily::Fibre;
    return cardType == 2 ? LaserFamily::Yag : LaserFamily::None;
}

void RunLaserSequence(LaserSequence const& sequence, LaserChoices const& choices, LaserPort& port) {
    if (sequence.title)
        port.SequenceBegins(sequence.title);
    for (LaserStep const& step : sequence) {
        if (!wanted(step.when, choices))
            continue;
        showWait(sequence, step, port);
        runStep(step, choices, port);
    }
    if (sequence.title)
        port.SequenceEnds();
}

} // namespace tessera
