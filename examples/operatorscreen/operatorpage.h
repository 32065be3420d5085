// SPDX-License-Identifier: MIT
#pragma once

#include "operatorscreen.h"

#include <QPointer>
#include <QWidget>

class MainWindow;

/// The widget that the main window gets and places: over the whole window, or as a tab beside the documents. During a
/// run the main window locks what lies in its tabs, and the operator must still be able to pause and to stop; so the
/// screen itself is a child of the main window that keeps exactly above this page and shows and hides with it.
class OperatorPage : public QWidget {
    Q_OBJECT
public:
    explicit OperatorPage(MainWindow& window);
    ~OperatorPage() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Follow();

    QWidget& m_Window;
    QPointer<OperatorScreen> m_Screen;
    QTimer m_Refresh;
};
