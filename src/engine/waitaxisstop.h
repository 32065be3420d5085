// SPDX-License-Identifier: MIT
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"
#include "engine/engineapi.h"

#include <QDialog>
#include <QVector>
#include <memory>

/// Wait dialog over homings or moves of axes. Main thread. With the motion card closed nothing moves and the dialog
/// ends rejected at once.
class ENGINE_API WaitAxisStop : public QDialog {
    Q_OBJECT
public:
    /// Works through a copy of `list` in its order from the moment the dialog is shown, and closes it when all have
    /// finished: accepted, or rejected when an axis did not get there or the operator has cancelled, which stops the
    /// axes. A request with `Wait` holds up those behind it. `home`: homes every axis with the values of `para`
    /// (copied); else each axis goes to its `Pos` with its `Vel` and `Acc`. Null for `para` means the shared object,
    /// null for `parent` a window of its own. Who makes it owns it, as with any dialog; its end stops the axes.
    WaitAxisStop(bool home, QVector<AxisMoveStruct> const& list, QWidget* parent, Class_CardPara* para);
    ~WaitAxisStop() override;

    /// Homes the axes in list order with the values of `para` and blocks behind a wait dialog over `parent` (may be
    /// null) until all have finished or the operator has cancelled. False when an axis did not reach home. Main thread.
    static bool SearchHome(QVector<AxisMoveStruct>& list, Class_CardPara* para, QWidget* parent);

public slots:
    /// Cancels; the dialog closes when the axes have come to rest.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
