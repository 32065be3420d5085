// SPDX-License-Identifier: MIT
#include "tests/support/timeoutscale.h"

#include <QString>

#include <cmath>

namespace tests {
namespace {

#if defined(__SANITIZE_THREAD__)
constexpr double builtInScale = 10.0;
#elif defined(__SANITIZE_ADDRESS__)
constexpr double builtInScale = 5.0;
#else
constexpr double builtInScale = 1.0;
#endif

constexpr double largestScale = 1000.0;

} // namespace

double timeoutScale() {
    bool isNumber = false;
    const double scale = qEnvironmentVariable("TESSERA_TIMEOUT_SCALE").toDouble(&isNumber);
    return isNumber && scale > 0.0 && scale <= largestScale ? scale : builtInScale;
}

int scaled(int milliseconds) {
    return qMax(1, static_cast<int>(std::lround(milliseconds * timeoutScale())));
}

} // namespace tests
