// SPDX-License-Identifier: MIT
#include "run/markingthread.h"

#include "engine/imarkcardbase.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "run/debugtrace.h"

#include <QTime>

namespace {

/// A job ends within milliseconds of a stop; the bound keeps a broken card driver from holding up the end of the
/// program.
constexpr unsigned long kEndWaitMs = 10000;

QString timeStamp() {
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}

} // namespace

MarkingThread::MarkingThread(QObject* parent)
    : QThread(parent)
    , m_Run(*this) {}

MarkingThread::~MarkingThread() {
    m_Run.StopTriger();
    if (wait(kEndWaitMs))
        return;
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("the marking job did not end after a stop"));
    terminate();
    wait();
}

void MarkingThread::RunTriger(bool select, bool loop, int delay, MarkType type) {
    m_Run.RunTriger(select, loop, delay, type);
}

void MarkingThread::RunTrigerOnly(bool select, bool loop, int delay, MarkType type, bool redLoopTrigger) {
    m_Run.RunTrigerOnly(select, loop, delay, type, redLoopTrigger);
}

void MarkingThread::PauseTriger() {
    m_Run.PauseTriger();
}

void MarkingThread::ReStartTriger() {
    m_Run.ReStartTriger();
}

void MarkingThread::StopTriger() {
    m_Run.StopTriger();
}

void MarkingThread::StopTrigerVirtual() {
    m_Run.StopTrigerVirtual();
}

void MarkingThread::SetStopVirtual(bool on) {
    m_Run.SetStopVirtual(on);
}

bool MarkingThread::IsStopVirtual() const {
    return m_Run.IsStopVirtual();
}

void MarkingThread::SetEnableTriggerWhenRedLoop(bool on) {
    m_Run.SetEnableTriggerWhenRedLoop(on);
    tessera::ShowTrace(QStringLiteral("m_EnableTriggerWhenRedLoop:%1").arg(on ? 1 : 0));
}

bool MarkingThread::MarkFile(MarkType type, bool select, bool loop) {
    IMarkCardBase* card = MarkCardInstance::Instance();
    MainWindow* window = MainWindow::Instance();
    if (!card || !window)
        return false;
    card->SetMarkType(type);
    // Told first and then seen to be the active one still, so that whoever is to delete it cannot overlook it.
    QRulerView* view = nullptr;
    do {
        view = window->GetActiveView();
        m_pMarkedView = view;
    } while (view != window->GetActiveView());
    const bool ok = view && MarkView(view, select, loop);
    m_pMarkedView = nullptr;
    return ok;
}

bool MarkingThread::MarkView(QRulerView* view, bool select, bool loop) {
    view->SetCallBackMirrorPt(&MainWindow::GetCurMirrorPt);
    LayerParamEx* layers = view->GetLayerParams();
    MarkCardInstance::Instance()->DownLayerPara(layers, kLayerCount);
    MarkShapeContainer* tools = view->GetMarkTools();
    if (select && tools->GetSelectedToolCnt() <= 0)
        return false;
    return tools->StartMark(select, loop, layers);
}

void MarkingThread::run() {
    m_Run.run();
}

void MarkingThread::startWorker() {
    wait();
    start();
}

void MarkingThread::loopMarkDelay(double ms) {
    SystemParam::Instance()->LoopMarkDelay(ms);
}

void MarkingThread::setMarkStatus(MarkStatus status) {
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->SetMarkStaus(status);
}

void MarkingThread::stopMark() {
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->StopMark();
}

void MarkingThread::waitMarkStopped() {
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->IsMarkStop();
}

bool MarkingThread::bufferLoop() {
    return SystemParam::Instance()->UsedBufLoop();
}

bool MarkingThread::markFile(MarkType type, bool select, bool loop) {
    return MarkFile(type, select, loop);
}

void MarkingThread::event(tessera::RunEvent event) {
    switch (event) {
    case tessera::RunEvent::Started:
        emit markstart();
        break;
    case tessera::RunEvent::Resumed:
        emit markRestart();
        break;
    case tessera::RunEvent::Paused:
        emit markpause();
        break;
    case tessera::RunEvent::PassDone:
        emit markfinish(true, QDateTime::currentDateTime());
        break;
    case tessera::RunEvent::Ended:
        emit markFinishUI();
        break;
    case tessera::RunEvent::EndedToRedLoop:
        emit markrunspecial();
        break;
    }
}

void MarkingThread::trace(tessera::RunTrace place, tessera::RunTraceData const& data) {
    QString text;
    switch (place) {
    case tessera::RunTrace::Triggered: {
        IMarkCardBase* card = MarkCardInstance::Instance();
        const int status = card ? card->GetMarkStatus() : MarkStatusStop;
        text = timeStamp() + QStringLiteral(":红光循环时触发运行开始") + QString::number(status);
        break;
    }
    case tessera::RunTrace::BeforeFile:
        text = timeStamp() + QStringLiteral(":MarkFile begin");
        break;
    case tessera::RunTrace::AfterFile:
        text = timeStamp() + QStringLiteral(":MarkFile end");
        break;
    case tessera::RunTrace::Ended:
        text = QStringLiteral("%1,%2,%3,%4").arg(data.type).arg(data.loop).arg(data.ok).arg(data.stop);
        break;
    }
    tessera::ShowTrace(text);
}
