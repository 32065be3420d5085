// SPDX-License-Identifier: MIT
#pragma once

#include "ui_mainwindow.h"

#include <cstddef>

namespace tessera {

using ActionMember = QAction* Ui_MainWindow::*;

/// What arranges or sizes several objects by one another.
inline constexpr ActionMember kAlignActions[] = {
    &Ui_MainWindow::actionAlignLeft, &Ui_MainWindow::actionAlignCenterH, &Ui_MainWindow::actionAlignRight,
    &Ui_MainWindow::actionAlignTop,  &Ui_MainWindow::actionAlignCenterV, &Ui_MainWindow::actionAlignBottom,
    &Ui_MainWindow::actionsameWidth, &Ui_MainWindow::actionsameHeight,   &Ui_MainWindow::actionsameSize,
};

/// What acts on any selection.
inline constexpr ActionMember kSelectionActions[] = {
    &Ui_MainWindow::actionmirrorTB,   &Ui_MainWindow::actionmirrorLR,       &Ui_MainWindow::actionarrayObj,
    &Ui_MainWindow::actionalienation, &Ui_MainWindow::actionRedLoopPreview,
};

/// What a user's rights to documents switch.
inline constexpr ActionMember kDocumentActions[] = {
    &Ui_MainWindow::action_NewFile, &Ui_MainWindow::actionOpenFlie, &Ui_MainWindow::actionSaveAll,
    &Ui_MainWindow::actionSaveFile, &Ui_MainWindow::actionUnDo,     &Ui_MainWindow::actionReDo,
    &Ui_MainWindow::actionTeaching,
};

/// What depends on the kind of the selected objects.
inline constexpr ActionMember kObjectActions[] = {
    &Ui_MainWindow::actionComposite,
    &Ui_MainWindow::actionUnComposite,
    &Ui_MainWindow::actionCompositeLine,
    &Ui_MainWindow::actionUnCompositeLine,
};

template<size_t N>
void EnableAll(Ui_MainWindow& ui, ActionMember const (&actions)[N], bool enable) {
    for (ActionMember action : actions)
        (ui.*action)->setEnabled(enable);
}

} // namespace tessera
