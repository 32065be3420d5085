// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <memory>

/// Event that stays set until it is reset. Any thread.
class ENGINE_API ManualResetEvent {
public:
    explicit ManualResetEvent(bool set);
    ~ManualResetEvent();
    void Set();
    void Reset();
    bool IsSet() const;
    /// Waits up to `ms` (below 0: without limit) and tells whether it is set.
    bool WaitOne(int ms = -1);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
