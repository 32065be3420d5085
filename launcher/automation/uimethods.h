// SPDX-License-Identifier: MIT
#pragma once

#include "automation/rpcmethod.h"

#include <array>

namespace tessera {

/// The "ui." methods: what an operator can see and press. Main thread.
class UiMethods : public RpcMethodTable<UiMethods> {
public:
    static std::array<Row, 10> const& methods();

private:
    RpcReply tree(QJsonObject const& params);
    RpcReply click(QJsonObject const& params);
    RpcReply doubleClick(QJsonObject const& params);
    RpcReply trigger(QJsonObject const& params);
    RpcReply get(QJsonObject const& params);
    RpcReply set(QJsonObject const& params);
    RpcReply item(QJsonObject const& params);
    RpcReply key(QJsonObject const& params);
    RpcReply screenshot(QJsonObject const& params);
    RpcReply windows(QJsonObject const& params);
};

} // namespace tessera
