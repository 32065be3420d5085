// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/playbackclock.h"
#include "simengine/view/playbackloader.h"
#include "simengine/view/playbackview.h"

#include <QDialog>
#include <QElapsedTimer>
#include <functional>

class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QSlider;
class QTableWidget;
class QVBoxLayout;

namespace sim {

/// Plays a document's job back before it is run: slider, speeds, the estimate with its parts, what the head does at
/// each moment, and how the estimates of the last runs compared. It looks at the document and at the machine's settings
/// and never touches the card. Stays beside the main window; follows changes while it is paused. Main thread.
class PlaybackWindow : public QDialog {
    Q_OBJECT
public:
    /// What the window plays and shows, asked anew each time.
    struct Source {
        std::function<RunPlan(bool selectedOnly)> plan;
        std::function<PlaybackView::Colors()> colors;
        std::function<QString()> document; ///< path of its file
        std::function<QRectF()> field;     ///< mm
    };

    PlaybackWindow(Source source, bool selectedOnly, QWidget* parent);
    ~PlaybackWindow() override;

    const PlaybackClock& clock() const { return m_clock; }
    PlaybackView& view() { return *m_view; }
    /// The job of now is there to be played.
    bool isReady() const { return m_timeline && !m_loader->isBusy(); }

private:
    void build();
    QVBoxLayout* buildSide();
    QHBoxLayout* buildBar();
    QHBoxLayout* buildSpeeds();
    QHBoxLayout* buildZoom();
    QLabel* addFigure(QGridLayout* grid, const char* key, const char* name);
    void reload();
    void follow();
    void take(std::shared_ptr<const JobTimeline> timeline);
    void toggle();
    void seek(double us);
    void tick();
    void slide(int value);
    void showTime();
    QString penText(int pen) const;
    void showEstimate();
    void showRuns();

    Source m_source;
    RunPlan m_plan;
    PlaybackView::Colors m_colors;
    PlaybackClock m_clock;
    PlaybackLoader* m_loader;
    std::shared_ptr<const JobTimeline> m_timeline;
    quint64 m_runsVersion = 0;
    QElapsedTimer m_wall; ///< since the last tick
    QTimer m_ticks;
    QTimer m_follow;

    PlaybackView* m_view;
    QSlider* m_slider;
    QPushButton* m_play;
    QPushButton* m_first;
    QButtonGroup* m_speeds;
    QCheckBox* m_selected;
    QCheckBox* m_jumps;
    QLabel* m_total;
    QLabel* m_parts;
    QLabel* m_besides;
    QLabel* m_passed;
    QLabel* m_left;
    QLabel* m_place;
    QLabel* m_pen;
    QLabel* m_laser;
    QTableWidget* m_runs;
};

} // namespace sim
