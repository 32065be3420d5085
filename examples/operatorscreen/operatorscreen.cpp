// SPDX-License-Identifier: MIT
#include "operatorscreen.h"

#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"

#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

/// Value of SystemParam::m_nCustomUIType with which this screen covers the editor.
constexpr int kWholeWindow = 1;

/// Height in pixels for which the sizes below are meant; they grow and shrink with the screen between the two limits.
constexpr double kStyleHeight = 540.0;
constexpr double kSmallest = 0.7;
constexpr double kLargest = 1.8;
/// Width of the order buttons at least, px, where the pages beside leave little room.
constexpr int kLeastButtonWidth = 130;

constexpr char kColours[] = R"(
OperatorScreen { background: #eef1f4; }
QFrame#operatorNumbers { background: #ffffff; border: 1px solid #d5dce4; border-radius: 12px; }
QLabel { color: #1f2d3d; font-weight: bold; }
QLabel#operatorState { color: #ffffff; border-radius: 12px; padding: 0 24px; }
QLabel#operatorCountTitle, QLabel#operatorTimeTitle, QLabel#operatorDocumentTitle { color: #5b6b7c; font-weight: normal; }
QPushButton { font-weight: bold; border-radius: 12px; border: none; color: #ffffff; min-height: 104px; }
QPushButton#operatorStart { background: #2e9e4f; }
QPushButton#operatorStart:pressed { background: #237a3d; }
QPushButton#operatorPause { background: #e0a800; color: #1f2d3d; }
QPushButton#operatorPause:pressed { background: #b58800; }
QPushButton#operatorStop { background: #d03a3a; }
QPushButton#operatorStop:pressed { background: #a52b2b; }
QPushButton#operatorStart:disabled, QPushButton#operatorPause:disabled, QPushButton#operatorStop:disabled {
    background: #d5dce4; color: #98a4b1; }
QPushButton#operatorEditor { background: #ffffff; color: #31445a; border: 1px solid #b4c0cc; min-height: 58px;
    min-width: 132px; padding: 0 20px; }
QPushButton#operatorEditor:disabled { color: #98a4b1; }
)";

/// Fonts by the widget's name, in pixels on a screen of kStyleHeight.
constexpr struct {
    char const* widget;
    int pixels;
} kFonts[] = {
    {"QLabel#operatorState", 34},         {"QLabel#operatorCount", 88},
    {"QLabel#operatorTime", 40},          {"QLabel#operatorDocument", 26},
    {"QLabel#operatorCountTitle", 20},    {"QLabel#operatorTimeTitle", 20},
    {"QLabel#operatorDocumentTitle", 20}, {"QPushButton", 32},
    {"QPushButton#operatorEditor", 20},
};

QString styleFor(int height) {
    const double scale = qBound(kSmallest, height / kStyleHeight, kLargest);
    QString style = QString::fromLatin1(kColours);
    for (auto const& font : kFonts)
        style += QStringLiteral("%1 { font-size: %2px; }\n")
                     .arg(QLatin1String(font.widget))
                     .arg(qRound(font.pixels * scale));
    return style;
}

/// A figure of the run dialog, which keeps them whether it is shown or not.
QString figure(char const* label) {
    QLabel const* shown = Form_Marking::Instance()->findChild<QLabel*>(QString::fromLatin1(label));
    return shown ? shown->text() : QString();
}

/// Milliseconds as seconds with one decimal.
QString seconds(QString const& ms) {
    return QString::number(ms.toLongLong() / 1000.0, 'f', 1) + QLatin1Char(' ') + Show(operatortexts::kSeconds);
}

} // namespace

OperatorScreen::OperatorScreen(MainWindow& window)
    : QWidget(&window)
    , m_Window(window) {
    setObjectName(QStringLiteral("operatorScreen"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(styleFor(height()));
    m_State = MakeLabel("operatorState");
    m_State->setMinimumHeight(60);
    m_Editor = MakeButton("operatorEditor", &OperatorScreen::ShowEditor);
    m_Editor->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(m_State, 1);
    top->addWidget(m_Editor);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(12);
    layout->addLayout(top);
    layout->addWidget(MakeNumbers(), 1);
    layout->addWidget(MakeButtons());
    Refresh();
}

QWidget* OperatorScreen::MakeNumbers() {
    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("operatorNumbers"));
    m_DocumentTitle = MakeLabel("operatorDocumentTitle");
    m_Document = MakeLabel("operatorDocument");
    m_CountTitle = MakeLabel("operatorCountTitle");
    m_Count = MakeLabel("operatorCount");
    m_TimeTitle = MakeLabel("operatorTimeTitle");
    m_Time = MakeLabel("operatorTime");
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    for (QVBoxLayout* column : {left, right})
        column->setSpacing(4);
    left->addStretch();
    left->addWidget(m_CountTitle);
    left->addWidget(m_Count);
    left->addStretch();
    right->addStretch();
    right->addWidget(m_DocumentTitle);
    right->addWidget(m_Document);
    right->addStretch();
    right->addWidget(m_TimeTitle);
    right->addWidget(m_Time);
    right->addStretch();
    auto* columns = new QHBoxLayout(frame);
    columns->setContentsMargins(16, 8, 16, 8);
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    return frame;
}

QWidget* OperatorScreen::MakeButtons() {
    auto* row = new QWidget(this);
    m_Start = MakeButton("operatorStart", &OperatorScreen::Start);
    m_Pause = MakeButton("operatorPause", &OperatorScreen::Pause);
    m_Stop = MakeButton("operatorStop", &OperatorScreen::Stop);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    for (QPushButton* button : {m_Start, m_Pause, m_Stop})
        button->setMinimumWidth(kLeastButtonWidth);
    layout->addWidget(m_Start, 3);
    layout->addWidget(m_Pause, 2);
    layout->addWidget(m_Stop, 2);
    return row;
}

QLabel* OperatorScreen::MakeLabel(char const* name) {
    auto* label = new QLabel(this);
    label->setObjectName(QString::fromLatin1(name));
    label->setAlignment(Qt::AlignCenter);
    // A long file name must not make the screen wider than its page.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

QPushButton* OperatorScreen::MakeButton(char const* name, void (OperatorScreen::*press)()) {
    auto* button = new QPushButton(this);
    button->setObjectName(QString::fromLatin1(name));
    // The function keys stay with the main window.
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QPushButton::clicked, this, press);
    return button;
}

void OperatorScreen::Refresh() {
    using namespace operatortexts;
    const RunState state = ReadRunState(m_Window);
    RunStateLook const& look = LookOf(state);
    m_State->setText(Show(look.text));
    const QString colour = QStringLiteral("background: %1;").arg(QLatin1String(look.colour));
    if (m_State->styleSheet() != colour)
        m_State->setStyleSheet(colour);
    m_Start->setEnabled(look.start);
    m_Pause->setEnabled(look.pause);
    m_Stop->setEnabled(look.stop);
    m_Start->setText(Show(state == RunState::Paused ? kContinue : kStart));
    m_Pause->setText(Show(kPause));
    m_Stop->setText(Show(kStop));
    m_Editor->setText(Show(kEditor));
    m_Editor->setVisible(SystemParam::Instance()->m_nCustomUIType == kWholeWindow);
    m_Editor->setEnabled(state != RunState::Running);
    m_CountTitle->setText(Show(kCount));
    m_Count->setText(figure("labelRunCnt"));
    m_TimeTitle->setText(Show(kTime));
    m_Time->setText(seconds(figure("labelRunTime")));
    m_DocumentTitle->setText(Show(kDocument));
    QRulerView const* view = m_Window.GetActiveView();
    const QString name = view ? QFileInfo(view->GetFileName()).completeBaseName() : QStringLiteral("–");
    m_Document->setText(m_Document->fontMetrics().elidedText(name, Qt::ElideMiddle, m_Document->width()));
}

void OperatorScreen::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QString style = styleFor(height());
    if (style != styleSheet())
        setStyleSheet(style);
}

/// Starts or goes on; the run dialog itself looks whether an alarm is active.
void OperatorScreen::Start() {
    Form_Marking::Instance()->StartMark(false);
    Refresh();
}

void OperatorScreen::Pause() {
    Form_Marking::Instance()->PauseMark();
    Refresh();
}

void OperatorScreen::Stop() {
    Form_Marking::Instance()->StopMark();
    Refresh();
}

void OperatorScreen::ShowEditor() {
    m_Window.SetUIMode(true);
}
