// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tessera {

/// What is told of the runs of --mark.
struct RunFigures {
    QString document;
    int objects = 0;
    qint64 vertices = 0;
    double markedLength = 0.0;  ///< mm of one pass, laser on
    double jumpedLength = 0.0;  ///< mm of one pass, laser off
    double estimatedTime = 0.0; ///< ms of one pass as the card reckons it, without pauses
    double actualTime = 0.0;    ///< ms of the last pass as measured, pauses included
    qint64 elapsedTime = 0;     ///< ms of all passes by the wall clock
    int passes = 0;             ///< that ended well
    int passesWanted = 0;
    int counter = 0; ///< the station's run counter afterwards
};

/// The short report as lines of "name: value".
QString runReport(RunFigures const& figures);

} // namespace tessera
