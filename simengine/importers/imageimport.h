// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/imagetrace.h"
#include "simengine/importers/importresult.h"

namespace sim {

/// Outlines that become objects of their own; a picture with more of them becomes one object.
constexpr int kMostTracedObjects = 1000;
/// Suffixes of pictures, as the table of importers has them.
constexpr char kImageSuffixes[] = "png jpg jpeg jpe bmp dib";

/// Traces a picture with the default settings: the best threshold, dark parts marked, the size that the file tells.
/// Any thread; takes 5 s at most, the program that does it 512 MB.
ImportResult importImage(const QString& path, const ImportOptions& options = {});

/// The file's suffix is that of a picture.
bool isImage(const QString& path);

/// The outlines as objects of the options' pen, placed as the options say: a path for each outline with its holes, or
/// with `oneObject` one for all.
ImportResult placedOutlines(const TracedImage& traced, const ImportOptions& options, bool oneObject = false);

/// Puts the picture's density into the report of its import.
void tellDensity(const ImageSource& image, ImportResult& result);

} // namespace sim
