// SPDX-License-Identifier: MIT
#include "multidoc/multimarkthread.h"

#include "engine/imarkcardbase.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "multidoc/multidocmark.h"

namespace {

/// A job ends within milliseconds of a stop; the bound keeps a broken card driver from holding up the end of the
/// program.
constexpr unsigned long kEndWaitMs = 10000;
/// The worker looks for the next document at least this often, and at once when one comes.
constexpr std::chrono::milliseconds kIdlePoll{50};

void stopCard() {
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (!card)
        return;
    card->StopMark();
    card->SetMarkStaus(MarkStatusStop);
}

} // namespace

MultiMarkThread::MultiMarkThread(QObject* parent)
    : QThread(parent) {}

MultiMarkThread::~MultiMarkThread() {
    if (!isRunning())
        return;
    EndThread();
    if (wait(kEndWaitMs))
        return;
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("the multi-document job did not end after a stop"));
    terminate();
    wait();
}

/// The run counts from here on and not from the worker's first step, so that an end that comes before it is not lost.
void MultiMarkThread::StartRun() {
    if (isRunning())
        return;
    m_Queue.SetRunning(true);
    start(QThread::InheritPriority);
}

void MultiMarkThread::EndThread() {
    m_Queue.SetRunning(false);
    stopCard();
}

void MultiMarkThread::StopMark() {
    m_Queue.StopCurrent();
    stopCard();
}

bool MultiMarkThread::AddMarkFile(QRulerView* view) {
    const std::string name = view->GetFileName().toStdString();
    MultiDocMark const* window = MultiDocMark::Instance();
    if (window && window->GetMarkStatus() == MultiMarkMarking && name == m_Queue.CurrentName())
        return false;
    return m_Queue.Add(view, name);
}

QRulerView* MultiMarkThread::GetMarkFile() {
    return m_Queue.Take(std::chrono::milliseconds(0));
}

void MultiMarkThread::ForgetView(QRulerView const* view) {
    if (!m_Queue.Forget(view))
        return;
    stopCard();
    m_Queue.WaitUntilDone(view);
}

void MultiMarkThread::run() {
    emit markstatusChange(MultiMarkWaiting, QString());
    do {
        if (QRulerView* view = m_Queue.Take(kIdlePoll))
            MarkTaken(view);
    } while (m_Queue.IsRunning());
    emit markstatusChange(MultiMarkIdle, QString());
}

/// The card is set to run only together with the test that no stop has come: one that comes before the document has
/// begun is not lost.
void MultiMarkThread::MarkTaken(QRulerView* view) {
    IMarkCardBase* card = MarkCardInstance::Instance();
    emit markstatusChange(MultiMarkMarking, view->GetFileName());
    m_Queue.BeginUnlessStopped([card] { card->SetMarkStaus(MarkStatusRun); });
    MarkFile(view);
    m_Queue.Done();
    card->SetMarkStaus(MarkStatusStop);
    emit markstatusChange(MultiMarkWaiting, QString());
}

void MultiMarkThread::MarkFile(QRulerView* view) {
    if (!view)
        return;
    IMarkCardBase* card = MarkCardInstance::Instance();
    card->SetMarkType(m_MarkType);
    LayerParamEx* layers = view->GetLayerParams();
    card->DownLayerPara(layers, kLayerCount);
    if (m_Queue.IsWanted())
        view->GetMarkTools()->StartMark(false, false, layers);
}
