// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QResizeEvent;

/// Right side of the main window. Its pages are placed by the main window, which follows SizeChanged. Hidden while it
/// holds no page, so that the drawing has the room. Main thread.
class RightPanel : public QWidget {
    Q_OBJECT
public:
    explicit RightPanel(QWidget* parent = nullptr);
    /// Makes `widget` a page of the panel and shows both.
    void AddWnd(QWidget* widget);

signals:
    void SizeChanged(QResizeEvent* event);

protected:
    void resizeEvent(QResizeEvent* event) override;
};
