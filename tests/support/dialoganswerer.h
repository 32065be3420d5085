// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/waitfor.h"

#include <QDialogButtonBox>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class QAbstractButton;

namespace tests {

/// What a modal dialog showed when it was answered.
struct SeenDialog {
    QString title;
    QString text; ///< of a message box, else empty
    QString objectName;
    QString className;
    QStringList buttons; ///< texts of the visible buttons, without "&"
    QString pressed;     ///< text of the button pressed, empty when the dialog was rejected
};

/// Answers modal dialogs and message boxes as an operator would, while the code under test waits in exec(). Answers are
/// given in order, one to each dialog that shows while the object lives. The test fails, at the latest when the object
/// ends, if an answer finds no dialog, a dialog finds no answer, or the button is not there or disabled; such a dialog
/// is rejected, so that the test does not hang. Main thread.
///
///     DialogAnswerer answerer;
///     answerer.press("确定");
///     QTest::mouseClick(button, Qt::LeftButton);
///     QCOMPARE(answerer.seen().at(0).text, QString("保存成功"));
class DialogAnswerer : public QObject {
    Q_OBJECT

public:
    DialogAnswerer();
    ~DialogAnswerer() override;

    /// The next dialog: press the button with this object name or this text ("&" left out).
    DialogAnswerer& press(const QString& button);
    /// The next dialog: press this standard button of a message box or button box.
    DialogAnswerer& press(QMessageBox::StandardButton button);
    /// The next dialog: first fill it in, then press the button.
    DialogAnswerer& fillAndPress(const std::function<void(QWidget&)>& fill, const QString& button);
    /// The next dialog: close it as the Escape key does.
    DialogAnswerer& reject();

    /// Leaves dialogs of this class alone, whenever they show: those that end by themselves.
    DialogAnswerer& leave(const QString& className);

    /// Waits until all answers are given and their dialogs have closed.
    bool waitUntilAnswered(int milliseconds = defaultWait);
    bool allAnswered() const { return m_answers.isEmpty(); }

    const QVector<SeenDialog>& seen() const { return m_seen; }
    QStringList titles() const;
    QStringList texts() const;

    /// What went wrong so far. The list is empty afterwards, and what is taken does not fail the test any more.
    QStringList takeComplaints();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Answer {
        QString button;
        QMessageBox::StandardButton standard = QMessageBox::NoButton;
        std::function<void(QWidget&)> fill;
        bool reject = false;
    };

    void answer(const QPointer<QWidget>& dialog);
    void carryOut(const Answer& answer, QWidget* dialog, SeenDialog& seen);
    void dismiss(QWidget* dialog);

    QVector<Answer> m_answers;
    QStringList m_left;
    QVector<SeenDialog> m_seen;
    QStringList m_complaints;
    QVector<QPointer<QWidget>> m_open;
};

} // namespace tests
