// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/ccdposset.h"
#include "engine/dimitionset.h"
#include "engine/markshapecontainer.h"
#include "engine/marktool.h"
#include "engine/qrulerview.h"
#include "iosetup/iosetting.h"
#include "iosetup/laseralarmset.h"
#include "ui_mainwindow.h"

#include <QPointer>

void MainWindow::initSlotSingle() {
    const struct {
        QAction* action;
        void (MainWindow::*slot)();
    } plain[] = {
        {ui->action_NewFile, &MainWindow::on_actDoc_New_triggered},
        {ui->actionOpenFlie, &MainWindow::onOpenFile},
        {ui->actionSaveFile, &MainWindow::onSaveFile},
        {ui->actionSaveAll, &MainWindow::onSaveAllFile},
        {ui->Select, &MainWindow::on_actSelect_triggered},
        {ui->actionReDo, &MainWindow::onRedo},
        {ui->actionUnDo, &MainWindow::onUndo},
        {ui->actionAlignLeft, &MainWindow::onAlign},
        {ui->actionAlignCenterH, &MainWindow::onAlign},
        {ui->actionAlignRight, &MainWindow::onAlign},
        {ui->actionAlignTop, &MainWindow::onAlign},
        {ui->actionAlignCenterV, &MainWindow::onAlign},
        {ui->actionAlignBottom, &MainWindow::onAlign},
        {ui->actionComposite, &MainWindow::OnCombine},
        {ui->actionUnComposite, &MainWindow::OnUnCombine},
        {ui->actionCompositeLine, &MainWindow::OnCombineLine},
        {ui->actionUnCompositeLine, &MainWindow::OnUnCpmbineLine},
        {ui->actionSort, &MainWindow::onSort},
    };
    for (auto const& entry : plain)
        connect(entry.action, &QAction::triggered, this, entry.slot);
    connect(ui->actionAddPoint, &QAction::triggered, this, &MainWindow::on_actAddMarkPoint_triiger);
    connect(ui->actionaddLine, &QAction::triggered, this, &MainWindow::on_actAddLine_triiger);
    connect(ui->actionTeaching, &QAction::triggered, this, &MainWindow::onTeaching);
    connect(this, &MainWindow::updateMatrBTTime, this, &MainWindow::ShowBufferRunTime);
}

void MainWindow::UnSelectAllTooll() {
    for (QAction* action : ui->toolbar_AddMarkTool->actions())
        action->setChecked(false);
    for (QAction* action : {ui->actionTeaching, ui->actionTeachArc, ui->actionTeachCircle, ui->actionscaleRegion})
        action->setChecked(false);
}

/// The tools exclude one another; to take one back is to select.
void MainWindow::SelectTool(QAction* action, OperatorOnView op, bool on) {
    QRulerView* view = GetActiveView();
    if (!view) {
        action->setChecked(action == ui->Select);
        return;
    }
    UnSelectAllTooll();
    if (!on) {
        BackToSelect();
        return;
    }
    action->setChecked(true);
    view->SetOperatorOnView(op);
}

void MainWindow::BackToSelect() {
    ui->Select->setChecked(true);
    if (QRulerView* view = GetActiveView())
        view->SetOperatorOnView(OperatorSelect);
}

void MainWindow::on_actSelect_triggered() {
    SelectTool(ui->Select, OperatorSelect, true);
}

void MainWindow::on_actAddMarkPoint_triiger(bool on) {
    SelectTool(ui->actionAddPoint, OperatorAddPoint, on);
}

void MainWindow::on_actAddLine_triiger(bool on) {
    SelectTool(ui->actionaddLine, OperatorAddLine, on);
}

void MainWindow::on_actionAddRect_triggered(bool on) {
    SelectTool(ui->actionAddRect, OperatorAddRect, on);
}

void MainWindow::on_actionAddCircle_triggered(bool on) {
    SelectTool(ui->actionAddCircle, OperatorAddCircle, on);
}

void MainWindow::on_actionAddText_triggered(bool on) {
    SelectTool(ui->actionAddText, OperatorAddText, on);
}

void MainWindow::on_actionscaleRegion_triggered(bool on) {
    SelectTool(ui->actionscaleRegion, OperatorZoomRegion, on);
}

void MainWindow::onUndo() {
    if (QRulerView* view = GetActiveView())
        view->Undo();
}

void MainWindow::onRedo() {
    if (QRulerView* view = GetActiveView())
        view->Redo();
}

void MainWindow::onSort() {
    if (QRulerView* view = GetActiveView())
        view->Sort();
}

void MainWindow::onAlign() {
    QRulerView* view = GetActiveView();
    if (!view)
        return;
    const struct {
        QAction* action;
        void (QRulerView::*align)();
    } aligns[] = {
        {ui->actionAlignLeft, &QRulerView::AlignLeft},       {ui->actionAlignCenterH, &QRulerView::AlignCenterH},
        {ui->actionAlignRight, &QRulerView::AlignRight},     {ui->actionAlignTop, &QRulerView::AlignTop},
        {ui->actionAlignCenterV, &QRulerView::AlignCenterV}, {ui->actionAlignBottom, &QRulerView::AlignBottom},
    };
    for (auto const& entry : aligns) {
        if (sender() == entry.action)
            (view->*entry.align)();
    }
}

void MainWindow::OnCombine() {
    if (QRulerView* view = GetActiveView())
        view->Combine();
}

void MainWindow::OnUnCombine() {
    if (QRulerView* view = GetActiveView())
        view->UnCombine();
}

/// Open curves alone are joined into a closed one.
void MainWindow::OnCombineLine() {
    QRulerView* view = GetActiveView();
    if (!view)
        return;
    MarkShapeContainer& tools = *view->GetMarkTools();
    bool allOpen = true;
    for (int index : tools.GetSelectedIndex()) {
        MarkTool const* tool = tools[index];
        allOpen = allOpen && tool && tool->GetTool() && tool->GetTool()->IsOpenCurve();
    }
    if (allOpen)
        view->CombineCurve(true);
    else
        view->CombineCurve();
}

void MainWindow::OnUnCpmbineLine() {
    if (QRulerView* view = GetActiveView())
        view->UnCombineLine();
}

void MainWindow::on_actionImportCAD_triggered() {
    if (QRulerView* view = GetActiveView())
        view->ImportVectorFile();
}

void MainWindow::on_actionscaleSelect_triggered() {
    if (QRulerView* view = GetActiveView())
        view->ScaleSelectObjRegion();
}

void MainWindow::on_actionscaleReset_triggered() {
    if (QRulerView* view = GetActiveView())
        view->ResetView();
}

void MainWindow::on_actionzoomIn_triggered() {
    if (QRulerView* view = GetActiveView())
        view->Enlarge(true);
}

void MainWindow::on_actionzoomOut_triggered() {
    if (QRulerView* view = GetActiveView())
        view->Enlarge(false);
}

void MainWindow::on_actionarrayObj_triggered() {
    QRulerView* view = GetActiveView();
    if (view && view->GetSelectedToolCnt() > 0)
        view->ArraySelectObj();
}

/// A controlling station may close the document while the dialog asks.
void MainWindow::on_actionalienation_triggered() {
    const QPointer<QRulerView> view(GetActiveView());
    if (!view || view->GetSelectedToolCnt() <= 0)
        return;
    DimitionSet dialog(true, this, true);
    if (dialog.exec() != QDialog::Accepted || !view)
        return;
    DissimilationParam param;
    dialog.GetDimitionParam(param);
    view->DissimilationSelectObj(&param);
}

void MainWindow::on_actionmirrorTB_triggered() {
    QRulerView* view = GetActiveView();
    if (view && view->GetSelectedToolCnt() > 0)
        view->MirrorSelectObj(MirrorTopBottom);
}

void MainWindow::on_actionmirrorLR_triggered() {
    QRulerView* view = GetActiveView();
    if (view && view->GetSelectedToolCnt() > 0)
        view->MirrorSelectObj(MirrorLeftRight);
}

void MainWindow::on_actionsameWidth_triggered() {
    if (QRulerView* view = GetActiveView())
        view->SameSelectedWidth();
}

void MainWindow::on_actionsameHeight_triggered() {
    if (QRulerView* view = GetActiveView())
        view->SameSelectedHeight();
}

void MainWindow::on_actionsameSize_triggered() {
    if (QRulerView* view = GetActiveView())
        view->SameSelectedSize();
}

void MainWindow::LayerIndexChanged(int layer) {
    if (QRulerView* view = GetActiveView())
        view->SetCurrentLayer(layer);
}

/// Made when it is first asked for: its pages would take a third of the time that the window needs to come up.
void MainWindow::on_actionIOSet_triggered() {
    IOSetting* dialog = IOSetting::Instance(this);
    connect(dialog, &IOSetting::UpdateValues, this, &MainWindow::UpdateIOSetting, Qt::UniqueConnection);
    dialog->ShowWindow();
}

/// The dialog ends itself when it is closed.
void MainWindow::on_laserAlarm_clicked() {
    auto* dialog = new LaserAlarmSet(this);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}

void MainWindow::on_actionCCD_triggered() {
    if (!CCDPosSet::IsVisible())
        CCDPosSet::ShowCCDPosSet(this);
}
