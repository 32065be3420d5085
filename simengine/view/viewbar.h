// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QFrame>

class QToolButton;

namespace sim {

class CanvasWidget;
struct SnapSettings;

/// Switches for what Shift, Alt and Control do with a mouse, in the size of a finger, in a corner of the drawing area:
/// snapping with its settings, scaling in proportion, one axis at a time. And the way to the playback of the job.
class ViewBar : public QFrame {
    Q_OBJECT
public:
    ViewBar(CanvasWidget& canvas, QWidget* parent);

    /// The texts in the language of now.
    void setTexts();

signals:
    /// The job is to be played back.
    void playbackAsked();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QToolButton* addButton(const char* name, bool checkable);
    void showSettings();
    void openMenu();
    void change(const SnapSettings& settings);

    CanvasWidget& m_canvas;
    QToolButton* m_snap;
    QToolButton* m_menu;
    QToolButton* m_ratio;
    QToolButton* m_axis;
    QToolButton* m_playback;
};

} // namespace sim
