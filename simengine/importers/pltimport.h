// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

#include <QByteArray>

namespace sim {

/// Imports a plotter file (HP-GL and the vector part of HP-GL/2). Any thread.
///
/// A plotter unit is 0.025 mm, SC, IP, IR, RO and IW are obeyed. What the pen draws from one lowering to the next lift
/// is one object; circles, rectangles and labels are objects of their own. Pen 1 is the system's first pen and so on,
/// from the twentieth on all are the last. Labels come as strokes of the plainest single-line font. Filled shapes come
/// as their outlines. What is left out or changed is told in the result.
ImportResult importPlt(const QString& path, const ImportOptions& options = {});
ImportResult importPltData(const QByteArray& bytes, const ImportOptions& options = {});

} // namespace sim
