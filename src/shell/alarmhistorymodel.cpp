// SPDX-License-Identifier: MIT
#include "shell/alarmhistorymodel.h"

#include "shell/alarmhistorycsv.h"
#include "shell/alarmrecorder.h"

#include <QColor>
#include <QFont>
#include <algorithm>

namespace tessera {

namespace {

const QColor kActiveInk(176, 0, 32);
const QColor kActiveGround(253, 236, 238);

/// A time in a cell goes down to the second; the rest is in the tip and in the exported file.
constexpr int kSecondsLength = 19;

bool isTime(int column) {
    return column == AlarmColumnRaised || column == AlarmColumnCleared || column == AlarmColumnAcknowledged;
}

} // namespace

AlarmHistoryModel::AlarmHistoryModel(AlarmRecorder* recorder, QObject* parent)
    : QAbstractTableModel(parent)
    , m_pRecorder(recorder) {
    connect(recorder, &AlarmRecorder::Changed, this, &AlarmHistoryModel::Take);
    connect(recorder, &AlarmRecorder::OlderAcknowledged, this, &AlarmHistoryModel::TakeAcknowledge);
    Fill();
}

int AlarmHistoryModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : m_Rows.size();
}

int AlarmHistoryModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : AlarmColumnCount;
}

QVariant AlarmHistoryModel::data(QModelIndex const& index, int role) const {
    if (!index.isValid() || index.row() >= m_Rows.size())
        return QVariant();
    AlarmEntry const& entry = m_Rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return isTime(index.column()) ? AlarmCellText(entry, index.column()).left(kSecondsLength)
                                      : AlarmCellText(entry, index.column());
    case Qt::ToolTipRole:
        return AlarmCellText(entry, index.column());
    case Qt::ForegroundRole:
        return entry.IsActive() ? QVariant(kActiveInk) : QVariant();
    case Qt::BackgroundRole:
        return entry.IsActive() ? QVariant(kActiveGround) : QVariant();
    case Qt::FontRole: {
        QFont font;
        font.setBold(!entry.IsAcknowledged());
        return entry.IsAcknowledged() ? QVariant() : QVariant(font);
    }
    default:
        return QVariant();
    }
}

QVariant AlarmHistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return AlarmColumnTitle(section);
}

/// What is active is of this run: there is nothing to be read for it.
bool AlarmHistoryModel::canFetchMore(QModelIndex const& parent) const {
    return !parent.isValid() && !m_bActiveOnly && !m_bAsked && !m_bComplete &&
           m_Rows.size() < m_pRecorder->History().Limit();
}

void AlarmHistoryModel::fetchMore(QModelIndex const& parent) {
    if (!canFetchMore(parent))
        return;
    m_bAsked = true;
    const qint64 below = m_Rows.isEmpty() ? 1 : std::min<qint64>(m_Rows.last().number, 1);
    const int generation = m_nGeneration;
    m_pRecorder->ReadOlder(below, kPage, this, [=](QVector<AlarmEntry> const& older, QString const& error) {
        TakeOlder(generation, older, error);
    });
}

void AlarmHistoryModel::SetActiveOnly(bool on) {
    if (m_bActiveOnly == on)
        return;
    m_bActiveOnly = on;
    Fill();
}

void AlarmHistoryModel::Retranslate() {
    emit headerDataChanged(Qt::Horizontal, 0, AlarmColumnCount - 1);
    if (!m_Rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_Rows.size() - 1, AlarmColumnCount - 1));
}

void AlarmHistoryModel::Fill() {
    beginResetModel();
    ++m_nGeneration;
    m_bAsked = false;
    m_bComplete = false;
    m_Rows.clear();
    auto const& entries = m_pRecorder->History().Entries();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (!m_bActiveOnly || entry->IsActive())
            m_Rows.append(*entry);
    }
    endResetModel();
}

void AlarmHistoryModel::Take(QVector<AlarmEntry> const& changed) {
    for (AlarmEntry const& entry : changed)
        TakeOne(entry);
    Trim();
}

void AlarmHistoryModel::TakeOne(AlarmEntry const& entry) {
    const int row = RowOf(entry.number);
    const bool wanted = !m_bActiveOnly || entry.IsActive();
    if (row >= 0 && !wanted) {
        beginRemoveRows(QModelIndex(), row, row);
        m_Rows.remove(row);
        endRemoveRows();
    } else if (row >= 0) {
        m_Rows[row] = entry;
        emit dataChanged(index(row, 0), index(row, AlarmColumnCount - 1));
    } else if (wanted && (m_Rows.isEmpty() || m_Rows.first().number < entry.number)) {
        beginInsertRows(QModelIndex(), 0, 0);
        m_Rows.prepend(entry);
        endInsertRows();
    }
}

void AlarmHistoryModel::TakeOlder(int generation, QVector<AlarmEntry> const& older, QString const& error) {
    if (generation != m_nGeneration)
        return;
    m_bAsked = false;
    m_bComplete = older.size() < kPage;
    if (!error.isEmpty())
        emit ReadFailed(error);
    if (older.isEmpty())
        return;
    const int from = m_Rows.size();
    beginInsertRows(QModelIndex(), from, from + older.size() - 1);
    m_Rows += older;
    endInsertRows();
    Trim();
}

/// A page that is on its way may have been read before; it is asked for again.
void AlarmHistoryModel::TakeAcknowledge(AlarmAcknowledge const& what, bool all) {
    for (int row = m_Rows.size() - 1; row >= 0 && m_Rows.at(row).number <= 0; --row) {
        AlarmEntry& entry = m_Rows[row];
        if (entry.IsAcknowledged() || (!all && entry.number != what.number))
            continue;
        entry.acknowledgedMs = what.ms;
        entry.acknowledgedBy = what.user;
        emit dataChanged(index(row, 0), index(row, AlarmColumnCount - 1));
    }
    if (m_bAsked) {
        ++m_nGeneration;
        m_bAsked = false;
        fetchMore(QModelIndex());
    }
}

int AlarmHistoryModel::RowOf(qint64 number) const {
    const auto found = std::lower_bound(m_Rows.begin(), m_Rows.end(), number,
                                        [](AlarmEntry const& entry, qint64 value) { return entry.number > value; });
    return found != m_Rows.end() && found->number == number ? static_cast<int>(found - m_Rows.begin()) : -1;
}

/// The disk drops in the same way.
void AlarmHistoryModel::Trim() {
    const int excess = m_Rows.size() - m_pRecorder->History().Limit();
    if (excess <= 0)
        return;
    beginRemoveRows(QModelIndex(), m_Rows.size() - excess, m_Rows.size() - 1);
    m_Rows.resize(m_Rows.size() - excess);
    endRemoveRows();
}

} // namespace tessera
