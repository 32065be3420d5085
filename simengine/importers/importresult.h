// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QColor>
#include <QMap>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QVector>

namespace sim {

/// Where an imported drawing comes to lie.
enum class ImportPlacement {
    CenterDrawing, ///< the middle of all that was imported lies on the given place
    CenterPage     ///< the middle of the drawing's page lies there: drawings of one page size fit onto each other
};

struct ImportOptions {
    ImportPlacement placement = ImportPlacement::CenterDrawing;
    QPointF center;           ///< mm in the field
    int pen = 0;              ///< of what has no colour of its own
    double mostSeconds = 3.5; ///< processor time that the import may take
};

/// Something of a file that did not become an object, or became another one than it was.
struct ImportSkip {
    QString kind;   ///< as the file calls it: "text", "image", "LWPOLYLINE", "LB", ...
    QString reason; ///< why, for the operator, in the operator's language
    int count = 0;
};

/// What came of an import. With `error` set there are no objects at all.
struct ImportResult {
    ObjectList objects;
    QString error;
    QMap<QString, int> imported;   ///< objects by class name
    QVector<ImportSkip> skipped;   ///< what is missing in the document
    QVector<ImportSkip> converted; ///< what is there, but not as the file has it
    QString unit;                  ///< what the file counts in, for the operator; may be empty
    QSizeF pageSize;               ///< mm; of files without a page the extent of all objects
    QVector<QColor> penColors;     ///< colour of the file that pen 0, 1, ... stands for
    QVector<QString> penNames;     ///< layer of the file that a pen stands for; empty for a colour; may be shorter
    qint64 points = 0;             ///< defining points of all objects

    bool ok() const { return error.isEmpty(); }
    void skip(const QString& kind, const QString& reason, int count = 1) { tally(skipped, kind, reason, count); }
    void convert(const QString& kind, const QString& reason, int count = 1) { tally(converted, kind, reason, count); }

private:
    /// Lines of a report; kinds that come beyond them are counted together as "...", one line for each reason.
    static constexpr int kMostKinds = 200;
    static constexpr int kSpareKinds = 50;
    static constexpr int kLongestKind = 60;

    static void tally(QVector<ImportSkip>& list, const QString& kind, const QString& reason, int count);
};

} // namespace sim
