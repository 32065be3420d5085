// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/log/debugwindow.h"

#include "engine/languagemanager.h"
#include "engine/showdebugino.h"

#include <QHBoxLayout>
#include <QMetaObject>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sim {

namespace {

constexpr int kTouchHeight = 40;

QPushButton* makeButton(char const* key, QWidget* parent) {
    auto* button = new QPushButton(LanguageManager::GetLanText(key), parent);
    button->setMinimumHeight(kTouchHeight);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

DebugWindow::DebugWindow()
    : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint)
    , m_text(new QPlainTextEdit(this)) {
    setObjectName(QStringLiteral("ShowDebugInfo"));
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(LanguageManager::GetLanText("调试信息"));
    m_text->setObjectName(QStringLiteral("plainTextEditDebug"));
    m_text->setReadOnly(true);
    m_text->setMaximumBlockCount(kDebugWindowLines);
    auto* clear = makeButton("清空", this);
    clear->setObjectName(QStringLiteral("pushButtonClear"));
    auto* close = makeButton("关闭", this);
    close->setObjectName(QStringLiteral("pushButtonClose"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(clear);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addLayout(buttons);
    resize(640, 420);
    connect(clear, &QPushButton::clicked, m_text, &QPlainTextEdit::clear);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
}

void DebugWindow::addLine(QString const& text, DebugInfoType type) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (m_pending.size() >= kDebugWindowLines)
        m_pending.removeFirst();
    m_pending.append({text, type});
    if (m_flushQueued)
        return;
    m_flushQueued = true;
    QMetaObject::invokeMethod(
        this, [this] { takeLines(); }, Qt::QueuedConnection);
}

void DebugWindow::takeLines() {
    QVector<Entry> lines;
    {
        std::lock_guard<std::mutex> guard(m_lock);
        lines.swap(m_pending);
        m_flushQueued = false;
    }
    for (Entry const& line : qAsConst(lines)) {
        m_text->appendPlainText(line.text);
        // An alarm line belongs into the operator's status list too.
        if (line.type == DebugInfoAlarm && debugSink())
            debugSink()->ShowTextsSub(line.text, line.type);
    }
}

void DebugWindow::bringUp() {
    show();
    raise();
    activateWindow();
}

} // namespace sim
