// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/externmodules.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/marktool.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "shell/customuitype.h"
#include "shell/customwindow.h"
#include "support/approot.h"
#include "ui_mainwindow.h"

void MainWindow::InitCustomWindow() {
    const int type = SystemParam::Instance()->m_nCustomUIType;
    if (type == tessera::kCustomUINone) {
        ui->actionChangeDebug->setVisible(false);
        return;
    }
    LoadCustomWindow();
    ui->actionChangeDebug->setVisible(false);
    if (!m_pCustomWindow)
        return;
    if (type == tessera::kCustomUITab) {
        ui->tabWidgetMian->insertTab(ui->tabWidgetMian->count() - 1, m_pCustomWindow, QString());
        SetPluginTexts();
    } else if (type == tessera::kCustomUIWhole) {
        SetUIMode(false);
        ui->actionChangeDebug->setVisible(true);
    }
}

/// Also a search without an error is noted, so that the log tells which start looked for a custom window.
void MainWindow::LoadCustomWindow() {
    const tessera::CustomWindow found =
        tessera::LoadCustomWindowFrom(tessera::rootPath(QStringLiteral("/CustomWindow")), this);
    m_pCustomWindow = found.widget;
    MarkLog::Instance()->ShowNote_Error(found.report);
}

void MainWindow::initMarkTool() {
    for (IMarkToolModule* module : GetExternModules()) {
        for (MarkToolBaseInfo* info : module->GetToolInfos()) {
            auto* action = new QAction(info->GetIcon(), QString(), this);
            action->setCheckable(true);
            action->setObjectName(info->GetToolClassName());
            m_ToolActions.append(action);
            m_ToolInfos.append(info);
            m_ToolModules.append(module);
            ui->toolbar_AddMarkTool->addAction(action);
        }
    }
    for (QAction* action : qAsConst(m_ToolActions))
        connect(action, &QAction::triggered, this, &MainWindow::on_actAddMarkTools_triggered);
    SetPluginTexts();
}

void MainWindow::SetPluginTexts() {
    for (int i = 0; i < m_ToolActions.size(); ++i)
        m_ToolActions.at(i)->setToolTip(LanguageManager::GetLanText(m_ToolInfos.at(i)->GetToolName()));
    const int tab = m_pCustomWindow ? ui->tabWidgetMian->indexOf(m_pCustomWindow) : -1;
    if (tab >= 0)
        ui->tabWidgetMian->setTabText(tab, LanguageManager::GetLanText("定制"));
}

/// A module that makes no object leaves the view adding, with nothing to add.
void MainWindow::on_actAddMarkTools_triggered(bool on) {
    QRulerView* view = GetActiveView();
    auto* action = qobject_cast<QAction*>(sender());
    if (!view || !action)
        return;
    SelectTool(action, OperatorAddPluginTool, on);
    const int index = m_ToolActions.indexOf(action);
    if (!on || index < 0)
        return;
    IMarkToolBase* tool = m_ToolModules.at(index)->CreateTool(m_ToolInfos.at(index)->GetToolClassName());
    view->SetCurAddMarkTool(tool ? new MarkTool(tool) : nullptr);
}
