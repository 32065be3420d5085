// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerparamex.h"
#include "simengine/document/document.h"
#include "simengine/document/strokefonts.h"
#include "simengine/document/textmaker.h"

#include <cmath>
#include <random>

/// Documents as nobody would draw them: drawn objects, groups and stroke texts of every kind, pens with random times.
/// Outline texts, codes, pictures and what tool modules make are left out.
namespace playback {

class RandomDocument {
public:
    explicit RandomDocument(unsigned seed)
        : m_random(seed) {}

    /// Fills a document that has no objects yet. Gives false when an object could not be made.
    bool fill(sim::Document& document) {
        for (LayerData& pen : document.pens()->GetLayerData())
            randomPen(pen);
        sim::ObjectList objects;
        const int count = whole(1, 12);
        for (int i = 0; i < count; ++i) {
            const sim::ObjectPtr object = randomObject(0);
            if (!object)
                return false;
            objects.push_back(object);
        }
        return document.edit([&](const sim::DocumentState& state) { return sim::edits::add(state, objects); });
    }

    double number(double least, double most) { return std::uniform_real_distribution<double>(least, most)(m_random); }
    int whole(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }
    bool one(int of) { return whole(1, of) == 1; }

private:
    void randomPen(LayerData& pen) {
        pen.MarkCnt = one(3) ? whole(0, 4) : 1;
        pen.MarkSpeed = one(10) ? number(0.5, 20) : number(50, 3000);
        pen.JumpSpeed = number(200, 8000);
        pen.OpenLaserDelay = whole(-300, 500);
        pen.CloseLaserDelay = whole(-300, 500);
        pen.EndDelay = whole(-200, 1000);
        pen.TurnDelay = whole(-50, 300);
        pen.MinJumpDelay = whole(0, 400);
        pen.MaxJumpDelay = whole(0, 1500);
        pen.MinJumpDelayDist = number(0, 5);
        pen.MaxJumpDelayDist = number(0, 40);
        pen.MarkDelay = whole(0, 600);
        pen.PointTime = whole(0, 5000);
        pen.Power = number(0, 100);
        pen.WobbleEnable = one(4);
        pen.WobbleDiameter = number(0.05, 2);
        pen.WobbleSpacing = number(0.05, 1);
        pen.PointWaveEnable = one(4) ? 1 : 0;
        pen.LineWaveEnable = one(4) ? 1 : 0;
        pen.LineWaveFlag = one(2) ? 1 : 0;
        for (std::size_t i = 0; i < pen.PointWave.size(); ++i) {
            pen.PointWave[i] = {number(0, 3.0 * double(i)), number(0, 100)};
            pen.LineWave[i] = {number(0, double(i % 10)), number(0, 100)};
        }
        pen.UseDefault = one(10);
    }

    QPointF place() { return {number(-60, 60), number(-60, 60)}; }

    sim::Shape randomShape(int depth) {
        switch (whole(1, depth < 2 ? 8 : 7)) {
        case 1:
            return sim::PointShape{place(), one(2) ? number(0, 8000) : -1.0};
        case 2: {
            sim::PolylineShape line;
            for (int i = whole(1, 40); i > 0; --i)
                line.points.append(place());
            line.closed = one(2);
            return line;
        }
        case 3:
            return sim::RectShape{QRectF(place(), QSizeF(number(0, 40), number(0, 40)))};
        case 4:
            return sim::CircleShape{place(), number(0.1, 25), number(0, 360), one(2)};
        case 5:
            return sim::ArcShape{place(), number(0.1, 25), number(0, 360), number(-360, 360)};
        case 6: {
            sim::PathShape path;
            for (int contour = whole(1, 3); contour > 0; --contour) {
                path.moveTo(place());
                for (int i = whole(1, 6); i > 0; --i) {
                    if (one(2))
                        path.lineTo(place());
                    else
                        path.cubicTo(place(), place(), place());
                }
                if (one(2))
                    path.close();
            }
            return path;
        }
        case 7: {
            sim::TextSpec spec;
            spec.text = QStringLiteral("No %1").arg(whole(0, 99999));
            spec.family = QLatin1String(sim::strokeFonts().front().name);
            spec.height = number(1, 12);
            const sim::MadeText made = sim::makeText(spec);
            return made.ok() ? sim::Shape(made.shape) : sim::Shape(sim::PointShape{});
        }
        default: {
            sim::GroupShape group;
            for (int i = whole(1, 4); i > 0; --i)
                group.children.push_back(randomObject(depth + 1));
            return group;
        }
        }
    }

    sim::ObjectPtr randomObject(int depth) {
        sim::ObjectData data;
        data.shape = randomShape(depth);
        data.pen = whole(0, 19);
        data.work = one(12) ? sim::WorkType::Off : sim::WorkType::On;
        data.transform.rotate(number(-180, 180));
        data.transform.scale(number(0.3, 1.2), number(0.3, 1.2));
        if (sim::kindOf(data.shape) != sim::ObjectKind::Group && one(3)) {
            FillParam& fill = data.hatch.fills[0];
            fill.Enable = true;
            fill.FillDist = number(0.3, 3);
            fill.FillAngle = number(0, 180);
            fill.FillLayer = whole(0, 19);
            fill.FillType = whole(0, 4);
            data.hatch.enableEdge = !one(4);
            data.hatch.markFillFirst = one(2);
        }
        return sim::MarkObject::make(std::move(data));
    }

    std::mt19937 m_random;
};

} // namespace playback
