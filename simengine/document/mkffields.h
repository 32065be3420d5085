// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/layerparamex.h"
#include "simengine/document/bytestream.h"

namespace sim {

/// One list of fields serves for writing and reading, so that the two cannot drift apart.
class FieldWriter {
public:
    explicit FieldWriter(ByteWriter& out)
        : m_out(out) {}
    void operator()(int value) { m_out.integer(qint32(value)); }
    void operator()(double value) { m_out.real(value); }
    void operator()(bool value) { m_out.flag(value); }
    void operator()(const QPointF& value) {
        m_out.real(value.x());
        m_out.real(value.y());
    }

private:
    ByteWriter& m_out;
};

class FieldReader {
public:
    explicit FieldReader(ByteReader& in)
        : m_in(in) {}
    void operator()(int& value) { value = m_in.integer<qint32>(); }
    void operator()(double& value) { value = m_in.real(); }
    void operator()(bool& value) { value = m_in.flag(); }
    void operator()(QPointF& value) {
        value.setX(m_in.real());
        value.setY(m_in.real());
    }

private:
    ByteReader& m_in;
};

/// Visits the fields of a pen in file order.
template<class Pen, class Visitor>
void visitPen(Pen& pen, Visitor&& visit) {
    visit(pen.ColorR);
    visit(pen.ColorG);
    visit(pen.ColorB);
    visit(pen.MarkCnt);
    visit(pen.MarkSpeed);
    visit(pen.RedSpeed);
    visit(pen.Power);
    visit(pen.WaveNumber);
    visit(pen.Fre);
    visit(pen.PWM);
    visit(pen.OpenLaserDelay);
    visit(pen.CloseLaserDelay);
    visit(pen.EndDelay);
    visit(pen.TurnDelay);
    visit(pen.JumpSpeed);
    visit(pen.MaxJumpDelay);
    visit(pen.MarkDelay);
    visit(pen.MinJumpDelay);
    visit(pen.PointTime);
    visit(pen.LineWaveFlag);
    visit(pen.PointWaveEnable);
    visit(pen.LineWaveEnable);
    for (auto& point : pen.PointWave)
        visit(point);
    for (auto& point : pen.LineWave)
        visit(point);
    visit(pen.MinJumpDelayDist);
    visit(pen.MaxJumpDelayDist);
    visit(pen.WobbleEnable);
    visit(pen.WobbleDiameter);
    visit(pen.WobbleSpacing);
    visit(pen.UseDefault);
}

/// Visits the fields of a stored laser waveform in file order.
template<class Wave, class Visitor>
void visitWave(Wave& wave, Visitor&& visit) {
    visit(wave.mode);
    visit(wave.meanPower);
    visit(wave.peak);
    visit(wave.pulseWidth);
    visit(wave.powerUsed);
    visit(wave.pwmPeak);
    visit(wave.pwmFreq);
    visit(wave.pwmDuty);
    visit(wave.gasDelay);
    visit(wave.eyeDelay);
}

/// Visits the fields of a hatch fill in file order.
template<class Fill, class Visitor>
void visitFill(Fill& fill, Visitor&& visit) {
    visit(fill.Enable);
    visit(fill.FillDist);
    visit(fill.FillAngle);
    visit(fill.FillLayer);
    visit(fill.FillOffset);
    visit(fill.EdgeCnt);
    visit(fill.FillType);
}

} // namespace sim
