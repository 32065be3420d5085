// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QListView>
#include <memory>

/// List of a document's objects in marking order. The move operations act on the selected objects and are steps of
/// undo. Main thread.
class ENGINE_API VZListViewEx : public QListView {
    Q_OBJECT
public:
    explicit VZListViewEx(QWidget* parent);
    ~VZListViewEx() override;
    void MoveObjUp();
    void MoveObjDown();
    void MoveObj2First();
    void MoveObj2Last();

private:
    friend struct QRulerViewAccess;
    struct Private;
    std::unique_ptr<Private> d;
};
