// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/vzdialog.h"

VZDialog::VZDialog(QWidget* parent)
    : QDialog(parent) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setModal(false);
}

VZDialog::~VZDialog() = default;
