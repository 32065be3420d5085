// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

/// What the program tessera-imagetrace and its caller say to each other over its standard input and output. Both are of
/// one build and one machine, so the values go as they lie in memory.
namespace sim::wire {

constexpr std::uint32_t kMagic = 0x54524331;

/// First argument of the program. The second is the processor time that it may take, ms.
constexpr char kDecode[] = "decode"; ///< third argument: the file
constexpr char kTrace[] = "trace";

/// How the program ends. With another code it has crashed or was ended.
enum ExitCode : int {
    ExitDone = 0,
    ExitWrongUse = 10,
    ExitNoFile = 11,      ///< the system's reason is on the standard error output
    ExitNoImage = 12,     ///< neither PNG nor JPEG nor BMP
    ExitDamaged = 13,     ///< the reader's reason is on the standard error output
    ExitManyPixels = 14,  ///< the picture's size is on the standard error output
    ExitNoMemory = 15,    ///< more memory needed than it may take
    ExitManyCurves = 16,  ///< more curves than were asked for at most
    ExitBrokenInput = 17, ///< the caller went away
    ExitTooLong = 18,     ///< more processor time needed than it may take
};

/// Answer to "decode": then width * height bytes of grey, 0 black, from the top row on, and with `alpha` as many bytes
/// of opacity.
struct ImageHead {
    std::uint32_t magic = kMagic;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t alpha = 0;
    double dotsPerMmX = 0.0; ///< 0 when the file does not tell
    double dotsPerMmY = 0.0;
    double seconds = 0.0; ///< processor time of the decoding
};

/// Question of "trace": then `height` rows of wordsOfRow(width) words, the bottom row first, the leftmost pixel in the
/// highest bit; set bits are traced. Bits past the width are 0.
struct BitmapHead {
    std::uint32_t magic = kMagic;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t despeckle = 0; ///< areas of up to that many pixels are left out
    std::int32_t optimise = 0;
    std::int32_t unused = 0;
    double cornerLimit = 0.0; ///< 0 all corners, 4/3 none
    double tolerance = 0.0;   ///< of the optimisation, pixels
    std::int64_t maxCurves = 0;
};

constexpr std::int32_t wordsOfRow(std::int32_t width) {
    return (width + 63) / 64;
}

/// Answer to "trace": then `outlines` times an OutlineHead with its curves. An outline that surrounds set pixels comes
/// before the holes in it.
struct TraceHead {
    std::uint32_t magic = kMagic;
    std::uint32_t outlines = 0;
};

struct OutlineHead {
    std::int32_t hole = 0;
    std::uint32_t curves = 0;
};

/// A curve with two handles and an end, or with `corner` a line to the second place and one to the third. Pixels from
/// the bottom left corner of the picture. The outline begins at the end of its last curve.
struct Curve {
    std::int64_t corner = 0;
    double x[3] = {};
    double y[3] = {};
};

} // namespace sim::wire
