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
    QPointF center; ///< mm in the field
};

/// Something of a file that did not become an object.
struct ImportSkip {
    QString kind;   ///< "text", "image", ...
    QString reason; ///< why, for the operator
    int count = 0;
};

/// What came of an import. With `error` set there are no objects at all.
struct ImportResult {
    ObjectList objects;
    QString error;
    QMap<QString, int> imported; ///< objects by class name
    QVector<ImportSkip> skipped;
    QSizeF pageSize;           ///< mm
    QVector<QColor> penColors; ///< colour of the file that pen 0, 1, ... stands for
    qint64 points = 0;         ///< defining points of all objects

    bool ok() const { return error.isEmpty(); }
    void skip(const QString& kind, const QString& reason, int count = 1) {
        for (ImportSkip& known : skipped) {
            if (known.kind == kind && known.reason == reason) {
                known.count += count;
                return;
            }
        }
        skipped.append({kind, reason, count});
    }
};

} // namespace sim
