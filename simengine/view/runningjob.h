// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// A job of any kind goes on or is paused.
bool jobRuns();
/// The pilot beam traces a job or its border, and is not paused.
bool previewRuns();

} // namespace sim
