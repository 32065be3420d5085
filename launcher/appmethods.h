// SPDX-License-Identifier: MIT
#pragma once

#include "automation/rpcmethod.h"

#include <array>
#include <functional>

namespace tessera {

/// The "app." methods. Main thread.
class AppMethods : public RpcMethodTable<AppMethods> {
public:
    explicit AppMethods(std::function<void()> quit)
        : m_quit(std::move(quit)) {}
    static std::array<Row, 1> const& methods() {
        static std::array<Row, 1> const rows{{{"app.quit", {}, &AppMethods::quit}}};
        return rows;
    }

private:
    RpcReply quit(QJsonObject const&) { return RpcReply::done(m_quit); }

    std::function<void()> m_quit;
};

} // namespace tessera
