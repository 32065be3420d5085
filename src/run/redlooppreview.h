// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <memory>

class QRulerView;

namespace Ui {
class RedLoopPreview;
}

/// Four arrows that nudge the selection while the pilot beam traces it again and again: as long as the dialog is up the
/// preview loops. Made hidden; stays on top. Its own button closes it: a kiosk's windows have no frame, and the main
/// window is locked while the beam loops. Main thread.
class RedLoopPreview : public QDialog {
    Q_OBJECT
public:
    explicit RedLoopPreview(QWidget* parent = nullptr);
    ~RedLoopPreview() override;

public slots:
    /// Escape closes, which ends the preview.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private slots:
    void on_pushButtonUp_clicked();
    void on_pushButtonDown_clicked();
    void on_pushButtonLeft_clicked();
    void on_pushButtonRight_clicked();

private:
    /// One key step in each direction given as -1, 0 or 1; the other way with an inverted Y axis.
    void Nudge(int x, int y);

    std::unique_ptr<Ui::RedLoopPreview> ui;
    QRulerView* m_pView = nullptr; ///< as it was at the last press
};
