// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <memory>

/// The link to a camera. Main thread.
class ENGINE_API CCDServer {
public:
    /// Creates the server and begins to listen at the address of SystemParam::GetStaticIP().
    static void InitCCDServer();
    /// Null before InitCCDServer.
    static CCDServer* Instance();
    bool HasClient() const;
    /// Takes over a changed address.
    void SetStaticIP();

private:
    CCDServer();
    ~CCDServer();
    friend struct std::default_delete<CCDServer>;
    struct Private;
    std::unique_ptr<Private> d;
};
