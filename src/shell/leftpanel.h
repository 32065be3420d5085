// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <memory>

class Ui_LeftPanel;

/// Left side of the main window: document tabs, the active document's objects, the status frame. Main thread.
class LeftPanel : public QFrame {
    Q_OBJECT
public:
    explicit LeftPanel(QWidget* parent = nullptr);
    ~LeftPanel() override;

    QWidget* StatusView() const;
    QWidget* FileList() const;
    QWidget* ObjList() const;
    void AddStatusWidged(QWidget* widget);
    void AddFileWidged(QWidget* widget);
    void AddListWidget(QWidget* widget);

private:
    std::unique_ptr<Ui_LeftPanel> ui;
};
