// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/cardlink.h"

#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "simengine/card/bordersettings.h"
#include "simengine/lasers/seriallaser.h"
#include "simengine/params/storedsplice.h"

#include <algorithm>
#include <utility>

namespace sim {

PenParams penParams(LayerData const& data) {
    PenParams pen;
    pen.markCount = data.MarkCnt;
    pen.markSpeed = data.MarkSpeed;
    pen.redSpeed = data.RedSpeed;
    pen.power = data.Power;
    pen.waveNumber = data.WaveNumber;
    pen.frequency = data.Fre;
    pen.pwm = data.PWM;
    pen.openLaserDelay = data.OpenLaserDelay;
    pen.closeLaserDelay = data.CloseLaserDelay;
    pen.endDelay = data.EndDelay;
    pen.turnDelay = data.TurnDelay;
    pen.jumpSpeed = data.JumpSpeed;
    pen.maxJumpDelay = data.MaxJumpDelay;
    pen.minJumpDelay = data.MinJumpDelay;
    pen.minJumpDelayDist = data.MinJumpDelayDist;
    pen.maxJumpDelayDist = data.MaxJumpDelayDist;
    pen.markDelay = data.MarkDelay;
    pen.pointTime = data.PointTime;
    pen.wobbleEnable = data.WobbleEnable;
    pen.wobbleDiameter = data.WobbleDiameter;
    pen.wobbleSpacing = data.WobbleSpacing;
    pen.pointWaveEnable = data.PointWaveEnable != 0;
    pen.lineWaveEnable = data.LineWaveEnable != 0;
    pen.lineWaveByDistance = data.LineWaveFlag != 0;
    const auto row = [](QPointF const& point) { return WavePoint{point.x(), point.y()}; };
    std::transform(data.PointWave.begin(), data.PointWave.end(), pen.pointWave.begin(), row);
    std::transform(data.LineWave.begin(), data.LineWave.end(), pen.lineWave.begin(), row);
    return pen;
}

namespace {

std::optional<LaserWave> laserWave(LayerParamEx const& layers, int number) {
    if (number < 0 || number >= kQcwWaveCount)
        return std::nullopt;
    LYQCWWave const& stored = layers.GetQCWWaves()[number];
    LaserWave wave;
    wave.mode = stored.mode;
    wave.peak = stored.peak;
    wave.pulse = stored.pulseWidth;
    wave.pwmPeak = stored.pwmPeak;
    wave.pwmFreq = stored.pwmFreq;
    wave.pwmDuty = stored.pwmDuty;
    wave.gasDelay = stored.gasDelay;
    wave.eyeDelay = stored.eyeDelay;
    return wave;
}

} // namespace

PenTable penTable(LayerParamEx const& layers, int count, PenTable const& before) {
    PenTable pens = before;
    for (int i = 0; i < std::min(count, kPenCount); ++i) {
        LayerData data;
        layers.GetLayerData(i, data);
        PenParams& pen = pens[static_cast<std::size_t>(i)];
        pen = penParams(data.UseDefault ? LayerData::GetDefaultLayerData() : data);
        pen.laserWave = laserWave(layers, pen.waveNumber);
    }
    return pens;
}

CardRun::CardRun(bool selectedOnly, bool loop)
    : m_loop(loop) {
    simulatedCard().journal().add("StartMark", journalArgs(selectedOnly, loop));
    m_ticket = simulatedCard().arm();
}

RunResult CardRun::start(Job job) {
    CardCore& card = simulatedCard();
    SystemParam const* system = SystemParam::Instance();
    card.setBufferLoop(system->UsedBufLoop());
    card.setLoopDelayMs(system->GetLoopMarkDelay());
    card.setPenChangeDelayMs(system->GetChangeLayerDelay());
    takeBorderSettings(m_ticket.kind);
    card.headWay().setSplice(storedSplice());
    RunResult result = card.run(std::move(job), m_loop, m_ticket, serialLaserService());
    logCentreLines(result.time);
    return result;
}

Point onMachine(Point place) {
    SystemParam const* system = SystemParam::Instance();
    return {system->InvertX() ? -place.x : place.x, system->InvertY() ? -place.y : place.y};
}

std::optional<QPointF> pilotSpot() {
    CardCore const& card = simulatedCard();
    if (!card.isOpen())
        return std::nullopt;
    const Point spot = onMachine(card.head().at);
    return QPointF(spot.x, spot.y);
}

std::optional<QPointF> steeredSpot() {
    const std::optional<Point> place = simulatedCard().restingPlace();
    if (!place)
        return std::nullopt;
    const Point spot = onMachine(*place);
    return QPointF(spot.x, spot.y);
}

void logCentreLines(JobTime const& time) {
    if (time.centreLines == 0)
        return;
    MarkLog::Instance()->ShowNote(
        QStringLiteral("wobble: %1 strokes are traced by their centre line, a pass has room for %2 vertices of circles")
            .arg(static_cast<qulonglong>(time.centreLines))
            .arg(static_cast<qulonglong>(Planner::kMaxWobbleVertices)));
}

} // namespace sim
