// SPDX-License-Identifier: MIT
#pragma once

#include "engine/imarkcardbase.h"

/// Holder of the one card object. Takes ownership: the object lives until another is set or the process ends.
class ENGINE_API MarkCardInstance {
public:
    /// Replaces the card object; a null pointer removes it. Main thread, while no job runs.
    static void SetMarkCardInstance(IMarkCardBase* card);
    /// The card object, null before the shell has set one; it stays valid with the card closed. Any thread.
    static IMarkCardBase* Instance();
};
