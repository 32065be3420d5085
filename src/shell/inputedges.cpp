// SPDX-License-Identifier: MIT
#include "shell/inputedges.h"

namespace tessera {

InputEdge InputEdges::Ask(IOFuncList* function, unsigned int input) {
    if (!function || function->InputMask == 0 || !function->InputEnable)
        return EdgeElsewhere;
    const unsigned int mask = function->InputMask;
    const unsigned int pattern = function->InputValue;
    const unsigned int before = function->LastInput;
    const unsigned int now = mask & input;
    if (!m_bFirst && before == now)
        return EdgeNone;
    m_bFirst = false;
    function->LastInput = now;
    if (((pattern ^ input) & mask) == 0)
        return EdgeEntered;
    return before == (mask & pattern) ? EdgeLeft : EdgeElsewhere;
}

} // namespace tessera
