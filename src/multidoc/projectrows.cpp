// SPDX-License-Identifier: MIT
#include "multidoc/projectrows.h"

#include "multidoc/trigerdoc.h"

#include <QListWidget>
#include <QPainter>
#include <algorithm>

namespace tessera {

namespace {

constexpr int kNumberWidth = 36;
constexpr int kLastRunWidth = 164;
constexpr int kRunCountWidth = 64;
/// Of an input's column, while the ten usual ones are shown and with more.
constexpr int kWideInput = 20;
constexpr int kNarrowInput = 12;
constexpr int kUsualInputs = 10;
constexpr int kGap = 6;
/// Height of the letters above narrow columns, px.
constexpr int kNarrowText = 9;

} // namespace

ProjectColumns::ProjectColumns(QRect const& row, int inputCount) {
    const int width = inputCount > kUsualInputs ? kNarrowInput : kWideInput;
    int right = row.right() + 1 - kRunCountWidth - kGap;
    runCount = QRect(right, row.top(), kRunCountWidth, row.height());
    right -= kLastRunWidth;
    lastRun = QRect(right, row.top(), kLastRunWidth, row.height());
    right -= inputCount * width + kGap;
    for (int i = 0; i < inputCount; ++i)
        inputs.append(QRect(right + i * width, row.top(), width, row.height()));
    number = QRect(row.left() + kGap, row.top(), kNumberWidth, row.height());
    name = QRect(number.right() + 1, row.top(), std::max(0, right - kGap - number.right()), row.height());
}

void ProjectDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const {
    QStyleOptionViewItem all = option;
    initStyleOption(&all, index);
    const QString name = all.text;
    all.text.clear();
    const QWidget* widget = option.widget;
    widget->style()->drawControl(QStyle::CE_ItemViewItem, &all, painter, widget);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    // Readable during a run too, when the list is switched off.
    painter->setPen(option.palette.color(QPalette::Normal, selected ? QPalette::HighlightedText : QPalette::Text));
    const ProjectColumns columns(option.rect, index.data(ProjectInputCount).toInt());
    const QString pattern = index.data(ProjectPattern).toString();
    painter->drawText(columns.number, Qt::AlignLeft | Qt::AlignVCenter, QString::number(index.row()));
    painter->drawText(columns.name, Qt::AlignLeft | Qt::AlignVCenter,
                      option.fontMetrics.elidedText(name, Qt::ElideRight, columns.name.width()));
    for (int i = 0; i < columns.inputs.size() && i < pattern.size(); ++i)
        painter->drawText(columns.inputs.at(i), Qt::AlignCenter, pattern.mid(i, 1));
    painter->drawText(columns.lastRun, Qt::AlignRight | Qt::AlignVCenter, index.data(ProjectLastRun).toString());
    painter->drawText(columns.runCount, Qt::AlignRight | Qt::AlignVCenter, index.data(ProjectRunCount).toString());
}

ProjectHeader::ProjectHeader(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ProjectHeader::Show(QListWidget const* list, int inputs) {
    m_pList = list;
    m_nInputs = inputs;
    update();
}

void ProjectHeader::SetTexts(QString const& name, QString const& lastRun, QString const& runCount) {
    m_Name = name;
    m_LastRun = lastRun;
    m_RunCount = runCount;
    update();
}

void ProjectHeader::paintEvent(QPaintEvent*) {
    if (!m_pList)
        return;
    QPainter painter(this);
    const QRect view = m_pList->viewport()->geometry();
    const ProjectColumns columns(QRect(view.left(), 0, view.width(), height()), m_nInputs);
    painter.drawText(columns.name, Qt::AlignLeft | Qt::AlignVCenter, m_Name);
    painter.drawText(columns.lastRun, Qt::AlignRight | Qt::AlignVCenter, m_LastRun);
    painter.drawText(columns.runCount, Qt::AlignRight | Qt::AlignVCenter, m_RunCount);
    if (m_nInputs > kUsualInputs) {
        QFont font = painter.font();
        font.setPixelSize(kNarrowText);
        painter.setFont(font);
    }
    for (int i = 0; i < columns.inputs.size(); ++i)
        painter.drawText(columns.inputs.at(i), Qt::AlignCenter, QString::number(i));
}

TrigerDoc const* RunRecords::Begin(QString const& name, QVector<TrigerDoc*> const& docs) {
    TrigerDoc const* doc = m_Triggered.take(name);
    if (!doc) {
        const auto found = std::find_if(docs.begin(), docs.end(),
                                        [&name](TrigerDoc const* other) { return other->m_FileName == name; });
        doc = found != docs.end() ? *found : nullptr;
    }
    m_pRunning = doc;
    if (!doc)
        return nullptr;
    Run& run = m_Runs[doc];
    run.start = QTime::currentTime();
    run.ms = -1;
    ++run.count;
    m_Clock.start();
    return doc;
}

TrigerDoc const* RunRecords::End() {
    TrigerDoc const* doc = m_pRunning;
    m_pRunning = nullptr;
    if (doc)
        m_Runs[doc].ms = m_Clock.elapsed();
    return doc;
}

void RunRecords::Forget(TrigerDoc const* doc) {
    m_Runs.remove(doc);
    for (QString const& name : m_Triggered.keys(doc))
        m_Triggered.remove(name);
    if (m_pRunning == doc)
        m_pRunning = nullptr;
}

void RunRecords::Clear() {
    m_Runs.clear();
    m_Triggered.clear();
    m_pRunning = nullptr;
}

QString RunRecords::LastRun(TrigerDoc const* doc) const {
    const Run run = m_Runs.value(doc);
    if (run.count == 0)
        return QString();
    const QString start = run.start.toString(QStringLiteral("hh:mm:ss"));
    return run.ms < 0 ? start : QStringLiteral("%1  %2 ms").arg(start).arg(run.ms);
}

} // namespace tessera
