// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "editing/marklayerparamform.h"
#include "editing/marktoolproperty.h"
#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "engine/qrulerview.h"
#include "shell/actiongroups.h"

#include <QLabel>
#include <QMutexLocker>

void MainWindow::SetUIChangeDoc(QRulerView* view) {
    QRulerView* old = m_pCurDoc;
    if (view == old)
        return;
    if (old) {
        ConnectView(old, false);
        ShowObjList(old, false);
        // A key that nobody has taken yet must not move its objects when it is back, maybe hours later.
        const QMutexLocker lock(&old->m_DirKeyLock);
        old->m_DirKeys.clear();
    }
    m_pCurDoc = view;
    if (view)
        ConnectView(view, true);
    if (MarkToolProperty* page = ToolProperty())
        page->SetRulerView(view);
    DisableDocumentActions();
    if (view)
        EnableForDocument(view);
    else
        tessera::EnableAll(*ui, tessera::kObjectActions, false);
    if (MarkLayerParamForm* page = LayerForm()) {
        if (view)
            page->SetLayerIndex(view->GetCurrentLayer());
        page->DocChange(view);
        page->ResetLayerData();
    }
    UserChange();
}

void MainWindow::ConnectView(QRulerView* view, bool on) {
    if (!on) {
        disconnect(view, &QRulerView::SelectChanged, this, &MainWindow::SelectObjChange);
        disconnect(view, &QRulerView::MouseMoveEvent, this, &MainWindow::onMouseMoveEvent);
        disconnect(view, &QRulerView::ChangeOperatorOnView, this, &MainWindow::OnChangeOperatorOnView);
        return;
    }
    connect(view, &QRulerView::SelectChanged, this, &MainWindow::SelectObjChange);
    connect(view, &QRulerView::MouseMoveEvent, this, &MainWindow::onMouseMoveEvent);
    connect(view, &QRulerView::ChangeOperatorOnView, this, &MainWindow::OnChangeOperatorOnView);
}

void MainWindow::EnableForDocument(QRulerView* view) {
    UnSelectAllTooll();
    ShowObjList(view, true);
    const OperatorOnView op = view->GetOperatorOnView();
    (op == OperatorAddPoint ? ui->actionAddPoint
     : op == OperatorTeach  ? ui->actionTeaching
                            : ui->Select)
        ->setChecked(true);
    SetSelectObjCnt(view->GetSelectedToolCnt());
    const bool canSave = AuthorityManager::CanSaveFile();
    ui->actionSaveAll->setEnabled(canSave);
    ui->actionSaveFile->setEnabled(canSave);
    if (AuthorityManager::CanAddMarkShape())
        ui->toolbar_AddMarkTool->setEnabled(true);
    else
        BackToSelect();
    if (!AuthorityManager::CanEditMarkTool())
        return;
    tessera::EnableAll(*ui, tessera::kAlignActions, view->GetSelectedToolCnt() > 0);
    bool redo = false;
    bool undo = false;
    view->RedoUndoStatus(redo, undo);
    enableRedoUndo(redo, undo);
    EnableForSelection(view);
    ui->actionComposite->setEnabled(true);
}

/// The actions that depend on what kind of objects is selected.
void MainWindow::EnableForSelection(QRulerView* view) {
    ui->actionUnCompositeLine->setEnabled(view->CanSplit());
    ui->actionCompositeLine->setEnabled(view->CanCombineCurve());
    ui->actionUnComposite->setEnabled(view->CanUnCombine());
}

void MainWindow::SelectObjChange(double, double, double, double, double, int count, int) {
    QRulerView* view = GetActiveView();
    if (!view)
        return;
    if (AuthorityManager::CanEditMarkTool()) {
        tessera::EnableAll(*ui, tessera::kAlignActions, count >= 2);
        ui->actionComposite->setEnabled(count >= 2);
        tessera::EnableAll(*ui, tessera::kSelectionActions, count >= 1);
        SetSelectObjCnt(count);
        EnableForSelection(view);
    }
    if (MarkLayerParamForm* page = LayerForm())
        page->SelectObjChanged();
}

void MainWindow::SetSelectObjCnt(int count) {
    m_pSelectCntLabel->setText(LanguageManager::GetLanText("选择对象个数") + QStringLiteral(":") +
                               QString::number(count));
}

void MainWindow::onMouseMoveEvent(QPointF mm, QPoint) {
    m_pMousePosLabel->setText(QString::asprintf("X:%.3f,Y:%.3f", mm.x(), mm.y()));
}

/// The view has gone back to selecting by itself.
void MainWindow::OnChangeOperatorOnView() {
    QRulerView const* view = GetActiveView();
    if (!view || view->GetOperatorOnView() != OperatorSelect)
        return;
    UnSelectAllTooll();
    ui->Select->setChecked(true);
}

void MainWindow::enableRedoUndo(bool redo, bool undo) {
    ui->actionReDo->setEnabled(redo);
    ui->actionUnDo->setEnabled(undo);
}
