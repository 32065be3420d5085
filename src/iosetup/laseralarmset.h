// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <memory>

class Ui_LaserAlarmSet;

/// Shows and sets the laser's fault lines; deletes itself when it is closed. While it is shown it looks at the lines
/// every 100 ms, and a custom fault stays until the operator clears it. Main thread.
class LaserAlarmSet : public QDialog {
    Q_OBJECT
public:
    explicit LaserAlarmSet(QWidget* parent = nullptr);
    ~LaserAlarmSet() override;

signals:
    /// After each look at the lines: the cause of the fault, empty for none.
    void AlarmChanged(QString cause);

public slots:
    void OnAlarmChanged(QString cause);
    void on_pushButtonReset_clicked();
    void on_pushButtonSavePara_clicked();
    void on_spinBoxLaserType_valueChanged(int type);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void SetUIText();
    void FillControls();
    void ShowState(bool alarmed);
    void StopLooking();
    template<typename T>
    T* Channel(char const* name, int channel) const;

    std::unique_ptr<Ui_LaserAlarmSet> ui;
    int m_TimerId = -1;
};
