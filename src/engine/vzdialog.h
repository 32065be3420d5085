// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QDialog>

/// Base of dialogs that stay beside the main window. Main thread.
class ENGINE_API VZDialog : public QDialog {
    Q_OBJECT
public:
    explicit VZDialog(QWidget* parent);
    ~VZDialog() override;
};
