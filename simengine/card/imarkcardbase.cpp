// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/imarkcardbase.h"

#include "engine/languagemanager.h"
#include "simengine/card/cardlink.h"
#include "simengine/card/fitteddevices.h"
#include "simengine/card/headsettings.h"
#include "simengine/card/statuswords.h"
#include "simengine/lasers/fittedlaser.h"
#include "simengine/log/logfile.h"
#include "simengine/params/standardcalibfile.h"
#include "simengine/params/storedsplice.h"
#include "support/approot.h"

#include <algorithm>

using namespace sim;

namespace {

/// Points of a polyline that the journal keeps; calibration figures have fewer.
constexpr int kJournalPoints = 16;

constexpr char const* kWaitTexts[] = {"", "等待输入", "等待扩展运动模块", "等待编码器", "等待振镜闭环到达"};

MarkKind kindOf(MarkType type) {
    switch (type) {
    case MarkTypeRedPreview:
        return MarkKind::RedPreview;
    case MarkTypeBorderPreview:
        return MarkKind::BorderPreview;
    case MarkTypeLaser:
        break;
    }
    return MarkKind::Laser;
}

RunState stateOf(MarkStatus status) {
    switch (status) {
    case MarkStatusRun:
        return RunState::Run;
    case MarkStatusPause:
        return RunState::Pause;
    case MarkStatusStop:
        break;
    }
    return RunState::Stop;
}

} // namespace

struct IMarkCardBase::Private {
    CardCore& card = simulatedCard();
    StandardCalibParam calibration;

    Private() {
        calibration.FileName = QStringLiteral("StandardCalib.txt");
        loadStandardCalib(calibration); // the defaults hold until a record has been saved
    }
    void record(char const* name, std::vector<JournalValue> args = {}) { card.journal().add(name, std::move(args)); }
};

IMarkCardBase::IMarkCardBase()
    : d(std::make_unique<Private>()) {}

IMarkCardBase::~IMarkCardBase() = default;

void IMarkCardBase::OpenCard() {
    d->record("OpenCard");
    bool const wasOpen = d->card.isOpen();
    bool const open = d->card.open();
    fitLaser();
    if (open && !wasOpen) {
        fitDevices();
        loadHeadDistortion();
        d->card.headWay().setBox(boxCorrection(d->calibration));
        loadGridCorrection(tessera::rootPath(QStringLiteral("/ini/VZMarkPara.cfg")));
    }
    writeLog(LogKind::OpenCard, open ? QStringLiteral("card opened") : QStringLiteral("card not opened"));
    if (!open)
        showCardMessage(LanguageManager::GetLanText("打开卡失败"), 1);
}

void IMarkCardBase::CloseCard() {
    d->record("CloseCard");
    bool const wasOpen = d->card.isOpen();
    d->card.close();
    if (wasOpen)
        writeLog(LogKind::CloseCard, QStringLiteral("card closed"));
}

bool IMarkCardBase::IsCardOpend() const {
    return d->card.isOpen();
}

bool IMarkCardBase::HasMotion() const {
    return d->card.isOpen();
}

QString IMarkCardBase::GetCardVersion() const {
    return d->card.isOpen() ? QStringLiteral("SIM 1.0") : QString();
}

unsigned int IMarkCardBase::GetInput() const {
    return d->card.inputs();
}

unsigned int IMarkCardBase::GetOutput() const {
    return d->card.outputs();
}

int IMarkCardBase::GetInputBit(int bit) const {
    return d->card.isOpen() && d->card.io().input(bit) ? 1 : 0;
}

int IMarkCardBase::GetOutputBit(int bit) const {
    return d->card.isOpen() && d->card.io().output(bit) ? 1 : 0;
}

void IMarkCardBase::SetOutputBit(int bit, int value) {
    d->record("SetOutputBit", journalArgs(bit, value));
    d->card.setOutput(bit, value != 0);
}

void IMarkCardBase::SetMarkType(MarkType type) {
    d->record("SetMarkType", journalArgs(type));
    if (d->card.isOpen())
        d->card.setKind(kindOf(type));
}

void IMarkCardBase::SetMarkStaus(MarkStatus status) {
    d->record("SetMarkStaus", journalArgs(status));
    d->card.setState(stateOf(status));
}

MarkStatus IMarkCardBase::GetMarkStatus() const {
    return static_cast<MarkStatus>(d->card.state());
}

bool IMarkCardBase::IsMarkStop() {
    d->record("IsMarkStop");
    return d->card.waitSettled();
}

void IMarkCardBase::DownLayerPara(LayerParamEx* layers, int count) {
    if (!layers || count <= 0) {
        d->record("DownLayerPara", journalArgs(layers ? count : 0));
        return;
    }
    PenTable const pens = penTable(*layers, count, d->card.pens());
    d->record("DownLayerPara", journalArgs(count, pens[0].markSpeed, pens[0].jumpSpeed));
    d->card.setPens(pens);
}

void IMarkCardBase::AddList(DOT3* points, int count, int layer) {
    int const valid = points ? std::max(0, count) : 0;
    std::vector<JournalValue> args = journalArgs(count, layer);
    for (int i = 0; i < std::min(valid, kJournalPoints); ++i) {
        args.emplace_back(points[i].X);
        args.emplace_back(points[i].Y);
    }
    d->record("AddList", std::move(args));
    std::vector<Point> line(static_cast<std::size_t>(valid));
    std::transform(points, points + valid, line.begin(), [](DOT3 const& dot) { return Point{dot.X, dot.Y}; });
    d->card.addPolyline(layer, std::move(line));
}

void IMarkCardBase::AddMarkPoint(LayerParamEx const&, int layer, DOT3 point, double dwell) {
    d->record("AddMarkPoint", journalArgs(layer, point.X, point.Y, dwell));
    d->card.addPoint(layer, {point.X, point.Y}, dwell * 1000.0);
}

void IMarkCardBase::MoveMirrorPos(double x, double y, double speed, int mode) {
    d->record("MoveMirrorPos", journalArgs(x, y, speed, mode));
    d->card.headWay().setSplice(storedSplice());
    d->card.moveTo(onMachine({x, y}), speed);
}

bool IMarkCardBase::SystemIsAlarm(unsigned int& word) {
    word = d->card.alarmWord();
    return word != 0;
}

void IMarkCardBase::ClearAlarm() {
    d->record("ClearAlarm");
    d->card.clearAlarm();
}

unsigned int IMarkCardBase::GetMarkInfo() const {
    return d->card.markInfo();
}

unsigned int IMarkCardBase::GetScanState() const {
    return d->card.scanState();
}

QString IMarkCardBase::GetWaitInfo() const {
    int const code = d->card.waitCode();
    return code > 0 ? LanguageManager::GetLanText(kWaitTexts[code]) : QString();
}

StandardCalibParam* IMarkCardBase::GetStabtadrCalibParam() {
    return &d->calibration;
}

void IMarkCardBase::SetCalibrationParam() {
    d->record("SetCalibrationParam");
    if (d->card.isOpen())
        d->card.headWay().setBox(boxCorrection(d->calibration));
}
