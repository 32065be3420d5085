// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace bench {

/// ms of the wall's clock that the work takes.
double wallMs(const std::function<void()>& work);
/// The middle of several rounds.
double medianMs(int rounds, const std::function<void()>& work);
/// The value that `share` (0 to 1) of the values do not exceed.
double quantile(std::vector<double> values, double share);

/// A figure beside what it is measured against, and whether it keeps within `most` times that: gives the latter back.
bool printRatio(const char* what, double own, const char* reference, double bare, double most);
/// A figure and its own bound; false above it.
bool printBound(const char* what, double value, const char* unit, double most);

/// Writes so many bytes into a new file, syncs and closes it. False when that failed.
bool writeSynced(const QString& path, qint64 bytes);
/// Reads a whole file into memory; gives its length.
qint64 readWhole(const QString& path);
/// Lets the next reading of the file come from the disk.
void forget(const QString& path);

/// Memory of this process in bytes, without what the allocator only keeps.
qint64 residentBytes();
/// The most that it ever was.
qint64 peakBytes();

} // namespace bench
