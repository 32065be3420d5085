// SPDX-License-Identifier: MIT
#include "engine/qrulerview.h"
#include "run/formteaching.h"
#include "run/redlooppreview.h"
#include "shell/mainwindow.h"
#include "shell/windowgeometry.h"
#include "ui_mainwindow.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

/// The middle of the lower edge of the screen: there a tool window hides least of the document.
void placeAtBottom(QWidget& window) {
    if (QScreen const* screen = QGuiApplication::primaryScreen())
        window.move(tessera::BottomCentredRect(screen->geometry(), window.size()).topLeft());
}

} // namespace

/// A new dialog each time; the one before stays behind hidden, and goes with the main window.
void MainWindow::on_actionRedLoopPreview_triggered() {
    if (m_pRedLoop)
        m_pRedLoop->hide();
    m_pRedLoop = new RedLoopPreview(this);
    placeAtBottom(*m_pRedLoop);
    m_pRedLoop->show();
}

void MainWindow::onTeaching(bool on) {
    QRulerView* view = GetCurDoc();
    if (!view)
        return;
    if (!on) {
        BackToSelect();
        return;
    }
    NewTeachingWindow();
    UnSelectAllTooll();
    ui->actionTeaching->setEnabled(false);
    view->SetOperatorOnView(OperatorTeach);
    ui->actionTeaching->setChecked(true);
    placeAtBottom(*m_pTeaching);
    m_pTeaching->show();
}

/// A document that was left meanwhile must not go on teaching unseen, its F6 would add points; nor may a circle that
/// was taught by the window's arrows look as if it went on.
void MainWindow::onTeachingRecover() {
    ui->actionTeaching->setEnabled(true);
    for (QRulerView* view : qAsConst(m_Docs)) {
        if (view->GetOperatorOnView() == OperatorTeach)
            view->SetOperatorOnView(OperatorSelect);
    }
    if (!GetActiveView())
        return;
    UnSelectAllTooll();
    BackToSelect();
}

/// The window of before goes: each one that hears of the places pressed in the view would send the beam there.
void MainWindow::NewTeachingWindow() {
    delete m_pTeaching;
    m_pTeaching = new FormTeaching(this);
}

/// Between the start of teaching and the close of its window; the one that circles and arcs use stays hidden.
bool MainWindow::IsTeachingOpen() const {
    return m_pTeaching && !m_pTeaching->isHidden();
}

/// Circles and arcs are taught without a window of their own; the hidden one sends the beam to the places pressed.
void MainWindow::NeedTeachingWindow() {
    if (GetCurDoc() && !m_pTeaching)
        NewTeachingWindow();
}

void MainWindow::on_actionTeachCircle_triggered(bool on) {
    NeedTeachingWindow();
    SelectTool(ui->actionTeachCircle, OperatorTeachCircle, on);
}

void MainWindow::on_actionTeachArc_triggered(bool on) {
    NeedTeachingWindow();
    SelectTool(ui->actionTeachArc, OperatorTeachArc, on);
}
