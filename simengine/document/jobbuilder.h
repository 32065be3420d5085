// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/ccdbufdata.h"
#include "simengine/card/job.h"
#include "simengine/document/documentstate.h"

#include <QString>
#include <QVector>

namespace sim {

/// How a document becomes a job.
struct JobOptions {
    bool selectedOnly = false;
    /// The job is marked once for each valid record, in their order, turned about the field centre and then shifted.
    /// Without records it is marked once as it is.
    QVector<CCDBufdata> offsets;
    bool invertX = false; ///< the machine's axis runs the other way; applied last
    bool invertY = false;
};

/// Vertices of a job that offset records repeat. Such a job is refused above it, as it would take the memory of the
/// machine; 16 bytes each.
constexpr std::size_t kMaxRepeatedVertices = 20'000'000;

/// The objects' lines in marking order. The job is empty when nothing works, when all offset records are invalid, when
/// a number of a valid record is not finite, since a job in a wrong place is worse than none, or when the records
/// repeat too much. What is wrong with the records goes to `fault`. What was cancelled is not whole. Any thread.
Job buildJob(const DocumentState& state, const JobOptions& options, QString* fault = nullptr,
             const Cancellation* cancellation = nullptr);

/// What an operator is told of a document.
struct DocumentStatistics {
    int objects = 0;
    int working = 0;       ///< objects that are marked
    qint64 points = 0;     ///< defining points
    qint64 vertices = 0;   ///< vertices of the job
    double markLength = 0; ///< mm with the laser on
};

DocumentStatistics statisticsOf(const DocumentState& state);

} // namespace sim
