// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/playbackwindow.h"

#include "engine/languagemanager.h"
#include "simengine/card/cardcore.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/log/runtimes.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QTableWidget>

namespace sim {

namespace {

constexpr int kTick = 16;     ///< ms between two pictures
constexpr int kFollow = 500;  ///< ms between two looks at the document
constexpr int kSteps = 10000; ///< of the slider
constexpr int kRuns = 8;      ///< that are listed
constexpr int kSideWidth = 320;
constexpr double kZoomStep = 1.25;
constexpr QSize kUsualSize(1160, 680);

QString text(const char* key) {
    return LanguageManager::GetLanText(key);
}

/// Goes at once to where it is pressed: a finger does not page.
class SeekSlider : public QSlider {
public:
    explicit SeekSlider(QWidget* parent)
        : QSlider(Qt::Horizontal, parent) {}

protected:
    void mousePressEvent(QMouseEvent* event) override {
        constexpr int kHandle = 28;
        const int place = event->pos().x() - kHandle / 2;
        setValue(QStyle::sliderValueFromPosition(minimum(), maximum(), place, width() - kHandle));
        QSlider::mousePressEvent(event);
    }
};

constexpr char kStyle[] = "QPushButton:checked { background: #d3deea; border-color: #7d93ab; font-weight: bold; }";

QString lengthText(double mm) {
    return QStringLiteral("%1 mm").arg(mm, 0, 'f', 1);
}

} // namespace

PlaybackWindow::PlaybackWindow(Source source, bool selectedOnly, QWidget* parent)
    : QDialog(parent)
    , m_source(std::move(source))
    , m_loader(new PlaybackLoader(this)) {
    setObjectName(QStringLiteral("PlaybackWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    prepareDialog(this, text("加工回放"));
    setStyleSheet(styleSheet() + QLatin1String(kStyle) + QLatin1String(kTouchSlider));
    build();
    m_selected->setChecked(selectedOnly);
    connect(m_selected, &QCheckBox::toggled, this, &PlaybackWindow::reload);
    connect(m_jumps, &QCheckBox::toggled, m_view, &PlaybackView::setShowJumps);
    connect(m_play, &QPushButton::clicked, this, &PlaybackWindow::toggle);
    connect(m_first, &QPushButton::clicked, this, [this] { seek(0.0); });
    connect(m_slider, &QSlider::valueChanged, this, &PlaybackWindow::slide);
    connect(m_loader, &PlaybackLoader::loaded, this, &PlaybackWindow::take);
    connect(m_loader, &PlaybackLoader::failed, m_total, &QLabel::setText);
    connect(&m_ticks, &QTimer::timeout, this, &PlaybackWindow::tick);
    connect(&m_follow, &QTimer::timeout, this, &PlaybackWindow::follow);
    m_ticks.setTimerType(Qt::PreciseTimer);
    m_follow.start(kFollow);
    reload();
    showRuns();
}

PlaybackWindow::~PlaybackWindow() = default;

void PlaybackWindow::build() {
    m_view = new PlaybackView(this);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(8, 8, 8, 8);
    rows->setSpacing(6);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(8);
    columns->addWidget(m_view, 1);
    columns->addLayout(buildSide());
    rows->addLayout(columns, 1);
    m_slider = new SeekSlider(this);
    m_slider->setObjectName(QStringLiteral("sliderPlayback"));
    m_slider->setRange(0, kSteps);
    m_slider->setPageStep(kSteps / 20);
    m_slider->setMinimumHeight(kTouchHeight);
    rows->addWidget(m_slider);
    rows->addLayout(buildBar());
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    resize(kUsualSize.boundedTo(screen - QSize(16, 24)));
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

QVBoxLayout* PlaybackWindow::buildSide() {
    auto* side = new QVBoxLayout;
    side->setSpacing(4);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    m_total = addFigure(grid, "估计时间", "labelEstimate");
    m_passed = addFigure(grid, "已用时间", "labelPassed");
    m_left = addFigure(grid, "剩余时间", "labelLeft");
    m_place = addFigure(grid, "位置", "labelPlace");
    m_pen = addFigure(grid, "当前图层", "labelPen");
    m_laser = addFigure(grid, "激光", "labelLaser");
    QFont large = m_total->font();
    large.setBold(true);
    m_total->setFont(large);
    side->addLayout(grid);
    for (auto member : {&PlaybackWindow::m_parts, &PlaybackWindow::m_besides}) {
        this->*member = new QLabel(this);
        (this->*member)->setWordWrap(true);
        (this->*member)->setFixedWidth(kSideWidth);
        side->addWidget(this->*member);
    }
    m_parts->setObjectName(QStringLiteral("labelParts"));
    m_besides->setObjectName(QStringLiteral("labelBesides"));
    m_runs = new QTableWidget(0, 4, this);
    m_runs->setObjectName(QStringLiteral("tableRuns"));
    m_runs->setHorizontalHeaderLabels({text("时间"), text("估计"), text("实际"), text("比值")});
    m_runs->verticalHeader()->hide();
    m_runs->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_runs->setSelectionMode(QAbstractItemView::NoSelection);
    m_runs->setFocusPolicy(Qt::NoFocus);
    m_runs->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_runs->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_runs->setFixedWidth(kSideWidth);
    side->addWidget(m_runs, 1);
    return side;
}

QLabel* PlaybackWindow::addFigure(QGridLayout* grid, const char* key, const char* name) {
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(text(key), this), row, 0);
    auto* value = new QLabel(this);
    value->setObjectName(QLatin1String(name));
    grid->addWidget(value, row, 1);
    return value;
}

QHBoxLayout* PlaybackWindow::buildBar() {
    auto* bar = new QHBoxLayout;
    bar->setSpacing(6);
    m_first = makeButton("回到开头", "pushButtonFirst", this);
    m_play = makeButton("播放", "pushButtonPlay", this);
    m_play->setDefault(true);
    bar->addWidget(m_first);
    bar->addWidget(m_play);
    bar->addLayout(buildSpeeds());
    bar->addStretch();
    m_selected = new QCheckBox(text("仅选中对象"), this);
    m_selected->setObjectName(QStringLiteral("checkBoxSelectedOnly"));
    m_jumps = new QCheckBox(text("显示空跳"), this);
    m_jumps->setObjectName(QStringLiteral("checkBoxJumps"));
    bar->addWidget(m_selected);
    bar->addWidget(m_jumps);
    bar->addLayout(buildZoom());
    QPushButton* close = makeButton("关闭", "pushButtonClose", this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    bar->addWidget(close);
    return bar;
}

QHBoxLayout* PlaybackWindow::buildSpeeds() {
    auto* row = new QHBoxLayout;
    row->setSpacing(2);
    m_speeds = new QButtonGroup(this);
    for (const int speed : PlaybackClock::kSpeeds) {
        auto* button = new QPushButton(QStringLiteral("%1x").arg(speed), this);
        button->setObjectName(QStringLiteral("pushButtonSpeed%1").arg(speed));
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setFixedSize(50, kTouchHeight + 4);
        m_speeds->addButton(button, speed);
        row->addWidget(button);
    }
    m_speeds->button(m_clock.speed())->setChecked(true);
    connect(m_speeds, &QButtonGroup::idClicked, this, [this](int speed) { m_clock.setSpeed(speed); });
    return row;
}

QHBoxLayout* PlaybackWindow::buildZoom() {
    struct Button {
        const char* text;
        const char* name;
        double factor; ///< 0 shows all
    };
    constexpr Button kButtons[] = {
        {"-", "pushButtonZoomOut", 1.0 / kZoomStep}, {"+", "pushButtonZoomIn", kZoomStep}, {"[ ]", "pushButtonFit", 0}};
    auto* row = new QHBoxLayout;
    row->setSpacing(2);
    for (const Button& entry : kButtons) {
        auto* button = new QPushButton(QLatin1String(entry.text), this);
        button->setObjectName(QLatin1String(entry.name));
        button->setAutoDefault(false);
        button->setFixedSize(46, kTouchHeight + 4);
        connect(button, &QPushButton::clicked, m_view, [this, factor = entry.factor] {
            if (factor > 0.0)
                m_view->zoom(factor);
            else
                m_view->fit();
        });
        row->addWidget(button);
    }
    return row;
}

void PlaybackWindow::reload() {
    m_plan = m_source.plan(m_selected->isChecked());
    m_clock.pause();
    m_ticks.stop();
    m_total->setText(text("正在计算"));
    m_play->setEnabled(false);
    m_loader->load(m_plan);
}

/// What plays goes on as it was; a head that moves is not a new place to begin from.
void PlaybackWindow::follow() {
    if (RunTimes::instance().version() != m_runsVersion)
        showRuns();
    if (m_clock.isPlaying() || m_loader->isBusy() || simulatedCard().head().activity != Activity::Idle)
        return;
    if (!m_source.plan(m_selected->isChecked()).sameAs(m_plan))
        reload();
}

void PlaybackWindow::take(std::shared_ptr<const JobTimeline> timeline) {
    m_timeline = std::move(timeline);
    m_clock.setTotal(m_timeline->totalUs());
    m_colors = m_source.colors();
    m_view->setField(m_source.field());
    m_view->setTimeline(m_timeline, m_colors, m_plan.options.invertX, m_plan.options.invertY);
    m_play->setEnabled(m_clock.total() > 0.0);
    showEstimate();
    showTime();
}

void PlaybackWindow::toggle() {
    if (m_clock.isPlaying()) {
        m_clock.pause();
        m_ticks.stop();
    } else {
        m_clock.play();
        m_wall.start();
        m_ticks.start(kTick);
    }
    showTime();
}

void PlaybackWindow::seek(double us) {
    m_clock.seek(us);
    showTime();
}

void PlaybackWindow::slide(int value) {
    seek(m_clock.total() * value / kSteps);
}

void PlaybackWindow::tick() {
    m_clock.advance(double(m_wall.nsecsElapsed()) / 1e3);
    m_wall.restart();
    if (!m_clock.isPlaying())
        m_ticks.stop();
    showTime();
}

void PlaybackWindow::showTime() {
    m_view->setTime(m_clock.now());
    {
        const QSignalBlocker quiet(m_slider);
        m_slider->setValue(m_clock.total() > 0.0 ? qRound(m_clock.now() / m_clock.total() * kSteps) : 0);
    }
    m_play->setText(text(m_clock.isPlaying() ? "暂停" : "播放"));
    m_passed->setText(durationText(m_clock.now() / 1000.0));
    m_left->setText(durationText(m_clock.left() / 1000.0));
    const PlaybackMoment now = m_view->moment();
    m_place->setText(QStringLiteral("X %1  Y %2").arg(now.at.x(), 0, 'f', 3).arg(now.at.y(), 0, 'f', 3));
    m_pen->setText(penText(now.pen));
    m_laser->setText(text(now.laser ? "开" : "关"));
}

/// The number as the pens' list has it, and a square in the pen's colour.
QString PlaybackWindow::penText(int pen) const {
    return QStringLiteral("%1 <span style='color:%2'>&#9632;</span>")
        .arg(pen + 1)
        .arg(m_colors[std::size_t(pen)].name(QColor::HexRgb));
}

void PlaybackWindow::showEstimate() {
    const JobTime& time = m_timeline->time();
    if (m_timeline->totalUs() <= 0.0) {
        m_total->setText(text("没有可加工的对象"));
        m_parts->clear();
    } else {
        m_total->setText(durationText(time.totalMs));
        m_parts->setText(QStringLiteral("%1 %2 (%3)\n%4 %5 (%6)\n%7 %8")
                             .arg(text("标刻"), durationText(time.markMs), lengthText(time.markedMm))
                             .arg(text("空跳"), durationText(time.jumpMs), lengthText(time.jumpedMm))
                             .arg(text("延时"), durationText(time.delayMs)));
    }
    const EndSignalWait wait = endSignalWait(m_plan.endSignal);
    QStringList besides;
    if (wait.ms > 0.0)
        besides << QStringLiteral("+ %1: %2").arg(text("结束信号"), durationText(wait.ms));
    if (wait.acknowledge)
        besides << QStringLiteral("+ %1: ≤ %2").arg(text("等待结束信号应答"), durationText(wait.mostMs));
    besides << text("不含准备、暂停和循环间隔");
    m_besides->setText(besides.join(QLatin1Char('\n')));
}

void PlaybackWindow::showRuns() {
    m_runsVersion = RunTimes::instance().version();
    const QString document = m_source.document();
    std::vector<RunTime> runs;
    if (!document.isEmpty())
        runs = RunTimes::instance().newest(document, kRuns);
    m_runs->setRowCount(int(runs.size()));
    for (int row = 0; row < m_runs->rowCount(); ++row) {
        const RunTime& run = runs[std::size_t(row)];
        const QString ratio = run.whole ? QString::number(run.ratio(), 'f', 4) : text("已终止");
        const QString cells[] = {run.when.toLocalTime().toString(QStringLiteral("MM-dd HH:mm")),
                                 run.estimateMs < 0.0 ? QStringLiteral("-") : durationText(run.estimateMs),
                                 durationText(run.actualMs), ratio};
        for (int column = 0; column < m_runs->columnCount(); ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            item->setTextAlignment(Qt::AlignCenter);
            m_runs->setItem(row, column, item);
        }
    }
}

} // namespace sim
