// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <memory>

/// The link to a camera: the machine listens, the camera connects. What the two say to each other is the engine's
/// affair. Main thread.
class ENGINE_API CCDServer {
public:
    /// Creates the server and begins to listen at the address of SystemParam::GetStaticIP(). An address that the
    /// machine does not have is logged, and no camera connects.
    static void InitCCDServer();
    /// Null before InitCCDServer.
    static CCDServer* Instance();
    /// A camera is connected.
    bool HasClient() const;
    /// Takes over a changed address: the camera has to connect anew there. Nothing when the link listens at it already.
    void SetStaticIP();

private:
    CCDServer();
    ~CCDServer();
    friend struct std::default_delete<CCDServer>;
    struct Private;
    std::unique_ptr<Private> d;
};
