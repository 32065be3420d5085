// SPDX-License-Identifier: MIT
#include "automation/objectfinder.h"
#include "automation/uimethods.h"
#include "automation/widgetdriver.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMetaProperty>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QtTest>

using namespace tessera;

namespace {

/// Records the mouse and key events that reach it.
class Recorder : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;
    QStringList m_events;

protected:
    bool event(QEvent* event) override {
        if (auto* mouse = dynamic_cast<QMouseEvent*>(event))
            m_events.append(QStringLiteral("%1 %2,%3").arg(event->type()).arg(mouse->x()).arg(mouse->y()));
        auto* key = dynamic_cast<QKeyEvent*>(event);
        if (key && event->type() != QEvent::ShortcutOverride) {
            m_events.append(QStringLiteral("%1 %2 %3").arg(event->type()).arg(key->key()).arg(key->text()));
            return true;
        }
        return QLabel::event(event);
    }
};

} // namespace

class TestUiMethods : public QObject {
    Q_OBJECT

    UiMethods m_methods;
    QMainWindow* m_window = nullptr;
    QPushButton* m_button = nullptr;
    QLineEdit* m_edit = nullptr;
    QTableWidget* m_table = nullptr;
    QComboBox* m_combo = nullptr;
    Recorder* m_recorder = nullptr;
    QAction* m_action = nullptr;

    RpcReply call(char const* method, QByteArray const& params) {
        RpcReply reply;
        bool const known = m_methods.call(QLatin1String(method), QJsonDocument::fromJson(params).object(), reply);
        if (!known)
            qFatal("no method %s", method);
        return reply;
    }
    RpcReply done(char const* method, QByteArray const& params) {
        RpcReply const reply = call(method, params);
        if (reply.afterwards)
            reply.afterwards();
        return reply;
    }
    static int code(RpcReply const& reply) { return reply.error ? reply.error->code : 0; }

private slots:
    void init() {
        m_window = new QMainWindow;
        m_window->setObjectName("Main");
        auto* central = new QWidget(m_window);
        auto* layout = new QVBoxLayout(central);
        m_button = new QPushButton("Go", central);
        m_button->setObjectName("go");
        m_edit = new QLineEdit(central);
        m_edit->setObjectName("edit");
        m_table = new QTableWidget(3, 2, central);
        m_table->setObjectName("table");
        m_table->setItem(1, 1, new QTableWidgetItem("cell"));
        m_combo = new QComboBox(central);
        m_combo->setObjectName("combo");
        m_combo->addItems({"a", "b"});
        m_recorder = new Recorder("label", central);
        m_recorder->setObjectName("recorder");
        auto* tabs = new QTabWidget(central);
        tabs->setObjectName("tabs");
        tabs->addTab(new QWidget, "first");
        tabs->addTab(new QWidget, "second");
        for (QWidget* widget : std::initializer_list<QWidget*>{m_button, m_edit, m_table, m_combo, m_recorder, tabs})
            layout->addWidget(widget);
        m_window->setCentralWidget(central);
        m_action = new QAction("Act", m_window);
        m_action->setObjectName("act");
        m_window->addAction(m_action);
        m_window->resize(400, 500);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
    }
    void cleanup() { delete m_window; }

    void table_of_methods_has_every_name() {
        for (char const* name : {"ui.tree", "ui.click", "ui.doubleClick", "ui.trigger", "ui.get", "ui.set", "ui.item",
                                 "ui.key", "ui.screenshot"})
            QVERIFY2(m_methods.methodNames().contains(QLatin1String(name)), name);
        RpcReply reply;
        QVERIFY(!m_methods.call("ui.nothing", {}, reply));
    }

    void tree_tells_name_class_visible_enabled_and_text() {
        RpcReply const reply = call("ui.tree", R"({"object":"go"})");
        QJsonObject const told = reply.result.toArray().at(0).toObject();
        QCOMPARE(told.value("name").toString(), QStringLiteral("go"));
        QCOMPARE(told.value("class").toString(), QStringLiteral("QPushButton"));
        QCOMPARE(told.value("text").toString(), QStringLiteral("Go"));
        QCOMPARE(told.value("visible"), QJsonValue(true));
        QCOMPARE(told.value("enabled"), QJsonValue(true));
        QCOMPARE(ObjectFinder::find(told.value("path").toString()).object, static_cast<QObject*>(m_button));
    }

    void tree_of_everything_holds_widgets_and_actions() {
        QByteArray const all = QJsonDocument(call("ui.tree", "{}").result.toArray()).toJson();
        for (char const* name : {"\"go\"", "\"act\"", "\"table\"", "\"Main\""})
            QVERIFY2(all.contains(name), name);
    }

    void click_waits_until_after_the_answer() {
        QSignalSpy clicked(m_button, &QPushButton::clicked);
        RpcReply const reply = call("ui.click", R"({"object":"go"})");
        QCOMPARE(code(reply), 0);
        QCOMPARE(clicked.count(), 0);
        reply.afterwards();
        QCOMPARE(clicked.count(), 1);
    }

    void click_on_what_is_deleted_meanwhile_does_nothing() {
        RpcReply const reply = call("ui.click", R"({"object":"go"})");
        delete m_button;
        reply.afterwards();
    }

    void click_on_other_widgets_is_a_press_and_release_in_their_middle() {
        QCOMPARE(code(done("ui.click", R"({"object":"recorder"})")), 0);
        QPoint const middle = m_recorder->rect().center();
        QString const place = QStringLiteral(" %1,%2").arg(middle.x()).arg(middle.y());
        QCOMPARE(m_recorder->m_events, QStringList({QString::number(QEvent::MouseButtonPress) + place,
                                                    QString::number(QEvent::MouseButtonRelease) + place}));
    }

    void double_click_is_the_whole_sequence() {
        QCOMPARE(code(done("ui.doubleClick", R"({"object":"recorder"})")), 0);
        QCOMPARE(m_recorder->m_events.size(), 4);
        QVERIFY(m_recorder->m_events.at(2).startsWith(QString::number(QEvent::MouseButtonDblClick)));
    }

    void double_click_on_a_table_meets_the_selected_cell() {
        QCOMPARE(code(done("ui.item", R"({"object":"table","row":1,"column":1,"select":true})")), 0);
        QSignalSpy clicks(m_table, &QTableWidget::cellDoubleClicked);
        QCOMPARE(code(done("ui.doubleClick", R"({"object":"table"})")), 0);
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks.first(), QVariantList({1, 1}));
    }

    void what_an_operator_cannot_press_is_refused_data() {
        QTest::addColumn<bool>("visible");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("why");
        QTest::newRow("hidden") << false << true << "hidden";
        QTest::newRow("disabled") << true << false << "disabled";
    }
    void what_an_operator_cannot_press_is_refused() {
        QFETCH(bool, visible);
        QFETCH(bool, enabled);
        QFETCH(QString, why);
        m_button->setVisible(visible);
        m_button->setEnabled(enabled);
        m_action->setVisible(visible);
        m_action->setEnabled(enabled);
        for (RpcReply const& reply :
             {call("ui.click", R"({"object":"go"})"), call("ui.doubleClick", R"({"object":"go"})"),
              call("ui.trigger", R"({"action":"act"})"), call("ui.key", R"({"object":"go","key":"F6"})")}) {
            QCOMPARE(code(reply), int(RpcObjectNotUsable));
            QVERIFY2(reply.error->message.contains(why), qPrintable(reply.error->message));
            QVERIFY(!reply.afterwards);
        }
    }

    void what_is_behind_a_modal_dialog_is_refused() {
        QDialog dialog(m_window);
        auto* inside = new QPushButton(&dialog);
        inside->setObjectName("inside");
        dialog.setModal(true);
        dialog.show();
        QTRY_COMPARE(QApplication::activeModalWidget(), static_cast<QWidget*>(&dialog));
        QCOMPARE(code(call("ui.click", R"({"object":"go"})")), int(RpcObjectNotUsable));
        QCOMPARE(code(call("ui.trigger", R"({"action":"act"})")), int(RpcObjectNotUsable));
        QCOMPARE(code(call("ui.click", R"({"object":"inside"})")), 0);
    }

    void trigger_runs_an_action() {
        QSignalSpy triggered(m_action, &QAction::triggered);
        QCOMPARE(code(done("ui.trigger", R"({"action":"act"})")), 0);
        QCOMPARE(triggered.count(), 1);
        QCOMPARE(code(call("ui.trigger", R"({"action":"go"})")), int(RpcInvalidParams));
    }

    void unknown_and_ambiguous_objects_list_candidates() {
        RpcReply const unknown = call("ui.get", R"({"object":"goo","property":"text"})");
        QCOMPARE(code(unknown), int(RpcObjectNotFound));
        QVERIFY(!unknown.error->data.toObject().value("candidates").toArray().isEmpty());
        RpcReply const ambiguous = call("ui.get", R"({"object":"QWidget","property":"text"})");
        QCOMPARE(code(ambiguous), int(RpcObjectAmbiguous));
        QVERIFY(ambiguous.error->data.toObject().value("candidates").toArray().size() > 1);
    }

    void property_is_read_and_set() {
        QCOMPARE(call("ui.get", R"({"object":"go","property":"text"})").result, QJsonValue("Go"));
        RpcReply const reply = call("ui.set", R"({"object":"edit","property":"text","value":"abc"})");
        QCOMPARE(code(reply), 0);
        QCOMPARE(m_edit->text(), QString());
        reply.afterwards();
        QCOMPARE(m_edit->text(), QStringLiteral("abc"));
        QCOMPARE(code(call("ui.set", R"({"object":"edit","property":"text","value":5})")), int(RpcInvalidParams));
        QCOMPARE(code(call("ui.set", R"({"object":"edit","property":"no","value":5})")), int(RpcInvalidParams));
        QCOMPARE(m_edit->text(), QStringLiteral("abc"));
    }

    void a_password_is_told_by_none_of_the_methods_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("told");
        QTest::newRow("password") << int(QLineEdit::Password) << false;
        QTest::newRow("password shown while it is typed") << int(QLineEdit::PasswordEchoOnEdit) << false;
        QTest::newRow("nothing shown") << int(QLineEdit::NoEcho) << false;
        QTest::newRow("plain") << int(QLineEdit::Normal) << true;
    }
    void a_password_is_told_by_none_of_the_methods() {
        QFETCH(int, mode);
        QFETCH(bool, told);
        m_edit->setEchoMode(QLineEdit::EchoMode(mode));
        m_edit->setText("s3cret");
        m_edit->selectAll();
        QByteArray answers;
        for (QByteArray const& params : {QByteArray("{}"), QByteArray(R"({"object":"edit"})")})
            answers += QJsonDocument(call("ui.tree", params).result.toArray()).toJson();
        for (int i = 0; i < m_edit->metaObject()->propertyCount(); ++i) {
            QJsonObject const params{{"object", "edit"}, {"property", m_edit->metaObject()->property(i).name()}};
            RpcReply const reply = call("ui.get", QJsonDocument(params).toJson());
            answers += QJsonDocument(QJsonArray{reply.result}).toJson();
        }
        QCOMPARE(answers.contains("s3cret"), told);
        // It is typed in as into any other line, and stays hidden.
        QCOMPARE(code(done("ui.set", R"({"object":"edit","property":"text","value":"other"})")), 0);
        QCOMPARE(m_edit->text(), QStringLiteral("other"));
        int const shown = code(done("ui.set", R"({"object":"edit","property":"echoMode","value":"Normal"})"));
        QCOMPARE(shown, told ? 0 : int(RpcInvalidParams));
        QCOMPARE(int(m_edit->echoMode()), mode);
    }

    void a_password_is_told_as_the_dots_on_the_screen() {
        m_edit->setEchoMode(QLineEdit::Password);
        m_edit->setText("abc");
        m_edit->setSelection(1, 2);
        QString const dots = m_edit->displayText();
        QCOMPARE(dots.size(), 3);
        QCOMPARE(call("ui.get", R"({"object":"edit","property":"text"})").result, QJsonValue(dots));
        QCOMPARE(call("ui.get", R"({"object":"edit","property":"selectedText"})").result, QJsonValue(dots.mid(1)));
        QCOMPARE(call("ui.tree", R"({"object":"edit"})").result.toArray().at(0).toObject().value("text"),
                 QJsonValue(dots));
    }

    void items_are_read_and_selected() {
        RpcReply const cell = done("ui.item", R"({"object":"table","row":1,"column":1})");
        QCOMPARE(cell.result.toObject(), QJsonObject({{"text", "cell"}, {"rows", 3}, {"columns", 2}}));
        QVERIFY(m_table->selectedItems().isEmpty());
        done("ui.item", R"({"object":"table","row":1,"column":1,"select":true})");
        QCOMPARE(m_table->currentRow(), 1);
        QCOMPARE(m_table->currentColumn(), 1);
        QCOMPARE(done("ui.item", R"({"object":"combo","row":1,"select":true})").result.toObject().value("text"),
                 QJsonValue("b"));
        QCOMPARE(m_combo->currentIndex(), 1);
        QCOMPARE(done("ui.item", R"({"object":"tabs","row":1,"select":true})").result.toObject().value("text"),
                 QJsonValue("second"));
        QCOMPARE(m_window->findChild<QTabWidget*>("tabs")->currentIndex(), 1);
    }

    void items_outside_are_refused() {
        QCOMPARE(code(call("ui.item", R"({"object":"table","row":3})")), int(RpcInvalidParams));
        QCOMPARE(code(call("ui.item", R"({"object":"table","row":0,"column":2})")), int(RpcInvalidParams));
        QCOMPARE(code(call("ui.item", R"({"object":"go","row":0})")), int(RpcInvalidParams));
    }

    void key_names_are_understood_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::newRow("F6") << "F6" << int(Qt::Key_F6) << 0 << "";
        QTest::newRow("with prefix") << "Key_F6" << int(Qt::Key_F6) << 0 << "";
        QTest::newRow("letter") << "A" << int(Qt::Key_A) << 0 << "a";
        QTest::newRow("capital") << "Shift+A" << int(Qt::Key_A) << int(Qt::ShiftModifier) << "A";
        QTest::newRow("digit") << "5" << int(Qt::Key_5) << 0 << "5";
        QTest::newRow("two modifiers") << "ctrl+Shift+S" << int(Qt::Key_S)
                                       << int(Qt::ControlModifier | Qt::ShiftModifier) << "";
        QTest::newRow("return") << "Return" << int(Qt::Key_Return) << 0 << "\r";
        QTest::newRow("unknown") << "F99" << 0 << 0 << "";
        QTest::newRow("the unknown key") << "unknown" << 0 << 0 << "";
        QTest::newRow("modifier alone") << "Ctrl+" << 0 << int(Qt::ControlModifier) << "";
    }
    void key_names_are_understood() {
        QFETCH(QString, name);
        KeyPress const press = KeyPress::fromName(name);
        QTEST(press.key, "key");
        QTEST(int(press.modifiers), "modifiers");
        QTEST(press.text, "text");
    }

    void key_is_pressed_and_released() {
        QCOMPARE(code(done("ui.key", R"({"object":"recorder","key":"F6"})")), 0);
        QCOMPARE(m_recorder->m_events, QStringList({QStringLiteral("%1 %2 ").arg(QEvent::KeyPress).arg(Qt::Key_F6),
                                                    QStringLiteral("%1 %2 ").arg(QEvent::KeyRelease).arg(Qt::Key_F6)}));
        QCOMPARE(code(call("ui.key", R"({"key":"NoSuchKey"})")), int(RpcInvalidParams));
    }

    void key_without_object_goes_to_the_focus() {
        m_window->activateWindow();
        m_edit->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget*>(m_edit));
        QCOMPARE(code(done("ui.key", R"({"key":"Shift+X"})")), 0);
        QCOMPARE(m_edit->text(), QStringLiteral("X"));
    }

    void screenshot_is_a_png_of_the_object_or_the_screen() {
        QTemporaryDir directory;
        QString const file = directory.filePath("shot.png");
        QByteArray const params = QJsonDocument(QJsonObject{{"file", file}, {"object", "go"}}).toJson();
        RpcReply const reply = call("ui.screenshot", params);
        QCOMPARE(code(reply), 0);
        QImage const image(file);
        QCOMPARE(image.size(), m_button->size());
        QCOMPARE(reply.result.toObject().value("width"), QJsonValue(m_button->width()));
        QString const all = directory.filePath("all.png");
        QCOMPARE(code(call("ui.screenshot", QJsonDocument(QJsonObject{{"file", all}}).toJson())), 0);
        QCOMPARE(QImage(all).size(), m_window->size());
    }

    void screenshot_that_cannot_be_written_is_an_error() {
        RpcReply const reply = call("ui.screenshot", R"({"file":"/proc/none/shot.png"})");
        QCOMPARE(code(reply), int(RpcFileError));
    }
};

QTEST_MAIN(TestUiMethods)
#include "tst_uimethods.moc"
