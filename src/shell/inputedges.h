// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iofunclist.h"

namespace tessera {

/// What a poll has seen of a named input function. The values are those that MainWindow::IsAccess gives.
enum InputEdge : int {
    EdgeElsewhere = -2, ///< not wired, or changed without having been active
    EdgeNone = -1,      ///< the watched inputs stand as they stood
    EdgeLeft = 0,       ///< has just left the active state
    EdgeEntered = 1,    ///< has just become active
};

/// Turns samples of the input word into edges. One sample is enough for an edge: there is no filtering in time, the
/// inputs of the card are filtered in hardware. The state before is kept in the function's record, so a function is to
/// be asked once a poll at most. Main thread, which owns the records.
class InputEdges {
public:
    /// Compares the watched bits of `input`, bit n being input n, with the record and keeps them there. A null record,
    /// one without watched bits or one that is switched off gives EdgeElsewhere and is left as it is.
    InputEdge Ask(IOFuncList* function, unsigned int input);

private:
    /// The first wired function that is asked after the program's start is judged without its state before, so that an
    /// input which is already active then counts as an edge. One flag for all functions: only the first profits.
    bool m_bFirst = true;
};

} // namespace tessera
