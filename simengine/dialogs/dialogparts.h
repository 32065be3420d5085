// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

class QDialog;
class QFormLayout;
class QHBoxLayout;
class QPushButton;
class QWidget;

namespace sim {

/// Least height of what a finger is to hit, pixels.
constexpr int kTouchHeight = 40;

/// Style of a horizontal slider that a finger moves.
constexpr char kTouchSlider[] = "QSlider::groove:horizontal { height: 6px; background: #d5dce4; border-radius: 3px; }"
                                "QSlider::sub-page:horizontal { background: #7d93ab; border-radius: 3px; }"
                                "QSlider::handle:horizontal { width: 28px; margin: -12px 0; background: #ffffff; "
                                "border: 1px solid #7d93ab; border-radius: 8px; }";

/// A button with the text of a key, high enough for a finger.
QPushButton* makeButton(char const* key, char const* objectName, QWidget* parent);

/// "确定" (pushButtonOK) and "取消" (pushButtonCancel, rejects the dialog) in a row. The caller connects the first.
struct ButtonRow {
    QHBoxLayout* layout;
    QPushButton* ok;
    QPushButton* cancel;
};
ButtonRow makeOkCancel(QDialog* dialog);

/// The layout of a dialog of labels and fields, the labels at the height of their fields.
QFormLayout* makeForm(QDialog* dialog);

/// Title, no question mark in the frame, and a size that reads on a small panel.
void prepareDialog(QDialog* dialog, QString const& title);

} // namespace sim
