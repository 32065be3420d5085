// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>
#include <memory>

class Ui_AlarmHistoryDialog;

namespace tessera {
class AlarmHistoryModel;
class AlarmRecorder;
} // namespace tessera

/// The alarm history: what is active and what was, with first-out mark and acknowledgement. Follows the alarms while it
/// is open. To acknowledge is to have seen: it ends no alarm and allows no start. Main thread.
class AlarmHistoryDialog : public QDialog {
    Q_OBJECT
public:
    AlarmHistoryDialog(tessera::AlarmRecorder* recorder, QWidget* parent);
    ~AlarmHistoryDialog() override;

    /// Every text in the operator's language.
    void SetUIText();

private slots:
    void on_pushButtonAcknowledge_clicked();
    void on_pushButtonAcknowledgeAll_clicked();
    void on_pushButtonExport_clicked();
    void on_pushButtonClose_clicked();
    void on_radioButtonActive_toggled(bool on);

private:
    void BuildTable();
    void EnableButtons();
    QList<int> SelectedRows() const;
    void ShowMessage(QString const& text, bool bad);
    void ShowStoreState(QString const& error);
    void OnExported(QString const& file, QString const& error);

    tessera::AlarmRecorder* const m_pRecorder;
    tessera::AlarmHistoryModel* const m_pModel;
    std::unique_ptr<Ui_AlarmHistoryDialog> ui;
};
