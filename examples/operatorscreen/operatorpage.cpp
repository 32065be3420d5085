// SPDX-License-Identifier: MIT
#include "operatorpage.h"

#include "run/form_marking.h"
#include "shell/mainwindow.h"

namespace {

constexpr int kRefreshMs = 100;

} // namespace

OperatorPage::OperatorPage(MainWindow& window)
    : QWidget(&window)
    , m_Window(window)
    , m_Screen(new OperatorScreen(window)) {
    setObjectName(QStringLiteral("operatorPage"));
    hide();
    m_Screen->hide();
    connect(&m_Refresh, &QTimer::timeout, this, [this] {
        Follow();
        m_Screen->Refresh();
    });
    // A counted piece is shown at once.
    connect(Form_Marking::Instance(), &Form_Marking::SendRunData, m_Screen, &OperatorScreen::Refresh);
}

OperatorPage::~OperatorPage() {
    delete m_Screen.data();
}

void OperatorPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_Screen->Refresh();
    m_Screen->show();
    m_Screen->raise();
    Follow();
    m_Refresh.start(kRefreshMs);
}

void OperatorPage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_Refresh.stop();
    if (m_Screen)
        m_Screen->hide();
}

void OperatorPage::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    Follow();
}

void OperatorPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Follow();
}

/// A parent that moves is not told to its children, so the place is also looked at with every refresh. What would stick
/// out of the main window is left off.
void OperatorPage::Follow() {
    const QRect place(mapTo(&m_Window, QPoint(0, 0)), size());
    if (m_Screen)
        m_Screen->setGeometry(place & m_Window.rect());
}
