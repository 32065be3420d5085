// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QDialog>
#include <memory>

/// Dialog that chooses the language. Main thread.
class ENGINE_API LanSelect : public QDialog {
    Q_OBJECT
public:
    explicit LanSelect(QWidget* parent);
    ~LanSelect() override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
