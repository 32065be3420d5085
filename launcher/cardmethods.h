// SPDX-License-Identifier: MIT
#pragma once

#include "automation/rpcmethod.h"

#include <array>

namespace tessera {

class MachineControl;

/// The "card." and "head." methods: what plant and machine do to the program. Each is answered with an error when the
/// engine is not a simulated machine. Main thread.
class CardMethods : public RpcMethodTable<CardMethods> {
public:
    explicit CardMethods(MachineControl const& machine)
        : m_machine(machine) {}
    static std::array<Row, 14> const& methods();
    bool call(QString const& method, QJsonValue const& params, RpcReply& reply) override;

private:
    RpcReply state(QJsonObject const& params);
    RpcReply setInput(QJsonObject const& params);
    RpcReply setInputs(QJsonObject const& params);
    RpcReply journal(QJsonObject const& params);
    RpcReply clearJournal(QJsonObject const& params);
    RpcReply trace(QJsonObject const& params);
    RpcReply fault(QJsonObject const& params);
    RpcReply faults(QJsonObject const& params);
    RpcReply runTimes(QJsonObject const& params);
    RpcReply device(QJsonObject const& params);
    RpcReply flash(QJsonObject const& params);
    RpcReply setHead(QJsonObject const& params);
    RpcReply getHead(QJsonObject const& params);
    RpcReply measureHead(QJsonObject const& params);

    MachineControl const& m_machine;
};

} // namespace tessera
