// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/fillparam.h"
#include "simengine/document/flatten.h"
#include "simengine/document/hatch.h"
#include "simengine/document/shape.h"

#include <QString>
#include <mutex>

namespace sim {

/// Hatch of one object: always three fills, and the switches of the object as a whole.
struct HatchSettings {
    QVector<FillParam> fills = unsetFills(); ///< objects without a hatch share one table
    bool enableEdge = true;                  ///< the outline is marked
    bool markFillFirst = false;              ///< the hatch is marked before the outline
    bool showSimple = false;                 ///< the view draws the hatch coarsely

    bool anyEnabled() const;
    /// Three fills of finite numbers on existing pens.
    bool hasValues() const;
    /// A fill that is on works finer than kLeastHatchPitch.
    bool isTooFine() const;
    /// hasValues() and not isTooFine(): what an object can have.
    bool isSound() const { return hasValues() && !isTooFine(); }

private:
    static const QVector<FillParam>& unsetFills();
};

/// Whether an object is marked. The values are those of the operator's choice and of document files.
enum class WorkType : quint8 { Off = 0, On = 1 };

/// What an object is made of.
struct ObjectData {
    Shape shape;
    QTransform transform; ///< from the object's own coordinates to the field, affine
    int pen = 0;          ///< 0 to 19; of a group: the pen last given to all of it
    WorkType work = WorkType::On;
    double angle = 0.0;        ///< degrees in (-180, 180], sum of the rotations since the object was made
    bool angleChanged = false; ///< the operator turned the object after its size was last entered
    HatchSettings hatch;
    QString name; ///< given by the operator, may be empty
};

/// One object of a document. Never changes, so that runs, views and undo steps share it between threads.
class MarkObject {
public:
    /// Null when the object cannot be: geometry that shapeFault() refuses, a transform that is not finite or not
    /// affine, bounds beyond the coordinate limit, curves of more than kMaxFlattenedPoints as lines, a pen outside 0 to
    /// 19, unsound hatch settings, a hatch of more than kMaxHatchSegments, a name that is too long. `fault` then tells
    /// why.
    static ObjectPtr make(ObjectData data, QString* fault = nullptr);

    const ObjectData& data() const { return m_data; }
    const Shape& shape() const { return m_data.shape; }
    const QTransform& transform() const { return m_data.transform; }
    ObjectKind kind() const { return kindOf(m_data.shape); }
    int pen() const { return m_data.pen; }
    bool works() const { return m_data.work == WorkType::On; }
    double angle() const { return m_data.angle; }

    /// "MarkToolRect" and so on; a group is "MarkToolCombine". What a module made has the class of its tool.
    QString className() const;
    /// Exact bounds in the field.
    const Box& bounds() const { return m_bounds; }
    /// Point about which the object turns: the middle of its own bounds, carried into the field. Turning about it
    /// leaves it in place, so that turning to and fro does not move the object.
    QPointF pivot() const;
    /// 0 for everything but groups.
    int groupDepth() const { return m_depth; }
    qint64 pointCount() const { return m_pointCount; }
    /// Memory that the object holds, shared or not, in bytes.
    qint64 memoryCost() const;

    /// An open polyline, path of one contour or arc.
    bool isOpenCurve() const;
    /// A line that encloses an area, or a group: something that can be hit inside when it is filled.
    bool isFilled() const;

    /// The object as polylines in the field.
    std::vector<FlatLine> flattened(double tolerance = kFlatteningTolerance) const;
    /// The lines of the hatch in the field. `outer` is the transform of the groups around it and `turn` their angle,
    /// degrees. They are made when first asked for and kept as long as somebody holds them. Null without a hatch and
    /// when it was cancelled. Any thread.
    std::shared_ptr<const std::vector<HatchPart>> hatch(const QTransform& outer = QTransform(), double turn = 0.0,
                                                        const Cancellation* cancellation = nullptr) const;
    /// As hatchSegments(), of this object and all in it.
    qint64 hatchSegmentCount() const;

    /// Copy with the field transform `by` applied after its own and `turn` degrees added to its angle; null when it
    /// would leave the coordinate limit or its curves get too many points or its hatch too many segments.
    ObjectPtr transformed(const QTransform& by, double turn = 0.0) const;

    explicit MarkObject(ObjectData data);

private:
    const ObjectData m_data;
    Box m_bounds;
    int m_depth = 0;
    qint64 m_pointCount = 0;
    mutable std::mutex m_hatchMutex;
    mutable std::weak_ptr<const std::vector<HatchPart>> m_hatch;
};

/// Degrees brought into (-180, 180].
double normalizedAngle(double degrees);

/// "MarkToolPoint" for ObjectKind::Point and so on.
QString classNameOf(ObjectKind kind);

} // namespace sim
