// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/shiftpage.h"

#include "engine/languagemanager.h"

#include <QLineEdit>
#include <QTimeEdit>

namespace sim {

namespace {

constexpr int kFirstShiftHour = 6;
constexpr int kShiftHours = 8;

} // namespace

ShiftPage::ShiftPage(const QVector<Shift>& shifts, QWidget* parent)
    : VariablePage("shiftPage", 1, parent)
    , m_shifts(shifts)
    , m_begin(new QTimeEdit(this))
    , m_code(new QLineEdit(this)) {
    m_begin->setObjectName(QStringLiteral("timeEditBegin"));
    m_begin->setDisplayFormat(QStringLiteral("HH:mm"));
    m_code->setObjectName(QStringLiteral("lineEditCode"));
    m_code->setMaxLength(kMaxShiftCode);
    addField("开始时间", m_begin);
    addField("班次代码", m_code);
    connect(m_begin, &QTimeEdit::timeChanged, this, &ShiftPage::edited);
    connect(m_code, &QLineEdit::textEdited, this, &ShiftPage::edited);
    listAll();
    setNote(LanguageManager::GetLanText("每班持续到下一班开始"));
}

QString ShiftPage::nameOf(int index) const {
    return QStringLiteral("%1    %2")
        .arg(m_shifts[index].begin.toString(QStringLiteral("HH:mm")), m_shifts[index].code);
}

void ShiftPage::append() {
    const int number = m_shifts.size();
    const QTime begin((kFirstShiftHour + kShiftHours * number) % 24, (number / 3) % 60);
    m_shifts.append({begin, QString(QChar('A' + number % 26))});
}

void ShiftPage::fill(int index) {
    m_begin->setTime(m_shifts[index].begin);
    m_code->setText(m_shifts[index].code);
}

void ShiftPage::take(int index) {
    m_shifts[index] = {m_begin->time(), m_code->text()};
}

} // namespace sim
