// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QString>

namespace tessera {

/// A message box for texts with names in them, which come from file systems: they are shown as they are and never taken
/// for mark-up. Returns the button pressed.
int ShowNotice(QWidget* parent, QMessageBox::Icon icon, QString const& title, QString const& text,
               QMessageBox::StandardButtons buttons = QMessageBox::Ok);

} // namespace tessera
