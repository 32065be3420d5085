// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/nodebar.h"

#include "engine/languagemanager.h"
#include "simengine/document/shapeedits.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/nodeedittool.h"
#include "simengine/view/nodeicons.h"
#include "simengine/view/viewsession.h"

#include <QEvent>
#include <QToolButton>

namespace sim {

namespace {

constexpr QSize kButton(66, 50);
constexpr int kGap = 2;
constexpr int kPadding = 4;
constexpr int kMargin = 8; ///< px to the canvas's edges

struct CommandEntry {
    NodeCommand command;
    const char* name;
    const char* key;
};

constexpr CommandEntry kCommands[] = {
    {NodeCommand::Insert, "nodeInsert", "插入节点"},   {NodeCommand::Remove, "nodeRemove", "删除节点"},
    {NodeCommand::Corner, "nodeCorner", "角点"},       {NodeCommand::Smooth, "nodeSmooth", "平滑"},
    {NodeCommand::Symmetric, "nodeSymmetric", "对称"}, {NodeCommand::Line, "nodeLine", "直线段"},
    {NodeCommand::Curve, "nodeCurve", "曲线段"},       {NodeCommand::Break, "nodeBreak", "断开"},
    {NodeCommand::Close, "nodeClose", "闭合"},         {NodeCommand::Open, "nodeOpen", "开口"},
};

constexpr char kStyle[] =
    "sim--NodeBar { background: rgba(247, 249, 251, 240); border: 1px solid #cbd3db; border-radius: 6px; }"
    "QToolButton { background: transparent; border: none; border-radius: 4px; color: #1f2a35; font-size: 11px; "
    "padding: 2px; margin: 0px; min-height: 0px; min-width: 0px; }"
    "QToolButton:pressed, QToolButton:checked { background: #cfe0f5; }"
    "QToolButton:disabled { color: #9aa5b0; }";

} // namespace

NodeBar::NodeBar(CanvasWidget& canvas)
    : QWidget(&canvas)
    , m_canvas(canvas) {
    setObjectName(QStringLiteral("nodeBar"));
    setAttribute(Qt::WA_StyledBackground);
    setCursor(Qt::ArrowCursor);
    hide();
    canvas.installEventFilter(this);
    connect(&canvas, &CanvasWidget::toolChanged, this, &NodeBar::refresh);
    connect(&canvas.session(), &ViewSession::changed, this, &NodeBar::refresh);
}

NodeEditTool* NodeBar::editor() const {
    return dynamic_cast<NodeEditTool*>(&m_canvas.tool());
}

QToolButton* NodeBar::add(const char* name, const char* key, int icon) {
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setIcon(nodeIcon(static_cast<NodeIcon>(icon)));
    button->setIconSize(QSize(24, 24));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setFocusPolicy(Qt::NoFocus); // keys stay with the drawing
    button->setFixedSize(kButton);
    button->hide();
    m_entries.append({button, key});
    return button;
}

// Made when first shown: most documents are opened to be marked.
void NodeBar::build() {
    if (!m_entries.isEmpty())
        return;
    setStyleSheet(QLatin1String(kStyle));
    for (const CommandEntry& entry : kCommands) {
        QToolButton* button = add(entry.name, entry.key, static_cast<int>(entry.command));
        m_commands.append(button);
        connect(button, &QToolButton::clicked, this, [this, entry] {
            if (NodeEditTool* tool = editor())
                tool->run(entry.command);
        });
    }
    m_adds = add("nodeAdds", "多选", static_cast<int>(NodeIcon::Adds));
    m_adds->setCheckable(true);
    connect(m_adds, &QToolButton::toggled, this, [this](bool on) {
        if (NodeEditTool* tool = editor())
            tool->setAdds(on);
    });
    m_done = add("nodeDone", "完成", static_cast<int>(NodeIcon::Done));
    connect(m_done, &QToolButton::clicked, this, [this] {
        if (NodeEditTool* tool = editor())
            tool->finish();
    });
    m_edit = add("editNodes", "编辑节点", static_cast<int>(NodeIcon::Edit));
    connect(m_edit, &QToolButton::clicked, this, [this] { editNodes(m_canvas); });
    m_toPath = add("toPath", "转为路径", static_cast<int>(NodeIcon::ToPath));
    connect(m_toPath, &QToolButton::clicked, this, &NodeBar::toPath);
    setTexts();
}

void NodeBar::setTexts() {
    for (const Entry& entry : qAsConst(m_entries)) {
        entry.button->setText(LanguageManager::GetLanText(entry.key));
        entry.button->setToolTip(entry.button->text());
    }
}

void NodeBar::toPath() {
    const StatePtr state = m_canvas.session().state();
    if (state->selection.count() != 1)
        return;
    const int index = state->selection.first();
    m_canvas.session().document().edit([index](const DocumentState& now) { return edits::toPath(now, index); });
}

void NodeBar::refresh() {
    const ViewSession& session = m_canvas.session();
    const StatePtr state = session.state();
    NodeEditTool* tool = editor();
    const bool selects = session.operatorOnView() == OperatorSelect && !session.document().isReadOnly();
    const bool one = !tool && selects && state->selection.count() == 1;
    const bool becomes = one && canBecomePath(*state->at(state->selection.first()));
    const bool edits = one && (state->at(state->selection.first())->kind() == ObjectKind::Path ||
                               state->at(state->selection.first())->kind() == ObjectKind::Polyline);
    if (!tool && !becomes && !edits) {
        hide();
        return;
    }
    build();
    for (int i = 0; i < m_commands.size(); ++i) {
        m_commands.at(i)->setVisible(tool);
        m_commands.at(i)->setEnabled(tool && tool->can(static_cast<NodeCommand>(i)));
    }
    m_adds->setVisible(tool);
    m_adds->setChecked(tool && tool->adds());
    m_done->setVisible(tool);
    m_edit->setVisible(edits);
    m_toPath->setVisible(becomes);
    place();
    show();
}

// Rows from the upper edge on, as many as the width asks for. The lower corner has the view's own bar.
void NodeBar::place() {
    QList<QToolButton*> shown;
    for (const Entry& entry : qAsConst(m_entries)) {
        if (!entry.button->isHidden())
            shown.append(entry.button);
    }
    if (shown.isEmpty())
        return;
    const int pitch = kButton.width() + kGap;
    const int room = (m_canvas.width() - 2 * (kMargin + kPadding) + kGap) / pitch;
    const int most = qMax(1, qMin(room, shown.size()));
    const int rows = (shown.size() + most - 1) / most;
    const int columns = (shown.size() + rows - 1) / rows; // rows of about one length
    const QSize size(columns * pitch - kGap + 2 * kPadding, rows * (kButton.height() + kGap) - kGap + 2 * kPadding);
    setGeometry(QRect(QPoint((m_canvas.width() - size.width()) / 2, kMargin), size));
    for (int i = 0; i < shown.size(); ++i)
        shown.at(i)->move(kPadding + (i % columns) * pitch, kPadding + (i / columns) * (kButton.height() + kGap));
}

bool NodeBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}

void NodeBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange)
        setTexts();
    QWidget::changeEvent(event);
}

} // namespace sim
