// SPDX-License-Identifier: MIT
#include "tests/support/dialoganswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPushButton>
#include <QtTest>

namespace tests {
namespace {

QString plainText(const QAbstractButton* button) {
    return button->text().remove(QLatin1Char('&'));
}

QVector<QAbstractButton*> visibleButtons(const QWidget* dialog) {
    QVector<QAbstractButton*> buttons;
    for (QAbstractButton* const button : dialog->findChildren<QAbstractButton*>()) {
        if (button->isVisibleTo(dialog) && button->window() == dialog)
            buttons.append(button);
    }
    return buttons;
}

QAbstractButton* standardButton(const QWidget* dialog, QMessageBox::StandardButton standard) {
    if (const auto* const box = qobject_cast<const QMessageBox*>(dialog))
        return box->button(standard);
    for (const QDialogButtonBox* const box : dialog->findChildren<QDialogButtonBox*>()) {
        if (QAbstractButton* const button = box->button(QDialogButtonBox::StandardButton(int(standard))))
            return button;
    }
    return nullptr;
}

QAbstractButton* namedButton(const QWidget* dialog, const QString& name) {
    const QVector<QAbstractButton*> buttons = visibleButtons(dialog);
    for (QAbstractButton* const button : buttons) {
        if (button->objectName() == name)
            return button;
    }
    for (QAbstractButton* const button : buttons) {
        if (plainText(button) == name)
            return button;
    }
    return nullptr;
}

SeenDialog describe(const QWidget* dialog) {
    SeenDialog seen;
    seen.title = dialog->windowTitle();
    if (const auto* const box = qobject_cast<const QMessageBox*>(dialog))
        seen.text = box->text();
    seen.objectName = dialog->objectName();
    seen.className = QString::fromLatin1(dialog->metaObject()->className());
    for (const QAbstractButton* const button : visibleButtons(dialog))
        seen.buttons.append(plainText(button));
    return seen;
}

QString nameOf(const SeenDialog& seen) {
    return QStringLiteral("%1 \"%2\" \"%3\"").arg(seen.className, seen.title, seen.text);
}

} // namespace

DialogAnswerer::DialogAnswerer() {
    qApp->installEventFilter(this);
}

DialogAnswerer::~DialogAnswerer() {
    qApp->removeEventFilter(this);
    if (!m_answers.isEmpty())
        m_complaints.append(QStringLiteral("%1 expected dialogs did not come").arg(m_answers.size()));
    if (!m_complaints.isEmpty())
        QTest::qFail(qPrintable(QStringLiteral("DialogAnswerer: ") + m_complaints.join(QStringLiteral("; "))), __FILE__,
                     __LINE__);
}

DialogAnswerer& DialogAnswerer::press(const QString& button) {
    Answer answer;
    answer.button = button;
    m_answers.append(answer);
    return *this;
}

DialogAnswerer& DialogAnswerer::press(QMessageBox::StandardButton button) {
    Answer answer;
    answer.standard = button;
    m_answers.append(answer);
    return *this;
}

DialogAnswerer& DialogAnswerer::fillAndPress(const std::function<void(QWidget&)>& fill, const QString& button) {
    press(button);
    m_answers.last().fill = fill;
    return *this;
}

DialogAnswerer& DialogAnswerer::reject() {
    Answer answer;
    answer.reject = true;
    m_answers.append(answer);
    return *this;
}

DialogAnswerer& DialogAnswerer::leave(const QString& className) {
    m_left.append(className);
    return *this;
}

bool DialogAnswerer::waitUntilAnswered(int milliseconds) {
    return waitFor(
        [this] {
            for (const QPointer<QWidget>& dialog : m_open) {
                if (dialog && dialog->isVisible())
                    return false;
            }
            return m_answers.isEmpty();
        },
        milliseconds);
}

QStringList DialogAnswerer::titles() const {
    QStringList titles;
    for (const SeenDialog& seen : m_seen)
        titles.append(seen.title);
    return titles;
}

QStringList DialogAnswerer::texts() const {
    QStringList texts;
    for (const SeenDialog& seen : m_seen)
        texts.append(seen.text);
    return texts;
}

QStringList DialogAnswerer::takeComplaints() {
    const QStringList complaints = m_complaints;
    m_complaints.clear();
    return complaints;
}

bool DialogAnswerer::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show || event->spontaneous() || !watched->isWidgetType())
        return false;
    auto* const widget = static_cast<QWidget*>(watched);
    if (!widget->isWindow() || !widget->isModal() || m_left.contains(QLatin1String(widget->metaObject()->className())))
        return false;
    // Handled by the dialog's own event loop, when it is whole and visible.
    const QPointer<QWidget> dialog(widget);
    m_open.append(dialog);
    QMetaObject::invokeMethod(
        this, [this, dialog] { answer(dialog); }, Qt::QueuedConnection);
    return false;
}

void DialogAnswerer::answer(const QPointer<QWidget>& dialog) {
    if (!dialog || !dialog->isVisible())
        return;
    SeenDialog seen = describe(dialog);
    if (m_answers.isEmpty()) {
        m_complaints.append(QStringLiteral("no answer for the dialog %1").arg(nameOf(seen)));
        m_seen.append(seen);
        dismiss(dialog);
        return;
    }
    // Taken first: the button may open the next dialog before it returns.
    const Answer answer = m_answers.takeFirst();
    carryOut(answer, dialog, seen);
}

void DialogAnswerer::carryOut(const Answer& answer, QWidget* dialog, SeenDialog& seen) {
    if (answer.fill)
        answer.fill(*dialog);
    if (answer.reject) {
        m_seen.append(seen);
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    const bool byName = answer.standard == QMessageBox::NoButton;
    QAbstractButton* const button =
        byName ? namedButton(dialog, answer.button) : standardButton(dialog, answer.standard);
    if (button == nullptr || !button->isEnabled()) {
        const QString wanted =
            byName ? answer.button : QStringLiteral("standard button %1").arg(answer.standard, 0, 16);
        m_complaints.append(QStringLiteral("\"%1\" is %2 in the dialog %3, which has: %4")
                                .arg(wanted,
                                     button == nullptr ? QStringLiteral("not there") : QStringLiteral("disabled"),
                                     nameOf(seen), seen.buttons.join(QStringLiteral(", "))));
        m_seen.append(seen);
        dismiss(dialog);
        return;
    }
    seen.pressed = plainText(button);
    m_seen.append(seen);
    button->click();
}

void DialogAnswerer::dismiss(QWidget* dialog) {
    // Not reject(): dialogs that must not be left during work refuse it.
    if (auto* const box = qobject_cast<QDialog*>(dialog))
        box->done(QDialog::Rejected);
    dialog->hide();
}

} // namespace tests
