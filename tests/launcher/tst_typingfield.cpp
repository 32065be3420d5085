// SPDX-License-Identifier: MIT
#include "typingfield.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QDoubleValidator>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTest>
#include <QTextEdit>

using namespace tessera;

namespace {

constexpr Qt::InputMethodHints kNumbers = Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly;

int numberHints(QWidget& widget) {
    hintNumbers(&widget);
    return int(widget.inputMethodHints() & kNumbers);
}

} // namespace

class TestTypingField : public QObject {
    Q_OBJECT

private slots:
    void number_fields_get_the_number_pad() {
        QSpinBox count;
        count.setRange(0, 100);
        QCOMPARE(numberHints(count), int(Qt::ImhDigitsOnly));
        QSpinBox offset;
        offset.setRange(-5, 5);
        QCOMPARE(numberHints(offset), int(Qt::ImhFormattedNumbersOnly));
        QDoubleSpinBox length;
        QCOMPARE(numberHints(length), int(Qt::ImhFormattedNumbersOnly));
        QLineEdit line;
        line.setValidator(new QIntValidator(0, 9, &line));
        QCOMPARE(numberHints(line), int(Qt::ImhDigitsOnly));
        QLineEdit signedLine;
        signedLine.setValidator(new QIntValidator(-9, 9, &signedLine));
        QCOMPARE(numberHints(signedLine), int(Qt::ImhFormattedNumbersOnly));
        QLineEdit real;
        real.setValidator(new QDoubleValidator(0, 9, 3, &real));
        QCOMPARE(numberHints(real), int(Qt::ImhFormattedNumbersOnly));
    }

    void a_range_that_changes_changes_the_pad() {
        QSpinBox box;
        box.setRange(0, 100);
        QCOMPARE(numberHints(box), int(Qt::ImhDigitsOnly));
        box.setMinimum(-1);
        QCOMPARE(numberHints(box), int(Qt::ImhFormattedNumbersOnly));
        box.setMinimum(1);
        QCOMPARE(numberHints(box), int(Qt::ImhDigitsOnly));
    }

    void other_fields_keep_their_letters() {
        QLineEdit plain;
        QCOMPARE(numberHints(plain), 0);
        QLineEdit pattern;
        pattern.setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), &pattern));
        QCOMPARE(numberHints(pattern), 0);
        QTextEdit text;
        QCOMPARE(numberHints(text), 0);
        QComboBox combo;
        QCOMPARE(numberHints(combo), 0);
    }

    void hints_given_by_a_form_stay() {
        QLineEdit address;
        address.setValidator(new QIntValidator(&address));
        address.setInputMethodHints(Qt::ImhUrlCharactersOnly);
        hintNumbers(&address);
        QCOMPARE(int(address.inputMethodHints()), int(Qt::ImhUrlCharactersOnly));
        QLineEdit secret;
        secret.setEchoMode(QLineEdit::Password);
        secret.setValidator(new QIntValidator(0, 9999, &secret));
        hintNumbers(&secret);
        QVERIFY(secret.inputMethodHints() & Qt::ImhDigitsOnly);
        QVERIFY(secret.inputMethodHints() & Qt::ImhHiddenText);
    }

    void names_are_taken_as_they_are_typed() {
        QLineEdit line;
        hintAsTyped(&line);
        QCOMPARE(int(line.inputMethodHints()), int(Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText));
        QTextEdit text;
        hintAsTyped(&text);
        QVERIFY(text.inputMethodHints() & Qt::ImhNoAutoUppercase);
        QVERIFY(text.inputMethodHints() & Qt::ImhNoPredictiveText);
        QPushButton button;
        hintAsTyped(&button);
        QCOMPARE(int(button.inputMethodHints()), int(Qt::ImhNone));
    }

    void what_can_be_typed_into() {
        QLineEdit line;
        QVERIFY(takesTyping(&line));
        line.setReadOnly(true);
        QVERIFY(!takesTyping(&line));
        QLineEdit off;
        off.setEnabled(false);
        QVERIFY(!takesTyping(&off));
        QSpinBox box;
        QVERIFY(takesTyping(&box));
        box.setReadOnly(true);
        QVERIFY(!takesTyping(&box));
        QTextEdit text;
        QVERIFY(takesTyping(&text));
        text.setReadOnly(true);
        QVERIFY(!takesTyping(&text));
        QComboBox choice;
        QVERIFY(!takesTyping(&choice));
        choice.setEditable(true);
        QVERIFY(takesTyping(&choice));
        QPushButton button;
        QVERIFY(!takesTyping(&button));
        QVERIFY(!takesTyping(nullptr));
    }

    void the_area_is_the_field_or_the_line_of_the_cursor() {
        QLineEdit line;
        line.setGeometry(30, 40, 200, 40);
        line.show();
        QCOMPARE(typingArea(&line), QRect(line.mapToGlobal(QPoint(0, 0)), QSize(200, 40)));
        QTextEdit text;
        text.setGeometry(30, 40, 300, 400);
        text.setPlainText("a\nb\nc");
        text.show();
        QRect const top = typingArea(&text);
        text.moveCursor(QTextCursor::End);
        QRect const bottom = typingArea(&text);
        QVERIFY(top.height() < 60 && bottom.top() > top.top());
    }
};

QTEST_MAIN(TestTypingField)
#include "tst_typingfield.moc"
