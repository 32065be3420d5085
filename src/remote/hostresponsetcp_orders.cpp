// SPDX-License-Identifier: MIT
#include "remote/hostresponsetcp.h"

#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/marklog.h"
#include "remote/externalresponse.h"
#include "remote/hostcommand.h"
#include "remote/hostruns.h"

#include <QDebug>
#include <QThreadPool>
#include <QtConcurrent>

using namespace tessera;

namespace {

/// For the tasks of a host's orders once their run has been stopped.
constexpr std::chrono::milliseconds kEndLimit{5000};

bool isCardIdle() {
    IMarkCardBase const* card = MarkCardInstance::Instance();
    return card && card->GetMarkStatus() == MarkStatusStop;
}

void record(QString const& sender, QString const& order, QString const& reply) {
    ExternalResponse::Instance()->OrderLog().Add(sender, order, reply);
}

/// Runs the order and returns the answer when the run has ended. Any thread.
QString runOrder(HostOffsets const& wanted, unsigned int stops) {
    if (wanted.fault)
        return HostReply(HostOrder::SetOffset, false, wanted.fault);
    // Orders that come meanwhile must be refused at once, on a machine of one core too.
    QThreadPool::globalInstance()->releaseThread();
    QString message;
    const bool good = ExternalResponse::Instance()->VZSetOffset(wanted.document, wanted.records, message, stops);
    QThreadPool::globalInstance()->reserveThread();
    return HostReply(HostOrder::SetOffset, good, message);
}

} // namespace

void HostResponseTcp::EndHostResponseTcp() {
    HostResponseTcp* host = m_pHostTcp.exchange(nullptr);
    if (!host)
        return;
    host->m_Server.close();
    host->m_Calls.Close();
    if (host->m_Runs->Close() > 0)
        ExternalResponse::Instance()->CloseOrders();
    if (host->m_Runs->WaitForAll(kEndLimit))
        delete host;
    else // the tasks still hold it
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("host port: an order did not end after a stop"));
}

void HostResponseTcp::OnCMDTest(QString frame) {
    qDebug().noquote().nospace() << "接收指令: " << frame;
    record(m_Sender, frame, QString());
}

void HostResponseTcp::OnVZSetOffset(QString frame) {
    if (!m_Runs->Begin()) {
        const QString reply = HostReply(HostOrder::SetOffset, false, kHostBusy);
        Send(reply);
        record(m_Sender, frame, reply);
        return;
    }
    // A stop that the host sends behind this order must not pass it on the way to the machine.
    const unsigned int stops = ExternalResponse::Instance()->Stops();
    QtConcurrent::run([this, runs = m_Runs, sender = m_Sender, frame, stops] {
        RunOffset(sender, frame, stops);
        runs->End();
    });
}

/// The card is asked before the arguments are looked at: a host that sends nonsense during a run is told of the run.
void HostResponseTcp::RunOffset(QString const& sender, QString const& frame, unsigned int stops) {
    const QString reply =
        isCardIdle() ? runOrder(ReadHostOffsets(frame), stops) : HostReply(HostOrder::SetOffset, false, kHostBusy);
    Send(reply);
    record(sender, frame, reply);
}

void HostResponseTcp::OnVZGetLayerParas(QString frame) {
    const HostLayer wanted = ReadHostLayer(frame);
    QString reply;
    LayerData layer;
    if (wanted.fault)
        reply = HostReply(HostOrder::GetLayerParas, false, wanted.fault);
    else if (wanted.layer >= unsigned(kLayerCount) ||
             !ExternalResponse::Instance()->VZGetLayerParas(wanted.document, int(wanted.layer), layer))
        reply = HostReply(HostOrder::GetLayerParas, false, kHostNoDocument);
    else
        reply = HostReply(HostOrder::GetLayerParas, true,
                          HostLayerValues(layer, MarkingMParam_VZ::Instance()->GetMarkCardType()));
    Send(reply);
    record(m_Sender, frame, reply);
}

void HostResponseTcp::OnVZMarkStop(QString frame) {
    QString reply;
    if (IsHostStop(frame)) {
        ExternalResponse::Instance()->VZMarkStop();
        reply = HostReply(HostOrder::MarkStop, true, kHostStopped);
        Send(reply);
    }
    record(m_Sender, frame, reply);
}

void HostResponseTcp::OnMarkFinish(bool success, QString message) {
    Send(HostReply(HostOrder::SetOffset, success,
                   success ? QString::fromUtf8(kHostRunDone)
                           : (message.isEmpty() ? QString::fromUtf8(kHostRunFailed) : message)));
}
