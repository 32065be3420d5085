// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QWidget>
#include <memory>

/// Numeric keypad. Main thread.
class ENGINE_API PassWordCtrl : public QWidget {
    Q_OBJECT
public:
    explicit PassWordCtrl(QWidget* parent);
    ~PassWordCtrl() override;

signals:
    /// 0 to 9 a digit, 10 back, 11 clear.
    void BtnClicked(int code);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
