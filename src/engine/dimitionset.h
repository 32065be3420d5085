// SPDX-License-Identifier: MIT
#pragma once

#include "engine/dissimilationparam.h"
#include "engine/engineapi.h"

#include <QDialog>
#include <memory>

/// Dialog that asks how curves are to be roughened. Main thread.
class ENGINE_API DimitionSet : public QDialog {
    Q_OBJECT
public:
    /// `lines`: offers the patterns for lines; `modal`: blocks the parent window.
    DimitionSet(bool lines, QWidget* parent, bool modal);
    ~DimitionSet() override;
    void GetDimitionParam(DissimilationParam& param) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
