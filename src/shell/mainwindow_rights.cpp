// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/boxspliceparam.h"
#include "engine/qrulerview.h"
#include "shell/actiongroups.h"

void MainWindow::DisableDocumentActions() {
    tessera::EnableAll(*ui, tessera::kDocumentActions, false);
    tessera::EnableAll(*ui, tessera::kAlignActions, false);
    tessera::EnableAll(*ui, tessera::kSelectionActions, false);
    EnableRightPages(false, false);
    ui->toolbar_AddMarkTool->setEnabled(false);
    ui->actionSort->setEnabled(true);
    ui->action_NewFile->setEnabled(AuthorityManager::CanNewFile());
    ui->actionOpenFlie->setEnabled(AuthorityManager::CanOpenFile());
}

void MainWindow::OnUserChanged() {
    DisableDocumentActions();
    BoxSpliceParam::Read();
    QRulerView* view = GetActiveView();
    if (!view)
        return;
    const bool canSave = AuthorityManager::CanSaveFile();
    ui->actionSaveAll->setEnabled(canSave);
    ui->actionSaveFile->setEnabled(canSave);
    if (AuthorityManager::CanAddMarkShape()) {
        ui->toolbar_AddMarkTool->setEnabled(true);
        // only the close of its window ends teaching, whoever is logged in then and whatever document is open
        ui->actionTeaching->setEnabled(!IsTeachingOpen());
    } else {
        BackToSelect();
    }
    const bool canEdit = AuthorityManager::CanEditMarkTool();
    bool redo = false;
    bool undo = false;
    if (canEdit) {
        const bool selected = view->GetSelectedToolCnt() > 0;
        tessera::EnableAll(*ui, tessera::kAlignActions, selected);
        ui->actionRedLoopPreview->setEnabled(selected);
        view->RedoUndoStatus(redo, undo);
    }
    enableRedoUndo(redo, undo);
    view->SetReadOnly(!canEdit);
    EnableRightPages(canEdit, AuthorityManager::CanEditMarkParam());
}
