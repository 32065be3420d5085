// SPDX-License-Identifier: MIT
#include "engine/authoritymanager.h"
#include "engine/iautologinoutmsg.h"
#include "engine/systemparam.h"
#include "simengine/users/adminpassword.h"
#include "simengine/users/autologout.h"
#include "simengine/users/passwordhash.h"
#include "simengine/users/session.h"
#include "support/approot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <functional>
#include <sys/stat.h>

using namespace sim;

namespace {

/// Lets `work` act on each modal dialog that comes up, until it has been called `count` times. Every call happens when
/// the dialog is up; the test then sees whether it happened as often as it should.
class DialogWorker : public QObject {
public:
    DialogWorker(int count, std::function<void(QDialog*, int)> work)
        : m_left(count)
        , m_work(std::move(work)) {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog || m_left == 0)
                return;
            --m_left;
            m_work(dialog, m_done++);
        });
        m_timer.start(5);
    }
    int left() const { return m_left; }

private:
    QTimer m_timer;
    int m_left;
    int m_done = 0;
    std::function<void(QDialog*, int)> m_work;
};

void type(QDialog* dialog, char const* line, QString const& text) {
    auto* edit = dialog->findChild<QLineEdit*>(QString::fromLatin1(line));
    QVERIFY2(edit, line);
    edit->setText(text);
}

void press(QDialog* dialog, char const* button) {
    auto* found = dialog->findChild<QPushButton*>(QString::fromLatin1(button));
    QVERIFY2(found, button);
    found->click();
}

QString faultOf(QDialog* dialog) {
    return dialog->findChild<QLabel*>(QStringLiteral("labelFault"))->text();
}

QByteArray fileBytes(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

unsigned modeOf(QString const& path) {
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 0777u : 0u;
}

User makeUser(QString const& name, unsigned rights, bool administrator = false) {
    User user;
    user.name = name;
    user.rights = rights;
    user.administrator = administrator;
    return user;
}

class LogoutSink : public IAutoLoginOutMsg {
public:
    void AutoLoginOut() override { ++count; }
    int count = 0;
};

} // namespace

class TestUsers : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void cleanup() {
        SystemParam::Instance()->SetEnableUserManager(false);
        AuthorityManager::Loginout();
    }

    void a_hash_is_argon2id_salted_and_verifies() {
        QByteArray const first = hashPassword("secret word");
        QByteArray const second = hashPassword("secret word");
        QVERIFY(first.startsWith("$argon2id$"));
        QVERIFY(first != second);
        QVERIFY(!first.contains("secret"));
        QVERIFY(verifyPassword(first, "secret word") && verifyPassword(second, "secret word"));
        QVERIFY(!verifyPassword(first, "secret Word"));
        QVERIFY(!verifyPassword(first, ""));
        QVERIFY(!verifyPassword("", "secret word"));
        QVERIFY(!verifyPassword("no hash", "secret word"));
        QVERIFY(!verifyPassword(QByteArray(500, 'x'), "secret word"));
    }

    void users_come_back_with_their_rights_and_no_password_is_in_the_file() {
        QString const path = m_root.filePath("a/users.db");
        UserStore store(path);
        QVERIFY(store.users().has_value() && store.users()->isEmpty());
        QCOMPARE(store.add(makeUser("张工", 0, true), "pass-zhang-1"), UserResult::Done);
        QCOMPARE(store.add(makeUser("li", RightOpenFile | RightSaveFile), "pass-li-22"), UserResult::Done);
        UserStore const again(path);
        QVector<User> const users = again.users().value();
        QCOMPARE(users.size(), 2);
        QVERIFY(users[0].name == "li" && !users[0].administrator && users[0].rights == (RightOpenFile | RightSaveFile));
        QVERIFY(users[1].name == "张工" && users[1].administrator && users[1].rights == unsigned(AllRights));
        QByteArray const bytes = fileBytes(path);
        QVERIFY(bytes.contains("$argon2id$"));
        QVERIFY(!bytes.contains("pass-zhang-1") && !bytes.contains("pass-li-22"));
        QCOMPARE(modeOf(path), 0600u);
        QCOMPARE(QDir(m_root.filePath("a")).entryList(QDir::Files | QDir::Hidden), QStringList{"users.db"});
    }

    void a_wrong_password_and_an_unknown_name_are_refused() {
        UserStore const store(m_root.filePath("a/users.db"));
        QVERIFY(store.check("li", "pass-li-22").has_value());
        QVERIFY(!store.check("li", "pass-li-23").has_value());
        QVERIFY(!store.check("li", "").has_value());
        QVERIFY(!store.check("LI", "pass-li-22").has_value());
        QVERIFY(!store.check("nobody", "pass-li-22").has_value());
        QVERIFY(!store.check("li' OR '1'='1", "x").has_value());
        QVERIFY(!store.check("li", QString(5000, 'x')).has_value());
    }

    void bad_entries_are_refused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("result");
        QTest::newRow("no name") << ""
                                 << "12345" << int(UserResult::NameMissing);
        QTest::newRow("blanks round the name") << " x"
                                               << "12345" << int(UserResult::NameMissing);
        QTest::newRow("line feed") << "x\ny"
                                   << "12345" << int(UserResult::NameMissing);
        QTest::newRow("long name") << QString(65, 'x') << "12345" << int(UserResult::NameMissing);
        QTest::newRow("short password") << "x"
                                        << "123" << int(UserResult::PasswordLength);
        QTest::newRow("long password") << "x" << QString(129, '1') << int(UserResult::PasswordLength);
        QTest::newRow("taken") << "li"
                               << "12345" << int(UserResult::NameTaken);
        QTest::newRow("taken in capitals") << "LI"
                                           << "12345" << int(UserResult::NameTaken);
    }

    void bad_entries_are_refused() {
        QFETCH(QString, name);
        QFETCH(QString, password);
        QFETCH(int, result);
        UserStore store(m_root.filePath("a/users.db"));
        QCOMPARE(int(store.add(makeUser(name, 0), password)), result);
        QCOMPARE(store.users()->size(), 2);
    }

    void a_changed_password_replaces_the_old_one() {
        UserStore store(m_root.filePath("a/users.db"));
        QCOMPARE(store.setPassword("li", "neu4"), UserResult::Done);
        QVERIFY(store.check("li", "neu4").has_value());
        QVERIFY(!store.check("li", "pass-li-22").has_value());
        QCOMPARE(store.setPassword("nobody", "neu4"), UserResult::UnknownUser);
        QCOMPARE(store.setPassword("li", "neu"), UserResult::PasswordLength);
    }

    void the_last_administrator_stays() {
        UserStore store(m_root.filePath("a/users.db"));
        QCOMPARE(store.remove("张工"), UserResult::LastAdministrator);
        QCOMPARE(store.setRights(makeUser("张工", 0)), UserResult::LastAdministrator);
        QVERIFY(store.users()->at(1).administrator);
        QCOMPARE(store.setRights(makeUser("li", 0, true)), UserResult::Done);
        QCOMPARE(store.remove("张工"), UserResult::Done);
        QCOMPARE(store.remove("张工"), UserResult::UnknownUser);
        QCOMPARE(store.users()->size(), 1);
    }

    void the_first_user_must_be_an_administrator() {
        UserStore store(m_root.filePath("first.db"));
        QCOMPARE(store.add(makeUser("x", AllRights), "12345"), UserResult::LastAdministrator);
        QVERIFY(store.users()->isEmpty());
    }

    void a_damaged_database_lets_nobody_in_and_is_left_alone() {
        QString const path = m_root.filePath("damaged.db");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(8192, 'x'));
        file.close();
        UserStore store(path);
        QVERIFY(!store.users().has_value());
        QVERIFY(!store.check("admin", "12345").has_value());
        QCOMPARE(store.add(makeUser("admin", 0, true), "12345"), UserResult::Failed);
        QCOMPARE(fileBytes(path), QByteArray(8192, 'x'));
    }

    void management_off_gives_every_right_and_on_none_without_login() {
        QVERIFY(AuthorityManager::CanNewFile() && AuthorityManager::CanOpenFile() && AuthorityManager::CanSaveFile() &&
                AuthorityManager::CanDeleteFile() && AuthorityManager::CanAddMarkShape() &&
                AuthorityManager::CanEditMarkTool() && AuthorityManager::CanEditMarkParam());
        SystemParam::Instance()->SetEnableUserManager(true);
        QVERIFY(!AuthorityManager::CanNewFile() && !AuthorityManager::CanOpenFile() &&
                !AuthorityManager::CanSaveFile() && !AuthorityManager::CanDeleteFile() &&
                !AuthorityManager::CanAddMarkShape() && !AuthorityManager::CanEditMarkTool() &&
                !AuthorityManager::CanEditMarkParam());
    }

    void the_first_login_makes_the_administrator() {
        SystemParam::Instance()->SetEnableUserManager(true);
        DialogWorker worker(3, [](QDialog* dialog, int step) {
            QCOMPARE(dialog->objectName(), QString("UserDialog"));
            type(dialog, "lineEditPassword", step == 0 ? "abc" : "admin-1");
            type(dialog, "lineEditAgain", step == 1 ? "other" : step == 0 ? "abc" : "admin-1");
            press(dialog, "pushButtonOK");
            QCOMPARE(faultOf(dialog).isEmpty(), step == 2);
        });
        QVERIFY(AuthorityManager::Logining());
        QCOMPARE(worker.left(), 0);
        QCOMPARE(session().user().name, QString("admin"));
        QVERIFY(AuthorityManager::CanEditMarkParam() && AuthorityManager::CanDeleteFile());
        QCOMPARE(AuthorityManager::GetCurrentUser(), QString("admin"));
        // Without user management nobody is anybody, whoever logged in before.
        SystemParam::Instance()->SetEnableUserManager(false);
        QVERIFY(AuthorityManager::GetCurrentUser().isEmpty());
        SystemParam::Instance()->SetEnableUserManager(true);
        AuthorityManager::Loginout();
        QVERIFY(AuthorityManager::GetCurrentUser().isEmpty());
    }

    void the_login_dialog_refuses_then_lets_in() {
        SystemParam::Instance()->SetEnableUserManager(true);
        DialogWorker worker(2, [](QDialog* dialog, int step) {
            QCOMPARE(dialog->objectName(), QString("LoginDialog"));
            QCOMPARE(dialog->findChild<QComboBox*>("comboBoxUser")->currentText(), QString("admin"));
            type(dialog, "lineEditPassword", step == 0 ? "admin-2" : "admin-1");
            press(dialog, "pushButtonOK");
            QCOMPARE(faultOf(dialog).isEmpty(), step == 1);
        });
        QVERIFY(AuthorityManager::Logining());
        QCOMPARE(worker.left(), 0);
        AuthorityManager::Loginout();
        QVERIFY(!AuthorityManager::CanOpenFile());
    }

    void a_cancelled_login_changes_nothing() {
        DialogWorker worker(1, [](QDialog* dialog, int) { press(dialog, "pushButtonCancel"); });
        QVERIFY(!AuthorityManager::Logining());
        QCOMPARE(worker.left(), 0);
        QVERIFY(!session().isLoggedIn());
    }

    void the_keypad_types_the_password() {
        DialogWorker worker(1, [](QDialog* dialog, int) {
            for (char const* key : {"pushButtonKey1", "pushButtonKey0", "pushButtonKey9", "pushButtonKey10"})
                press(dialog, key);
            QCOMPARE(dialog->findChild<QLineEdit*>("lineEditPassword")->text(), QString("10"));
            press(dialog, "pushButtonKey11");
            QVERIFY(dialog->findChild<QLineEdit*>("lineEditPassword")->text().isEmpty());
            press(dialog, "pushButtonCancel");
        });
        QVERIFY(!AuthorityManager::Logining());
        QCOMPARE(worker.left(), 0);
    }

    void an_administrator_adds_a_user_whose_rights_hold() {
        QCOMPARE(session().login("admin", "admin-1"), LoginResult::Done);
        DialogWorker worker(1, [](QDialog* dialog, int) {
            type(dialog, "lineEditName", "operator");
            type(dialog, "lineEditPassword", "oper-1");
            type(dialog, "lineEditAgain", "oper-1");
            dialog->findChild<QCheckBox*>(QStringLiteral("checkBoxRight%1").arg(RightOpenFile))->setChecked(true);
            dialog->findChild<QCheckBox*>(QStringLiteral("checkBoxRight%1").arg(RightEditParam))->setChecked(true);
            press(dialog, "pushButtonOK");
        });
        AuthorityManager::addUser();
        QCOMPARE(worker.left(), 0);
        SystemParam::Instance()->SetEnableUserManager(true);
        QCOMPARE(session().login("operator", "oper-1"), LoginResult::Done);
        QVERIFY(AuthorityManager::CanOpenFile() && AuthorityManager::CanEditMarkParam());
        QVERIFY(!AuthorityManager::CanNewFile() && !AuthorityManager::CanSaveFile() &&
                !AuthorityManager::CanDeleteFile() && !AuthorityManager::CanAddMarkShape() &&
                !AuthorityManager::CanEditMarkTool());
    }

    void others_may_not_add_users() {
        QCOMPARE(session().login("operator", "oper-1"), LoginResult::Done);
        DialogWorker worker(1, [](QDialog* dialog, int) {
            QCOMPARE(dialog->objectName(), QString("msgBox"));
            press(dialog, "pushButtonOK");
        });
        AuthorityManager::addUser();
        QCOMPARE(worker.left(), 0);
        QCOMPARE(userStore().users()->size(), 2);
    }

    void a_user_changes_the_own_password_with_the_old_one() {
        QCOMPARE(session().login("operator", "oper-1"), LoginResult::Done);
        DialogWorker worker(3, [](QDialog* dialog, int step) {
            if (step == 2) {
                QCOMPARE(dialog->objectName(), QString("msgBox"));
                press(dialog, "pushButtonOK");
                return;
            }
            type(dialog, "lineEditOld", step == 0 ? "wrong" : "oper-1");
            type(dialog, "lineEditNew", "oper-2");
            type(dialog, "lineEditAgain", "oper-2");
            QTimer::singleShot(0, dialog, [dialog] { press(dialog, "pushButtonOK"); });
        });
        AuthorityManager::ChangePassWord();
        QCOMPARE(worker.left(), 0);
        QCOMPARE(userStore().attempts()->wrong, 0);
        QVERIFY(userStore().check("operator", "oper-2").has_value());
        QVERIFY(!userStore().check("operator", "oper-1").has_value());
    }

    void the_list_changes_rights_for_an_administrator() {
        QCOMPARE(session().login("admin", "admin-1"), LoginResult::Done);
        DialogWorker worker(3, [](QDialog* dialog, int step) {
            if (step == 1) {
                press(dialog, "pushButtonOK");
                return;
            }
            auto* table = dialog->findChild<QTableWidget*>("tableWidgetUsers");
            QCOMPARE(table->rowCount(), 2);
            QCOMPARE(table->item(1, 0)->text(), QString("operator"));
            if (step == 0) {
                table->item(1, 2)->setCheckState(Qt::Checked);   // new file
                table->item(1, 3)->setCheckState(Qt::Unchecked); // open file
                QTimer::singleShot(0, dialog, [dialog] { press(dialog, "pushButtonSave"); });
            } else {
                press(dialog, "pushButtonClose");
            }
        });
        AuthorityManager::UsersManagerConfig();
        QCOMPARE(worker.left(), 0);
        QCOMPARE(userStore().users()->at(1).rights, unsigned(RightNewFile | RightEditParam));
    }

    void a_touch_anywhere_in_a_cell_turns_its_right_over() {
        QCOMPARE(session().login("admin", "admin-1"), LoginResult::Done);
        DialogWorker worker(1, [](QDialog* dialog, int) {
            auto* table = dialog->findChild<QTableWidget*>("tableWidgetUsers");
            QTableWidgetItem* cell = table->item(1, 4);
            bool const before = cell->checkState() == Qt::Checked;
            QRect const place = table->visualItemRect(cell);
            QVERIFY(table->rowHeight(1) >= 40);
            for (QPoint const& at :
                 {place.center(), place.topLeft() + QPoint(6, 6), place.bottomRight() - QPoint(6, 6)})
                QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at);
            QCOMPARE(cell->checkState() == Qt::Checked, !before);
            table->setCurrentItem(cell);
            QTest::keyClick(table, Qt::Key_Space);
            QCOMPARE(cell->checkState() == Qt::Checked, before);
            press(dialog, "pushButtonClose");
        });
        AuthorityManager::UsersManagerConfig();
        QCOMPARE(worker.left(), 0);
    }

    void the_list_shows_others_their_own_row_without_switches() {
        QCOMPARE(session().login("operator", "oper-2"), LoginResult::Done);
        DialogWorker worker(1, [](QDialog* dialog, int) {
            auto* table = dialog->findChild<QTableWidget*>("tableWidgetUsers");
            QCOMPARE(table->rowCount(), 1);
            QVERIFY((table->item(0, 2)->flags() & Qt::ItemIsUserCheckable) == 0);
            QVERIFY(!dialog->findChild<QPushButton*>("pushButtonSave"));
            press(dialog, "pushButtonClose");
        });
        AuthorityManager::UsersManagerConfig();
        QCOMPARE(worker.left(), 0);
    }

    void the_keypad_password_is_digits_in_a_private_file() {
        QCOMPARE(AuthorityManager::GetAdminPassWord(), QString());
        QVERIFY(!writeAdminPassword("12a4"));
        QVERIFY(!writeAdminPassword("１２"));
        QVERIFY(writeAdminPassword("204060"));
        QCOMPARE(AuthorityManager::GetAdminPassWord(), QString("204060"));
        QCOMPARE(modeOf(tessera::rootPath("/ini/AdminPassword")), 0600u);
        QVERIFY(writeAdminPassword("7"));
        QCOMPARE(AuthorityManager::GetAdminPassWord(), QString("7"));
        QCOMPARE(modeOf(tessera::rootPath("/ini/AdminPassword")), 0600u);
        QVERIFY(writeAdminPassword(""));
        QCOMPARE(AuthorityManager::GetAdminPassWord(), QString());
    }

    void automatic_logout_is_stored_and_started() {
        AuthorityManager::SetAutoLoginOut(true, 77);
        g_bAutoLoginOut = false;
        g_LoginOutSecond = 5;
        AuthorityManager::StartAutoLoginOut();
        QVERIFY(g_bAutoLoginOut);
        QCOMPARE(g_LoginOutSecond.load(), 77);
        AuthorityManager::SetAutoLoginOut(false, -3);
        QCOMPARE(g_LoginOutSecond.load(), 1);
    }

    void idle_time_logs_out_and_tells_the_sink() {
        LogoutSink sink;
        IAutoLoginOutMsg::SetInstance(&sink);
        SystemParam::Instance()->SetEnableUserManager(true);
        QCOMPARE(session().login("operator", "oper-2"), LoginResult::Done);
        AuthorityManager::StartAutoLoginOut();
        AuthorityManager::SetAutoLoginOut(true, 1);
        QTRY_COMPARE_WITH_TIMEOUT(sink.count, 1, 20'000);
        QVERIFY(!session().isLoggedIn());
        AuthorityManager::SetAutoLoginOut(false, 1);
    }

    void operation_puts_the_logout_off_until_its_end() {
        int expired = 0;
        QObject owner;
        AutoLogout watcher(qApp, [&expired] { ++expired; });
        watcher.setLimit(1);
        QElapsedTimer sinceKey;
        QTimer keys;
        int left = 15;
        QWidget window;
        connect(&keys, &QTimer::timeout, &window, [&] {
            QTest::keyClick(&window, Qt::Key_A);
            sinceKey.start();
            if (--left == 0)
                keys.stop();
        });
        keys.start(100);
        QTRY_COMPARE_WITH_TIMEOUT(expired, 1, 20'000);
        QCOMPARE(left, 0);
        QVERIFY2(sinceKey.elapsed() >= 990, qPrintable(QString::number(sinceKey.elapsed())));
        watcher.setLimit(0);
    }

    void a_sink_that_dies_takes_itself_back() {
        {
            LogoutSink sink;
            IAutoLoginOutMsg::SetInstance(&sink);
            QCOMPARE(IAutoLoginOutMsg::Instance(), static_cast<IAutoLoginOutMsg*>(&sink));
        }
        QVERIFY(!IAutoLoginOutMsg::Instance());
    }
};

QTEST_MAIN(TestUsers)
#include "tst_users.moc"
