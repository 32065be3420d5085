// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/serialpage.h"

#include "engine/languagemanager.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSpinBox>

namespace sim {

namespace {

QSpinBox* makeSpin(const char* objectName, int least, int most, QWidget* parent) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(QLatin1String(objectName));
    box->setRange(least, most);
    return box;
}

/// A name that none of the others has: A, B and so on, then with numbers.
QString freeName(const QVector<SerialNumber>& serials) {
    for (int i = 0;; ++i) {
        const QString letter(QChar('A' + i % 26));
        const QString name = i < 26 ? letter : letter + QString::number(i / 26);
        const auto has = [&](const SerialNumber& serial) { return serial.name == name; };
        if (std::none_of(serials.begin(), serials.end(), has))
            return name;
    }
}

} // namespace

SerialPage::SerialPage(const QVector<SerialNumber>& serials, QWidget* parent)
    : VariablePage("serialPage", 2, parent)
    , m_serials(serials)
    , m_name(new QLineEdit(this))
    , m_value(numberField("lineEditValue"))
    , m_first(numberField("lineEditFirst"))
    , m_last(numberField("lineEditLast"))
    , m_step(numberField("lineEditStep"))
    , m_digits(makeSpin("spinBoxDigits", 0, kMostSerialDigits, this))
    , m_radix(makeSpin("spinBoxRadix", 2, 36, this))
    , m_repeat(makeSpin("spinBoxRepeat", 1, kMostSerialRepeat, this))
    , m_atEnd(new QComboBox(this))
    , m_daily(new QCheckBox(LanguageManager::GetLanText("从起始值开始"), this)) {
    m_name->setObjectName(QStringLiteral("lineEditName"));
    m_name->setMaxLength(kMaxVariableName);
    m_atEnd->setObjectName(QStringLiteral("comboBoxAtEnd"));
    m_atEnd->addItems({LanguageManager::GetLanText("停止打标"), LanguageManager::GetLanText("从头开始")});
    m_daily->setObjectName(QStringLiteral("checkBoxDaily"));
    addField("名称", m_name);
    addField("当前值", m_value);
    addField("起始值", m_first);
    addField("结束值", m_last);
    addField("增量", m_step);
    addField("位数(0不补零)", m_digits);
    addField("进制", m_radix);
    addField("每值打标次数", m_repeat);
    addField("用完之后", m_atEnd);
    addField("每日复位", m_daily);
    for (QLineEdit* field : {m_name, m_value, m_first, m_last, m_step})
        connect(field, &QLineEdit::textEdited, this, &SerialPage::edited);
    for (QSpinBox* box : {m_digits, m_radix, m_repeat})
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &SerialPage::edited);
    connect(m_atEnd, qOverload<int>(&QComboBox::currentIndexChanged), this, &SerialPage::edited);
    connect(m_daily, &QCheckBox::toggled, this, &SerialPage::edited);
    listAll();
}

/// A whole number of more digits than a spin box holds.
QLineEdit* SerialPage::numberField(const char* objectName) {
    static const QRegularExpression number(QStringLiteral("-?[0-9]{1,18}"));
    auto* field = new QLineEdit(this);
    field->setObjectName(QLatin1String(objectName));
    field->setValidator(new QRegularExpressionValidator(number, field));
    return field;
}

QString SerialPage::nameOf(int index) const {
    const SerialNumber& serial = m_serials[index];
    return QStringLiteral("%1    %2").arg(serial.name, serial.text());
}

void SerialPage::append() {
    SerialNumber serial;
    serial.name = freeName(m_serials);
    m_serials.append(serial);
}

void SerialPage::fill(int index) {
    const SerialNumber& serial = m_serials[index];
    m_name->setText(serial.name);
    m_value->setText(QString::number(serial.value));
    m_first->setText(QString::number(serial.first));
    m_last->setText(QString::number(serial.last));
    m_step->setText(QString::number(serial.step));
    m_digits->setValue(serial.digits);
    m_radix->setValue(serial.radix);
    m_repeat->setValue(serial.repeat);
    m_atEnd->setCurrentIndex(static_cast<int>(serial.atEnd));
    m_daily->setChecked(serial.daily);
    note(serial);
}

void SerialPage::take(int index) {
    SerialNumber& serial = m_serials[index];
    const qint64 value = m_value->text().toLongLong();
    // a number that is given anew has not been marked
    if (value != serial.value) {
        serial.value = value;
        serial.marks = 0;
        serial.ended = false;
    }
    serial.name = m_name->text();
    serial.first = m_first->text().toLongLong();
    serial.last = m_last->text().toLongLong();
    serial.step = m_step->text().toLongLong();
    serial.digits = m_digits->value();
    serial.radix = m_radix->value();
    serial.repeat = m_repeat->value();
    serial.marks = std::min(serial.marks, serial.repeat - 1);
    serial.atEnd = static_cast<CounterEnd>(m_atEnd->currentIndex());
    serial.daily = m_daily->isChecked();
    if (serial.atEnd == CounterEnd::Restart && serial.ended) {
        serial.value = serial.first;
        serial.ended = false;
    }
    note(serial);
}

void SerialPage::note(const SerialNumber& serial) {
    const QString ended = serial.ended ? LanguageManager::GetLanText("序列号已用完") : QString();
    setNote(serial.repeat > 1 && !serial.ended ? QStringLiteral("%1: %2 / %3")
                                                     .arg(LanguageManager::GetLanText("当前值已打标次数"))
                                                     .arg(serial.marks)
                                                     .arg(serial.repeat)
                                               : ended);
}

} // namespace sim
