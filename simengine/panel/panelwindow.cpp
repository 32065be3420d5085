// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/panelwindow.h"

#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "engine/systemparam.h"
#include "simengine/document/contained.h"
#include "simengine/panel/borderbar.h"
#include "simengine/panel/devicepage.h"
#include "simengine/panel/faultpanel.h"
#include "simengine/panel/headwindow.h"
#include "simengine/panel/inputswitch.h"
#include "simengine/panel/lamps.h"
#include "simengine/panel/panelparts.h"
#include "simengine/panel/panelstyle.h"
#include "simengine/panel/paneltexts.h"
#include "simengine/panel/traceview.h"

#include <QApplication>
#include <QButtonGroup>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <algorithm>

namespace sim {

namespace {

struct Speed {
    double factor;
    const char* name;
    const char* text; ///< a key only where it is a word
};

constexpr Speed kSpeeds[] = {
    {1.0, "speed1", "1×"}, {10.0, "speed10", "10×"}, {100.0, "speed100", "100×"}, {0.0, "speedMax", "最快"}};

constexpr int kInputColumns = 4;
/// The names of functions and faults are looked at once a second.
constexpr int kSlowTicks = 1000 / PanelWindow::kPeriod;

QPointer<PanelWindow>& thePanel() {
    static QPointer<PanelWindow> panel;
    return panel;
}

QWidget* makeCard(QWidget* parent) {
    auto* card = new QFrame(parent);
    card->setProperty("card", true);
    return card;
}

} // namespace

PanelWindow::PanelWindow(SimControl& machine, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_machine(machine) {
    setObjectName(QStringLiteral("simulatorPanel"));
    setAttribute(Qt::WA_QuitOnClose, false);
    setStyleSheet(panelStyle());
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(8);
    grid->addWidget(makeHeader(), 0, 0, 1, 2);
    grid->addWidget(makeLines(), 1, 0);
    grid->addWidget(makeTrace(), 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
    resize(1016, 572);
    m_timer.setInterval(kPeriod);
    connect(&m_timer, &QTimer::timeout, this, &PanelWindow::refresh);
    setTexts();
    m_pool.setMaxThreadCount(1);
}

PanelWindow::~PanelWindow() {
    m_pool.waitForDone();
}

QWidget* PanelWindow::makeHeader() {
    QWidget* card = makeCard(this);
    auto* row = new QHBoxLayout(card);
    row->setContentsMargins(10, 4, 10, 4);
    row->setSpacing(14);
    m_activity = new QLabel(card);
    m_activity->setObjectName(QStringLiteral("activity"));
    m_activity->setAlignment(Qt::AlignCenter);
    m_activity->setMinimumSize(110, 32);
    m_position = new QLabel(card);
    m_position->setObjectName(QStringLiteral("position"));
    m_run = new QLabel(card);
    m_run->setObjectName(QStringLiteral("run"));
    m_light = new StackLight(card);
    row->addWidget(m_activity);
    row->addWidget(m_position);
    row->addWidget(m_run, 1);
    row->addWidget(m_light);
    row->addWidget(makeSpeed());
    return card;
}

QWidget* PanelWindow::makeSpeed() {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    for (const Speed& speed : kSpeeds) {
        QPushButton* button = panelButton(QLatin1String(speed.name), box);
        button->setCheckable(true);
        button->setMinimumWidth(56);
        // A press on the one that is down leaves it down.
        connect(button, &QPushButton::clicked, this, [this, factor = speed.factor] {
            m_machine.setSpeed(factor);
            refresh();
        });
        row->addWidget(button);
        m_speeds.append(button);
    }
    return box;
}

QLabel* PanelWindow::makeTitle(QVBoxLayout* layout, const char* key) {
    auto* label = new QLabel(this);
    label->setProperty("title", true);
    layout->addWidget(label);
    m_titles.append({label, key});
    return label;
}

QWidget* PanelWindow::makeLines() {
    QWidget* card = makeCard(this);
    auto* column = new QVBoxLayout(card);
    column->setContentsMargins(10, 6, 10, 6);
    column->setSpacing(2);
    makeTitle(column, "输入");
    auto* grid = new QGridLayout();
    grid->setSpacing(0);
    constexpr int kRows = kPanelLines / kInputColumns;
    for (int bit = 0; bit < kPanelLines; ++bit) {
        auto* input = new InputSwitch(bit, card);
        connect(input, &InputSwitch::clicked, this, [this, bit](bool on) { m_machine.setInput(bit, on); });
        grid->addWidget(input, bit % kRows, bit / kRows);
        m_inputs.append(input);
    }
    for (int i = 0; i < kInputColumns; ++i)
        grid->setColumnStretch(i, 1);
    column->addLayout(grid, 1);
    makeTitle(column, "输出");
    m_outputs = new OutputLamps(card);
    column->addWidget(m_outputs);
    return card;
}

QWidget* PanelWindow::makeTrace() {
    auto* side = new QWidget(this);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    QWidget* card = makeCard(side);
    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(10, 6, 10, 6);
    inside->setSpacing(4);
    makeTitle(inside, "加工轨迹");
    m_trace = new TraceView(m_machine, card);
    inside->addWidget(m_trace, 1);
    auto* row = new QHBoxLayout();
    m_jumps = panelButton(QStringLiteral("showJumps"), card);
    m_jumps->setCheckable(true);
    m_jumps->setChecked(true);
    m_clear = panelButton(QStringLiteral("clearTrace"), card);
    m_export = panelButton(QStringLiteral("exportTrace"), card);
    m_head = panelButton(QStringLiteral("showHead"), card);
    row->addWidget(m_jumps);
    row->addWidget(m_head);
    row->addStretch(1);
    row->addWidget(m_clear);
    row->addWidget(m_export);
    inside->addLayout(row);
    m_border = new BorderBar(m_machine, card);
    inside->addWidget(m_border);
    column->addWidget(card, 7);
    QWidget* faults = makeCard(side);
    auto* faultColumn = new QVBoxLayout(faults);
    faultColumn->setContentsMargins(10, 6, 6, 6);
    faultColumn->setSpacing(4);
    auto* choice = new QHBoxLayout();
    m_showFaults = panelButton(QStringLiteral("showFaults"), faults);
    m_showDevices = panelButton(QStringLiteral("showDevices"), faults);
    auto* pages = new QStackedWidget(faults);
    m_faults = new FaultPanel(m_machine, pages);
    m_devices = new DevicePage(m_machine, pages);
    pages->addWidget(m_faults);
    pages->addWidget(m_devices);
    auto* group = new QButtonGroup(faults);
    for (QPushButton* button : {m_showFaults, m_showDevices}) {
        button->setCheckable(true);
        group->addButton(button);
        choice->addWidget(button);
    }
    choice->addStretch(1);
    m_showFaults->setChecked(true);
    connect(m_showDevices, &QPushButton::toggled, pages, [pages](bool on) { pages->setCurrentIndex(on ? 1 : 0); });
    faultColumn->addLayout(choice);
    faultColumn->addWidget(pages);
    column->addWidget(faults, 3);
    connect(m_jumps, &QPushButton::toggled, m_trace, &TraceView::setShowJumps);
    connect(m_clear, &QPushButton::clicked, m_trace, &TraceView::clear);
    connect(m_export, &QPushButton::clicked, this, &PanelWindow::askExport);
    connect(m_head, &QPushButton::clicked, this, &PanelWindow::showHead);
    return side;
}

void PanelWindow::setTexts() {
    setWindowTitle(LanguageManager::GetLanText("模拟机台"));
    for (const Title& title : qAsConst(m_titles))
        title.label->setText(LanguageManager::GetLanText(title.key));
    for (int i = 0; i < m_speeds.size(); ++i)
        m_speeds[i]->setText(LanguageManager::GetLanText(kSpeeds[i].text));
    m_jumps->setText(LanguageManager::GetLanText("显示空跳"));
    m_clear->setText(LanguageManager::GetLanText("清空"));
    m_export->setText(LanguageManager::GetLanText("导出轨迹"));
    m_border->setTexts();
    m_head->setText(LanguageManager::GetLanText("振镜模型"));
    m_faults->setTexts();
    m_devices->setTexts();
    m_showFaults->setText(LanguageManager::GetLanText("模拟故障"));
    m_showDevices->setText(LanguageManager::GetLanText("外围设备"));
}

void PanelWindow::showHead() {
    if (!m_headWindow)
        m_headWindow = new HeadWindow(m_machine, this);
    m_headWindow->setTexts();
    m_headWindow->takeValues();
    m_headWindow->show();
    m_headWindow->raise();
}

void PanelWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    setTexts();
    m_ticks = 0;
    refresh();
    m_timer.start();
}

void PanelWindow::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QWidget::hideEvent(event);
}

void PanelWindow::refresh() {
    if (m_ticks++ % kSlowTicks == 0) {
        takeFunctions();
        m_border->refresh();
        m_faults->refresh();
        m_trace->setField(SystemParam::Instance()->GetCanvasRect());
    }
    const SimCardState state = m_machine.state();
    showState(state);
    showLight(state);
    for (InputSwitch* input : qAsConst(m_inputs)) {
        if (!input->isDown())
            input->setChecked(state.inputs >> input->bit() & 1u);
    }
    m_outputs->setWord(state.outputs);
    m_devices->refresh();
    m_trace->follow(state);
}

void PanelWindow::takeFunctions() {
    const QVector<IOFuncList> functions = IOCheckedSys::Instance()->GetIOFunctions();
    const auto inputs = inputNames(functions);
    for (InputSwitch* input : qAsConst(m_inputs))
        input->setFunctions(inputs[static_cast<std::size_t>(input->bit())]);
    m_outputs->setFunctions(outputNames(functions));
}

void PanelWindow::showState(const SimCardState& state) {
    m_activity->setText(activityText(state));
    const char* look = !state.open                              ? "closed"
                       : state.activity == SimActivity::Running ? "running"
                       : state.activity == SimActivity::Idle    ? "idle"
                                                                : "held";
    if (m_activity->property("look").toByteArray() != look) {
        m_activity->setProperty("look", QByteArray(look));
        m_activity->style()->unpolish(m_activity);
        m_activity->style()->polish(m_activity);
    }
    m_position->setText(QStringLiteral("X %1  Y %2 mm").arg(state.x, 9, 'f', 3).arg(state.y, 9, 'f', 3));
    QString run = QStringLiteral("%1 %2    %3 %4")
                      .arg(LanguageManager::GetLanText("任务"))
                      .arg(state.jobs)
                      .arg(LanguageManager::GetLanText("用时"), timeText(state.runTimeMs));
    const bool listed = std::any_of(std::begin(kSpeeds), std::end(kSpeeds),
                                    [&](const Speed& speed) { return speed.factor == state.speed; });
    if (!listed)
        run += QStringLiteral("    %1×").arg(state.speed);
    m_run->setText(run);
    for (int i = 0; i < m_speeds.size(); ++i)
        m_speeds[i]->setChecked(kSpeeds[i].factor == state.speed);
}

// The lamps are what hangs on the configured outputs; a lamp that is not fitted is dark.
void PanelWindow::showLight(const SimCardState& state) {
    int red = -1, green = -1, yellow = -1, buzzer = -1;
    IOOutputSet::Instance()->GetLight(red, green, yellow, buzzer);
    const bool inverted = IOOutputSet::Instance()->IsOutputInv();
    const auto lit = [&](int bit) {
        return state.open && bit >= 0 && bit < kPanelLines && ((state.outputs >> bit & 1u) != 0) != inverted;
    };
    m_light->setLamps(lit(red), lit(yellow), lit(green));
}

void PanelWindow::exportTrace(const QString& file) {
    m_export->setEnabled(false);
    m_pool.start([this, file] {
        QString reason;
        bool done = false;
        contained(reason, [&] {
            std::string english;
            const SimOutcome outcome = m_machine.writeTrace(file.toStdString(), english);
            done = outcome == SimOutcome::Done;
            if (!done)
                reason = file + QStringLiteral("\n") + exportText(outcome);
        });
        QMetaObject::invokeMethod(
            this, [this, done, reason] { showExported(done, reason); }, Qt::QueuedConnection);
    });
}

void PanelWindow::showExported(bool done, const QString& error) {
    m_export->setEnabled(true);
    if (!done)
        msgBox::show(LanguageManager::GetLanText("导出轨迹"),
                     LanguageManager::GetLanText("导出失败") + QStringLiteral("\n") + error, 1);
}

void PanelWindow::askExport() {
    const QString file =
        QFileDialog::getSaveFileName(this, LanguageManager::GetLanText("导出轨迹"), QStringLiteral("trace.svg"),
                                     QStringLiteral("SVG (*.svg);;PNG (*.png);;CSV (*.csv)"));
    if (!file.isEmpty())
        exportTrace(file);
}

PanelWindow* PanelWindow::instance() {
    return thePanel();
}

bool PanelWindow::showPanel(SimControl& machine, bool on, std::string& error) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        error = "a window needs a graphical application";
        return false;
    }
    if (!thePanel() && on) {
        thePanel() = new PanelWindow(machine);
        static const bool registered = (qAddPostRoutine([] { delete thePanel().data(); }), true);
        Q_UNUSED(registered)
    }
    if (PanelWindow* panel = thePanel()) {
        panel->setVisible(on);
        if (on)
            panel->raise();
    }
    return true;
}

} // namespace sim
