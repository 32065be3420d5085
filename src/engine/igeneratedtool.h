// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

/// One number that the operator gives a tool. Tables with a number that is not finite, least above most, or a choice
/// without entries are refused.
struct ToolParameter {
    enum Kind {
        Real,   ///< a number shown with `decimals`
        Whole,  ///< a whole number
        Switch, ///< 0 or 1
        Choice  ///< the index of an entry of `choices`
    };
    Kind kind = Real;
    QString name; ///< Chinese key of the label
    QString unit; ///< "mm", "°" or empty; what is in "mm" is shown as large as the object was scaled
    double least = 0.0;
    double most = 0.0;
    double preset = 0.0;
    int decimals = 3;    ///< 0 to 6, of a Real
    QStringList choices; ///< Chinese keys
};

/// A line to `end`, or a cubic Bezier curve by two handles.
struct ToolSegment {
    bool curved = false;
    QPointF handle1;
    QPointF handle2;
    QPointF end;
};

/// One stroke of an outline, mm, y upwards. A closed one goes back to its start by a line where it does not end there.
struct ToolContour {
    QPointF start;
    QVector<ToolSegment> segments;
    bool closed = false;
};

/// A tool that makes its objects of numbers. The class of a module's tool derives from IMarkToolBase and from this one;
/// the engine then places, shows, marks, saves and edits the objects. All calls come on the main thread, with one value
/// for each parameter of the table: finite, within its range, whole where it says so. What a call throws is told in the
/// log, and the object stays as it was.
class ENGINE_API IGeneratedTool {
public:
    virtual ~IGeneratedTool();
    /// 1 to 64 numbers, the same ones as long as the tool lives.
    virtual QVector<ToolParameter> GetParameters() const = 0;
    /// The values as they are kept in documents, at most 65536 bytes. They must be read by every later version of the
    /// tool.
    virtual QByteArray WriteParameters(QVector<double> const& values) const = 0;
    /// False when the bytes are not this tool's; the object then cannot be edited, and its bytes stay as they are.
    virtual bool ReadParameters(QByteArray const& bytes, QVector<double>& values) const = 0;
    /// The outline about (0, 0), at most 200000 points; empty when the values do not fit together.
    virtual QVector<ToolContour> MakeOutline(QVector<double> const& values) const = 0;
    /// The operator drags from the middle of a new object to `drag`, mm: changes the values that follow from it.
    virtual void Place(QPointF const& drag, QVector<double>& values) const = 0;
};
