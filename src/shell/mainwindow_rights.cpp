// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/boxspliceparam.h"
#include "engine/languagemanager.h"
#include "engine/qrulerview.h"
#include "ui_mainwindow.h"

#include <QLabel>

namespace {

using Ui = Ui_MainWindow;
using ActionMember = QAction* Ui::*;

constexpr ActionMember kAlignActions[] = {
    &Ui::actionAlignLeft, &Ui::actionAlignCenterH, &Ui::actionAlignRight,
    &Ui::actionAlignTop,  &Ui::actionAlignCenterV, &Ui::actionAlignBottom,
    &Ui::actionsameWidth, &Ui::actionsameHeight,   &Ui::actionsameSize,
};

constexpr ActionMember kSelectionActions[] = {
    &Ui::actionmirrorTB, &Ui::actionmirrorLR, &Ui::actionarrayObj, &Ui::actionalienation, &Ui::actionRedLoopPreview,
};

constexpr ActionMember kDocumentActions[] = {
    &Ui::action_NewFile, &Ui::actionOpenFlie, &Ui::actionSaveAll,  &Ui::actionSaveFile,
    &Ui::actionUnDo,     &Ui::actionReDo,     &Ui::actionTeaching,
};

constexpr ActionMember kObjectActions[] = {
    &Ui::actionComposite,
    &Ui::actionUnComposite,
    &Ui::actionCompositeLine,
    &Ui::actionUnCompositeLine,
};

template<size_t N>
void enableAll(Ui& ui, ActionMember const (&actions)[N], bool enable) {
    for (ActionMember action : actions)
        (ui.*action)->setEnabled(enable);
}

} // namespace

void MainWindow::DisableDocumentActions() {
    enableAll(*ui, kDocumentActions, false);
    enableAll(*ui, kAlignActions, false);
    enableAll(*ui, kSelectionActions, false);
    ui->toolbar_AddMarkTool->setEnabled(false);
    ui->actionSort->setEnabled(true);
    ui->action_NewFile->setEnabled(AuthorityManager::CanNewFile());
    ui->actionOpenFlie->setEnabled(AuthorityManager::CanOpenFile());
}

void MainWindow::OnUserChanged() {
    DisableDocumentActions();
    BoxSpliceParam::Read();
    QRulerView* view = GetActiveView();
    if (!view) {
        enableAll(*ui, kObjectActions, false);
        return;
    }
    const bool canSave = AuthorityManager::CanSaveFile();
    ui->actionSaveAll->setEnabled(canSave);
    ui->actionSaveFile->setEnabled(canSave);
    if (AuthorityManager::CanAddMarkShape()) {
        ui->toolbar_AddMarkTool->setEnabled(true);
        ui->actionTeaching->setEnabled(true);
    } else {
        BackToSelect();
    }
    const bool canEdit = AuthorityManager::CanEditMarkTool();
    view->SetReadOnly(!canEdit);
    bool redo = false;
    bool undo = false;
    if (canEdit) {
        const bool selected = view->GetSelectedToolCnt() > 0;
        enableAll(*ui, kAlignActions, selected);
        ui->actionRedLoopPreview->setEnabled(selected);
        view->RedoUndoStatus(redo, undo);
    }
    enableRedoUndo(redo, undo);
}

void MainWindow::SetUIChangeDoc(QRulerView* view) {
    QRulerView* old = m_pCurDoc;
    if (view == old)
        return;
    if (old) {
        ConnectView(old, false);
        ShowObjList(old, false);
    }
    m_pCurDoc = view;
    DisableDocumentActions();
    if (view) {
        ConnectView(view, true);
        EnableForDocument(view);
    }
    UserChange();
    if (view && AuthorityManager::CanEditMarkTool())
        EnableForSelection(view);
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
    (view->GetOperatorOnView() == OperatorAddPoint ? ui->actionAddPoint : ui->Select)->setChecked(true);
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
    enableAll(*ui, kAlignActions, view->GetSelectedToolCnt() > 0);
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
    if (!view || !AuthorityManager::CanEditMarkTool())
        return;
    enableAll(*ui, kAlignActions, count >= 2);
    ui->actionComposite->setEnabled(count >= 2);
    enableAll(*ui, kSelectionActions, count >= 1);
    SetSelectObjCnt(count);
    EnableForSelection(view);
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
