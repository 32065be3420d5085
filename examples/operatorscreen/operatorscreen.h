// SPDX-License-Identifier: MIT
#pragma once

#include "runstate.h"

#include <QTimer>
#include <QWidget>

class MainWindow;
class QLabel;
class QPushButton;

/// One screen for an operator who only runs jobs: state, counter, time, and buttons large enough for a gloved finger.
/// Whatever it does goes through the public operations of the main window and of the run dialog. Main thread.
class OperatorScreen : public QWidget {
    Q_OBJECT
public:
    explicit OperatorScreen(MainWindow& window);
    /// Shows what the machine does now, in the language that is set now.
    void Refresh();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* MakeNumbers();
    QWidget* MakeButtons();
    QLabel* MakeLabel(char const* name);
    QPushButton* MakeButton(char const* name, void (OperatorScreen::*press)());
    void Start();
    void Pause();
    void Stop();
    void ShowEditor();

    MainWindow& m_Window;
    QLabel* m_State = nullptr;
    QLabel* m_DocumentTitle = nullptr;
    QLabel* m_Document = nullptr;
    QLabel* m_CountTitle = nullptr;
    QLabel* m_Count = nullptr;
    QLabel* m_TimeTitle = nullptr;
    QLabel* m_Time = nullptr;
    QPushButton* m_Editor = nullptr;
    QPushButton* m_Start = nullptr;
    QPushButton* m_Pause = nullptr;
    QPushButton* m_Stop = nullptr;
};
