// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"

#include <QThreadPool>
#include <QTimer>
#include <QVector>
#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace sim {

class BorderBar;
class DevicePage;
class FaultPanel;
class HeadWindow;
class InputSwitch;
class OutputLamps;
class StackLight;
class TraceView;

/// The simulated machine's own window: what a person at the plant would see and switch. It looks at the machine 25
/// times a second, and only while it is shown.
class PanelWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kPeriod = 40; ///< ms

    explicit PanelWindow(SimControl& machine, QWidget* parent = nullptr);
    /// An export that is under way is written to its end.
    ~PanelWindow() override;

    /// Shows or hides the one panel of the machine; it goes with the application. Main thread.
    static bool showPanel(SimControl& machine, bool on, std::string& error);
    static PanelWindow* instance();

    bool isFollowing() const { return m_timer.isActive(); }
    /// Looks at the machine now.
    void refresh();
    /// Writes the trace in the background; the button for it has to wait, and a failure is told to the operator.
    void exportTrace(const QString& file);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeLines();
    QWidget* makeTrace();
    QWidget* makeSpeed();
    QLabel* makeTitle(QVBoxLayout* layout, const char* key);
    void setTexts();
    void takeFunctions();
    void showState(const SimCardState& state);
    void showLight(const SimCardState& state);
    void askExport();
    void showExported(bool done, const QString& error);
    void showHead();

    SimControl& m_machine;
    QThreadPool m_pool; ///< for exports
    QTimer m_timer;
    int m_ticks = 0;

    QLabel* m_activity = nullptr;
    QLabel* m_position = nullptr;
    QLabel* m_run = nullptr;
    StackLight* m_light = nullptr;
    QVector<QPushButton*> m_speeds;
    QVector<InputSwitch*> m_inputs;
    OutputLamps* m_outputs = nullptr;
    TraceView* m_trace = nullptr;
    BorderBar* m_border = nullptr;
    FaultPanel* m_faults = nullptr;
    DevicePage* m_devices = nullptr;
    QPushButton* m_showFaults = nullptr;
    QPushButton* m_showDevices = nullptr;
    QPushButton* m_jumps = nullptr;
    QPushButton* m_clear = nullptr;
    QPushButton* m_export = nullptr;
    QPushButton* m_head = nullptr;
    HeadWindow* m_headWindow = nullptr; ///< made when it is first asked for
    struct Title {
        QLabel* label;
        const char* key;
    };
    QVector<Title> m_titles;
};

} // namespace sim
