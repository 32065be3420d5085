// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/imagedialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/importers/imageimport.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <cmath>

namespace sim {

namespace {

/// The outlines follow this long after the last change, ms.
constexpr int kDelay = 200;
constexpr QSize kUsualSize(1000, 580);
constexpr QSize kLeastPicture(360, 300);

QString text(const char* key) {
    return LanguageManager::GetLanText(key);
}

QCheckBox* makeCheck(const char* key, const char* name, bool on, QWidget* parent) {
    auto* box = new QCheckBox(text(key), parent);
    box->setObjectName(QLatin1String(name));
    box->setChecked(on);
    return box;
}

QDoubleSpinBox* makeSize(const char* name, QWidget* parent) {
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setDecimals(3);
    box->setRange(0.01, 10000.0);
    box->setSuffix(QStringLiteral(" mm"));
    return box;
}

} // namespace

ImageDialog::ImageDialog(const QString& path, QWidget* parent)
    : QDialog(parent)
    , m_tracer(new ImageTracer(this)) {
    setObjectName(QStringLiteral("ImageDialog"));
    prepareDialog(this, text("描摹图片"));
    build();
    m_delay.setSingleShot(true);
    m_delay.setInterval(kDelay);
    connect(&m_delay, &QTimer::timeout, this, &ImageDialog::trace);
    connect(m_tracer, &ImageTracer::imageRead, this, &ImageDialog::takeImage);
    connect(m_tracer, &ImageTracer::traced, this, &ImageDialog::takeOutlines);
    m_message->setText(text("正在处理"));
    m_tracer->read(path);
}

ImageDialog::~ImageDialog() = default;

void ImageDialog::build() {
    auto* columns = new QHBoxLayout(this);
    columns->setSpacing(12);
    m_picture = new QLabel(this);
    m_picture->setObjectName(QStringLiteral("labelPicture"));
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setMinimumSize(kLeastPicture);
    m_picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_picture->setStyleSheet(QStringLiteral("background: #ffffff; border: 1px solid #cbd3db;"));
    columns->addWidget(m_picture, 1);
    auto* side = new QVBoxLayout;
    side->addLayout(buildFields());
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("labelMessage"));
    m_message->setWordWrap(true);
    m_message->setFixedWidth(360);
    side->addWidget(m_message);
    side->addStretch();
    const ButtonRow buttons = makeOkCancel(this);
    m_ok = buttons.ok;
    m_ok->setEnabled(false);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    side->addLayout(buttons.layout);
    columns->addLayout(side);
    resize(kUsualSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
}

QFormLayout* ImageDialog::buildFields() {
    auto* form = new QFormLayout;
    form->setSpacing(5);
    addThreshold(form);
    m_invert = makeCheck("反相", "checkBoxInvert", false, this);
    m_optimise = makeCheck("优化曲线", "checkBoxOptimise", true, this);
    auto* switches = new QHBoxLayout;
    switches->addWidget(m_invert);
    switches->addWidget(m_optimise);
    form->addRow(switches);
    const TraceSettings usual;
    m_despeckle = new QSpinBox(this);
    m_despeckle->setObjectName(QStringLiteral("spinBoxDespeckle"));
    m_despeckle->setRange(0, kMostDespeckle);
    m_despeckle->setValue(usual.despeckle);
    form->addRow(text("去斑点(像素)"), m_despeckle);
    m_smoothness = new QDoubleSpinBox(this);
    m_smoothness->setObjectName(QStringLiteral("doubleSpinBoxSmoothness"));
    m_smoothness->setRange(0.0, 1.34);
    m_smoothness->setSingleStep(0.1);
    m_smoothness->setValue(usual.smoothness);
    form->addRow(text("转角平滑"), m_smoothness);
    addSize(form);
    m_oneObject = makeCheck("合并为一个对象", "checkBoxOneObject", false, this);
    form->addRow(m_oneObject);
    for (QCheckBox* box : {m_invert, m_optimise})
        connect(box, &QCheckBox::toggled, this, &ImageDialog::changed);
    connect(m_despeckle, qOverload<int>(&QSpinBox::valueChanged), this, &ImageDialog::changed);
    connect(m_smoothness, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &ImageDialog::changed);
    return form;
}

void ImageDialog::addThreshold(QFormLayout* form) {
    m_automatic = makeCheck("自动阈值", "checkBoxAutomatic", true, this);
    m_threshold = new QSlider(Qt::Horizontal, this);
    m_threshold->setObjectName(QStringLiteral("sliderThreshold"));
    m_threshold->setRange(1, 255);
    m_threshold->setValue(128);
    m_threshold->setMinimumSize(150, kTouchHeight);
    m_threshold->setStyleSheet(QLatin1String(kTouchSlider));
    m_thresholdValue = new QLabel(QString::number(m_threshold->value()), this);
    m_thresholdValue->setMinimumWidth(30);
    auto* row = new QHBoxLayout;
    row->addWidget(m_threshold, 1);
    row->addWidget(m_thresholdValue);
    form->addRow(m_automatic, row);
    connect(m_automatic, &QCheckBox::toggled, this, &ImageDialog::changed);
    connect(m_threshold, &QSlider::valueChanged, this, [this](int value) {
        m_thresholdValue->setText(QString::number(value));
        const QSignalBlocker quiet(m_automatic); // a threshold that is moved is meant
        m_automatic->setChecked(false);
        changed();
    });
}

void ImageDialog::addSize(QFormLayout* form) {
    m_width = makeSize("doubleSpinBoxWidth", this);
    m_height = makeSize("doubleSpinBoxHeight", this);
    m_keepRatio = makeCheck("保持比例", "checkBoxKeepRatio", true, this);
    form->addRow(text("宽度"), m_width);
    form->addRow(text("高度"), m_height);
    form->addRow(m_keepRatio);
    connect(m_width, qOverload<double>(&QDoubleSpinBox::valueChanged), this, [this] { sizeChanged(true); });
    connect(m_height, qOverload<double>(&QDoubleSpinBox::valueChanged), this, [this] { sizeChanged(false); });
}

void ImageDialog::sizeChanged(bool width) {
    const auto& image = m_tracer->image();
    if (!image)
        return;
    if (m_keepRatio->isChecked()) {
        const QSizeF own = image->sizeMm();
        QDoubleSpinBox* other = width ? m_height : m_width;
        const QSignalBlocker quiet(other);
        other->setValue(width ? m_width->value() * own.height() / own.width()
                              : m_height->value() * own.width() / own.height());
    }
    changed();
}

TraceSettings ImageDialog::settings() const {
    TraceSettings settings;
    settings.threshold = m_automatic->isChecked() ? 0 : m_threshold->value();
    settings.invert = m_invert->isChecked();
    settings.despeckle = m_despeckle->value();
    settings.smoothness = m_smoothness->value();
    settings.optimise = m_optimise->isChecked();
    settings.sizeMm = QSizeF(m_width->value(), m_height->value());
    // The boxes round: what was not changed is the picture's exact size.
    const QSizeF own = m_tracer->image() ? m_tracer->image()->sizeMm() : settings.sizeMm;
    constexpr double kRounding = 0.0006;
    if (std::abs(own.width() - settings.sizeMm.width()) < kRounding &&
        std::abs(own.height() - settings.sizeMm.height()) < kRounding)
        settings.sizeMm = own;
    return settings;
}

ImportResult ImageDialog::result(const ImportOptions& options) const {
    ImportResult result = placedOutlines(m_traced, options, m_oneObject->isChecked());
    if (result.ok() && m_tracer->image())
        tellDensity(*m_tracer->image(), result);
    return result;
}

void ImageDialog::takeImage(const QString& error) {
    const auto& image = m_tracer->image();
    if (!image) {
        m_message->setText(error);
        return;
    }
    {
        const QSignalBlocker width(m_width), height(m_height);
        m_width->setValue(image->sizeMm().width());
        m_height->setValue(image->sizeMm().height());
    }
    trace();
}

void ImageDialog::changed() {
    m_ready = false;
    m_ok->setEnabled(false);
    m_delay.start();
}

void ImageDialog::trace() {
    if (!m_tracer->image())
        return;
    m_message->setText(text("正在处理"));
    m_tracer->trace(settings(), m_picture->size() - QSize(4, 4));
}

void ImageDialog::takeOutlines(const TracePreview& preview) {
    m_traced = preview.traced;
    m_preview = preview.image;
    showPreview();
    if (m_automatic->isChecked() && m_traced.threshold > 0) {
        const QSignalBlocker quiet(m_threshold);
        m_threshold->setValue(m_traced.threshold);
        m_thresholdValue->setText(QString::number(m_traced.threshold));
    }
    m_ready = m_traced.ok() && !m_delay.isActive();
    m_ok->setEnabled(m_ready);
    m_message->setText(m_traced.ok() ? QStringLiteral("%1: %2   %3: %4")
                                           .arg(text("轮廓"))
                                           .arg(m_traced.outlines.size())
                                           .arg(text("点数"))
                                           .arg(m_traced.points)
                                     : m_traced.error);
}

void ImageDialog::showPreview() {
    if (!m_preview.isNull())
        m_picture->setPixmap(QPixmap::fromImage(
            m_preview.scaled(m_picture->size() - QSize(4, 4), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void ImageDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    showPreview();
}

} // namespace sim
