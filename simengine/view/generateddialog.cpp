// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/generateddialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/guardedmodule.h"
#include "simengine/view/previewdialog.h"
#include "simengine/view/textpreview.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>
#include <cmath>

namespace sim {

namespace {

/// The preview follows this long after the last change, ms.
constexpr int kPreviewDelay = 120;
constexpr QSize kUsualSize(760, 460);

QString labelOf(const ToolParameter& parameter) {
    const QString name = LanguageManager::GetLanText(parameter.name);
    return parameter.unit.isEmpty() ? name : QStringLiteral("%1(%2)").arg(name, parameter.unit);
}

} // namespace

GeneratedDialog::GeneratedDialog(std::shared_ptr<GeneratedTool> tool, const QVector<double>& values, double scale,
                                 QWidget* parent)
    : QDialog(parent)
    , m_tool(std::move(tool))
    , m_opened(m_tool->sound(values))
    , m_scale(scale) {
    prepareDialog(this, LanguageManager::GetLanText(moduleToolName(m_tool->className())));
    setObjectName(QStringLiteral("GeneratedDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* numbers = new QWidget;
    auto* form = new QFormLayout(numbers);
    form->setVerticalSpacing(6);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (int i = 0; i < m_tool->parameters().size(); ++i) {
        m_fields.append(makeField(i));
        auto* label = new QLabel(labelOf(m_tool->parameters().at(i)));
        label->setMinimumHeight(kTouchHeight);
        form->addRow(label, m_fields.last());
    }
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrollAreaParameters"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(numbers);
    // the dialog's own ground, not that of a list
    scroll->viewport()->setAutoFillBackground(false);
    numbers->setAutoFillBackground(false);
    scroll->setMinimumWidth(numbers->sizeHint().width() + 24);
    auto* columns = new QHBoxLayout(this);
    columns->setSpacing(14);
    columns->addWidget(scroll, 1);
    columns->addLayout(buildRight(), 1);
    m_delay.setSingleShot(true);
    m_delay.setInterval(kPreviewDelay);
    connect(&m_delay, &QTimer::timeout, this, &GeneratedDialog::refresh);
    resize(kUsualSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    refresh();
}

QVBoxLayout* GeneratedDialog::buildRight() {
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    m_preview = new TextPreview(this);
    m_preview->setObjectName(QStringLiteral("outlinePreview"));
    column->addWidget(m_preview, 1);
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("labelMessage"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    column->addWidget(m_message);
    const ButtonRow buttons = makeOkCancel(this);
    m_ok = buttons.ok;
    column->addLayout(buttons.layout);
    connect(m_ok, &QPushButton::clicked, this, &GeneratedDialog::accept);
    return column;
}

double GeneratedDialog::factor(int index) const {
    return m_tool->parameters().at(index).unit == QLatin1String("mm") ? m_scale : 1.0;
}

QWidget* GeneratedDialog::makeField(int index) {
    const ToolParameter& parameter = m_tool->parameters().at(index);
    const double value = m_opened.at(index);
    QWidget* field = nullptr;
    if (parameter.kind == ToolParameter::Switch) {
        auto* box = new QCheckBox;
        box->setChecked(value > 0.5);
        connect(box, &QCheckBox::toggled, this, &GeneratedDialog::changed);
        field = box;
    } else if (parameter.kind == ToolParameter::Choice) {
        auto* box = new QComboBox;
        for (const QString& key : parameter.choices)
            box->addItem(LanguageManager::GetLanText(key));
        box->setCurrentIndex(int(value));
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &GeneratedDialog::changed);
        field = box;
    } else {
        auto* box = new QDoubleSpinBox;
        box->setDecimals(parameter.kind == ToolParameter::Whole ? 0 : parameter.decimals);
        box->setRange(parameter.least * factor(index), parameter.most * factor(index));
        box->setSingleStep(parameter.kind == ToolParameter::Whole || parameter.unit == QLatin1String("°") ? 1.0 : 0.1);
        box->setValue(value * factor(index));
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &GeneratedDialog::changed);
        field = box;
    }
    field->setObjectName(QStringLiteral("parameter%1").arg(index));
    field->setMinimumHeight(kTouchHeight);
    return field;
}

double GeneratedDialog::entered(int index) const {
    if (const auto* box = qobject_cast<const QCheckBox*>(m_fields.at(index)))
        return box->isChecked() ? 1.0 : 0.0;
    if (const auto* box = qobject_cast<const QComboBox*>(m_fields.at(index)))
        return box->currentIndex();
    const auto* box = qobject_cast<const QDoubleSpinBox*>(m_fields.at(index));
    return PreviewDialog::valueOf(box, m_opened.at(index), factor(index));
}

QVector<double> GeneratedDialog::values() const {
    QVector<double> values;
    for (int i = 0; i < m_fields.size(); ++i)
        values.append(entered(i));
    return values;
}

void GeneratedDialog::changed() {
    m_delay.start();
}

bool GeneratedDialog::refresh() {
    m_delay.stop();
    QString fault;
    const std::optional<GeneratedShape> made = m_tool->make(values(), &fault);
    m_preview->setOutline(made ? mapPath(made->outline, QTransform::fromScale(m_scale, m_scale)) : PathShape());
    const QString unfit = LanguageManager::GetLanText("参数不能组成图形");
    m_message->setText(made ? QString() : fault.isEmpty() ? unfit : unfit + QStringLiteral(": ") + fault);
    m_ok->setEnabled(made.has_value());
    return made.has_value();
}

void GeneratedDialog::accept() {
    if (refresh())
        QDialog::accept();
}

} // namespace sim
