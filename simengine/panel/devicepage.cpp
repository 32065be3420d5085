// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/devicepage.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/panel/paneltexts.h"

#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace sim {

namespace {

constexpr int kHeight = 40; ///< px, for a finger

QString shown(const SimDevice& device) {
    if (device.name == "flash_first" || device.name == "flash_end")
        return QStringLiteral("0x%1").arg(static_cast<quint32>(device.value), 6, 16, QLatin1Char('0'));
    return QString::number(device.value, 'f', 0);
}

} // namespace

DevicePage::DevicePage(SimControl& machine, QWidget* parent)
    : GridPage(QStringLiteral("devices"), parent)
    , m_machine(machine)
    , m_flash(panelButton(QStringLiteral("exportFlash"), inside())) {
    for (const SimDevice& device : m_machine.devices())
        addRow(device);
    connect(m_flash, &QPushButton::clicked, this, &DevicePage::askFlash);
    grid()->addWidget(m_flash, m_rows.size(), 0, 1, 2);
    refresh();
}

void DevicePage::addRow(const SimDevice& device) {
    Row row;
    row.name = device.name;
    row.title = new QLabel(inside());
    QWidget* shows = nullptr;
    if (device.settable) {
        row.edit = new QDoubleSpinBox(inside());
        row.edit->setMinimumHeight(kHeight);
        row.edit->setRange(device.low, device.high);
        row.edit->setDecimals(device.high > 1e6 || device.high < 10.0 ? 0 : 1);
        row.edit->setKeyboardTracking(false);
        connect(row.edit, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                [this, name = device.name](double value) {
                    std::string reason;
                    const SimOutcome outcome = m_machine.setDevice(name, value, reason);
                    if (outcome != SimOutcome::Done)
                        msgBox::show(deviceText(name), outcomeText(outcome, ""), 1);
                });
        shows = row.edit;
    } else {
        row.value = new QLabel(inside());
        row.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        shows = row.value;
    }
    shows->setObjectName(QStringLiteral("device_") + QString::fromStdString(device.name));
    grid()->addWidget(row.title, m_rows.size(), 0);
    grid()->addWidget(shows, m_rows.size(), 1);
    m_rows.append(row);
}

void DevicePage::refresh() {
    const std::vector<SimDevice> devices = m_machine.devices();
    for (int i = 0; i < m_rows.size() && i < static_cast<int>(devices.size()); ++i) {
        const SimDevice& device = devices[static_cast<std::size_t>(i)];
        if (m_rows[i].value) {
            m_rows[i].value->setText(shown(device));
        } else if (!m_rows[i].edit->hasFocus()) {
            const QSignalBlocker blocker(m_rows[i].edit);
            m_rows[i].edit->setValue(device.value);
        }
    }
}

void DevicePage::setTexts() {
    for (const Row& row : qAsConst(m_rows))
        row.title->setText(deviceText(row.name));
    m_flash->setText(LanguageManager::GetLanText("导出Flash内容"));
}

bool DevicePage::exportFlash(const QString& file, QString& error) {
    std::string reason;
    const SimOutcome outcome = m_machine.writeFlash(file.toStdString(), 0, 0, reason);
    error = outcomeText(outcome, "Flash尚未写入数据");
    return outcome == SimOutcome::Done;
}

void DevicePage::askFlash() {
    const QString title = LanguageManager::GetLanText("导出Flash内容");
    const QString file =
        QFileDialog::getSaveFileName(this, title, QStringLiteral("flash.bin"), QStringLiteral("BIN (*.bin)"));
    QString error;
    if (!file.isEmpty() && !exportFlash(file, error))
        msgBox::show(title, error, 1);
}

} // namespace sim
