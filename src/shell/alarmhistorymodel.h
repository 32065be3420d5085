// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmentry.h"

#include <QAbstractTableModel>

namespace tessera {

class AlarmRecorder;

/// The alarm history as a table, newest first: the alarms of this run, and those of earlier runs page by page as the
/// view asks for them. Follows the recorder, which must outlive it. Main thread.
class AlarmHistoryModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// Entries that are read at a time.
    static constexpr int kPage = 200;

    explicit AlarmHistoryModel(AlarmRecorder* recorder, QObject* parent = nullptr);

    int rowCount(QModelIndex const& parent = QModelIndex()) const override;
    int columnCount(QModelIndex const& parent = QModelIndex()) const override;
    QVariant data(QModelIndex const& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool canFetchMore(QModelIndex const& parent) const override;
    void fetchMore(QModelIndex const& parent) override;

    /// Shows the active alarms alone.
    void SetActiveOnly(bool on);
    bool IsActiveOnly() const { return m_bActiveOnly; }
    /// The entry of a row, which must be there.
    AlarmEntry const& Entry(int row) const { return m_Rows.at(row); }
    /// Texts in the language of now.
    void Retranslate();

signals:
    /// Alarms of earlier runs could not be read; more is not asked until the filter is set anew.
    void ReadFailed(QString const& error);

private:
    void Fill();
    void Take(QVector<AlarmEntry> const& changed);
    void TakeOne(AlarmEntry const& entry);
    void TakeOlder(int generation, QVector<AlarmEntry> const& older, QString const& error);
    void TakeAcknowledge(AlarmAcknowledge const& what, bool all);
    int RowOf(qint64 number) const;
    void Trim();

    AlarmRecorder* const m_pRecorder;
    QVector<AlarmEntry> m_Rows; ///< newest first
    bool m_bActiveOnly = false;
    bool m_bAsked = false;    ///< a page is on its way
    bool m_bComplete = false; ///< there is nothing older
    int m_nGeneration = 0;    ///< a page of before a change of the filter is not taken
};

} // namespace tessera
