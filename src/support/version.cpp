// SPDX-License-Identifier: MIT
#include "support/version.h"

namespace tessera {

const char* version() {
    return TESSERA_VERSION;
}

} // namespace tessera
