// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// Sink of the automatic logout; the main window implements it. Main thread.
class ENGINE_API IAutoLoginOutMsg {
public:
    virtual ~IAutoLoginOutMsg();
    /// The user was logged out.
    virtual void AutoLoginOut() = 0;
    /// Registers the sink; null takes it back.
    static void SetInstance(IAutoLoginOutMsg* sink);
    static IAutoLoginOutMsg* Instance();
};
