// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QVector>

namespace sim {

constexpr char kCcdPositionFile[] = "/ini/CCDPos.ini";

/// Place to which the stage goes for a photo, mm.
struct CcdPosition {
    QString name;
    double x = 0.0;
    double y = 0.0;
};

/// The stored positions, in order; none without a file.
QVector<CcdPosition> loadCcdPositions();
/// False when the file could not be written, which then is the old one.
bool saveCcdPositions(QVector<CcdPosition> const& positions);

} // namespace sim
