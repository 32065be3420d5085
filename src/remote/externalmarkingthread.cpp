// SPDX-License-Identifier: MIT
#include "remote/externalmarkingthread.h"

#include "engine/imarkcardbase.h"
#include "engine/iooutputset.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "remote/stationanswer.h"
#include "shell/mainwindow.h"

namespace {

/// A job ends within milliseconds of a stop; the bound keeps a broken card driver from holding up the end of the
/// program.
constexpr unsigned long kEndWaitMs = 10000;

MarkType cardMarkType(int type) {
    if (type == MarkTypeRedPreview)
        return MarkTypeRedPreview;
    return type == MarkTypeBorderPreview ? MarkTypeBorderPreview : MarkTypeLaser;
}

} // namespace

ExternalMarkingThread::ExternalMarkingThread(tessera::RemoteOrderLog& log, QObject* parent)
    : QThread(parent)
    , m_Log(log) {}

ExternalMarkingThread::~ExternalMarkingThread() {
    OrderStop();
    if (wait(kEndWaitMs))
        return;
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("the remote marking job did not end after a stop"));
    terminate();
    wait();
}

std::shared_ptr<tessera::RemoteRun> ExternalMarkingThread::Run() const {
    const std::lock_guard<std::mutex> lock(m_RunLock);
    return m_pRun;
}

bool ExternalMarkingThread::IsActive() const {
    const std::shared_ptr<tessera::RemoteRun> run = Run();
    return run && !run->IsEnded();
}

void ExternalMarkingThread::RunTrigger() {
    if (IsActive())
        return;
    wait();
    m_Order = {m_bOption, m_nMarkType, m_bNotify, m_Cmd, m_nTag, m_Sender, std::make_shared<tessera::RemoteRun>()};
    {
        const std::lock_guard<std::mutex> lock(m_RunLock);
        m_pRun = m_Order.run;
    }
    start(QThread::InheritPriority);
}

void ExternalMarkingThread::StopTrigger() {
    const std::shared_ptr<tessera::RemoteRun> run = Run();
    if (!run || run->HasLeft())
        return;
    IMarkCardBase* card = MarkCardInstance::Instance();
    run->Stop();
    card->SetMarkStaus(MarkStatusStop);
    IOOutputSet::Instance()->SetYellow(card);
    if (MainWindow* window = MainWindow::Instance())
        window->SetMarkStatus(window->IsLocalRunOn());
    run->Wait();
}

/// The card is stopped on both sides of the change of state: the first call ends what it puts out now, the second what
/// the job handed over before it saw the new state.
void ExternalMarkingThread::OrderStop() {
    const std::shared_ptr<tessera::RemoteRun> run = Run();
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (!run || run->IsEnded() || !card)
        return;
    run->Stop();
    card->StopMark();
    card->SetMarkStaus(MarkStatusStop);
    card->StopMark();
}

void ExternalMarkingThread::Wait() {
    if (const std::shared_ptr<tessera::RemoteRun> run = Run())
        run->Wait();
}

/// What StopTrigger promises holds because the card is set to run only together with the test that no stop has come:
/// one that comes before the run has begun is not lost.
void ExternalMarkingThread::run() {
    const Order order = m_Order;
    IMarkCardBase* card = MarkCardInstance::Instance();
    m_bResult = false;
    const bool wanted = order.run->BeginUnlessStopped([card] { card->SetMarkStaus(MarkStatusRun); });
    emit MarkStart();
    card->SetMarkType(cardMarkType(order.markType));
    const bool ok = wanted && MarkDocument(order);
    m_bResult = ok;
    card->SetMarkStaus(MarkStatusStop);
    emit MarkFinish();
    order.run->End(ok);
    if (order.notify)
        tessera::AnswerStation(m_Log, order.sender, order.cmd, order.tag, ok,
                               ok ? QStringLiteral("文档执行成功") : QStringLiteral("文档执行失败"));
    order.run->Leave();
}

/// Told first and then seen to be the active one still, so that whoever is to delete the view cannot overlook it.
bool ExternalMarkingThread::MarkDocument(Order const& order) {
    MainWindow* window = MainWindow::Instance();
    if (!window)
        return false;
    QRulerView* view = nullptr;
    do {
        view = window->GetActiveView();
        m_pMarkedView = view;
    } while (view != window->GetActiveView());
    const bool ok = view && MarkView(view, order.option);
    m_pMarkedView = nullptr;
    return ok;
}

bool ExternalMarkingThread::MarkView(QRulerView* view, bool option) {
    view->SetCallBackMirrorPt(&MainWindow::GetCurMirrorPt);
    LayerParamEx* layers = view->GetLayerParams();
    MarkCardInstance::Instance()->DownLayerPara(layers, kLayerCount);
    return view->GetMarkTools()->StartMark(false, option, layers);
}
