// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QStyledItemDelegate>
#include <QTime>
#include <QVector>
#include <QWidget>

class QListWidget;
struct TrigerDoc;

namespace tessera {

/// What a row of the project list shows besides its text.
enum ProjectRole { ProjectPattern = Qt::UserRole + 1, ProjectInputCount, ProjectLastRun, ProjectRunCount };

/// Places of the parts of a row, px.
struct ProjectColumns {
    ProjectColumns(QRect const& row, int inputs);

    QRect number;
    QRect name;
    QVector<QRect> inputs;
    QRect lastRun;
    QRect runCount;
};

/// Paints number, name, pattern, last run and run count of an entry.
class ProjectDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const override;
};

/// The heads of these columns, above a list.
class ProjectHeader : public QWidget {
public:
    explicit ProjectHeader(QWidget* parent);

    /// Follows the rows of `list`, which show `inputs` inputs.
    void Show(QListWidget const* list, int inputs);
    void SetTexts(QString const& name, QString const& lastRun, QString const& runCount);
    QSize sizeHint() const override { return {100, 24}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QListWidget const* m_pList = nullptr;
    int m_nInputs = 0;
    QString m_Name;
    QString m_LastRun;
    QString m_RunCount;
};

/// When each entry was run last, how long that took and how often it was run.
class RunRecords {
public:
    /// This entry was handed to the worker under its document's name.
    void Triggered(QString const& name, TrigerDoc const* doc) { m_Triggered.insert(name, doc); }
    /// The document of this name begins; of `docs`, the entry that triggered it, else the first with the name. Null
    /// when there is none.
    TrigerDoc const* Begin(QString const& name, QVector<TrigerDoc*> const& docs);
    /// The one that was begun has ended; null when none was.
    TrigerDoc const* End();
    void Forget(TrigerDoc const* doc);
    void Clear();

    int Count(TrigerDoc const* doc) const { return m_Runs.value(doc).count; }
    /// Time of day of the last run and its length, empty before the first.
    QString LastRun(TrigerDoc const* doc) const;

private:
    struct Run {
        QTime start;
        qint64 ms = -1; ///< below 0 while it runs
        int count = 0;
    };

    QHash<TrigerDoc const*, Run> m_Runs;
    QHash<QString, TrigerDoc const*> m_Triggered;
    TrigerDoc const* m_pRunning = nullptr;
    QElapsedTimer m_Clock;
};

} // namespace tessera
