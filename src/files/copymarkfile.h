// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Merges the mark documents and projects of the folder `source` into the folder `target`. The operator is asked about
/// each document that is there already, before anything is copied; closing that question overwrites. Each file is the
/// old or the new one at any time. False when a file that is there could not be copied, which the operator is told.
/// Main thread; shows a modal dialog while it copies.
bool CopyMarkFile(QString const& source, QString const& target);
