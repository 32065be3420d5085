// SPDX-License-Identifier: MIT
#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "simengine/users/adminpassword.h"
#include "simengine/users/logindialog.h"
#include "simengine/users/passworddialog.h"
#include "simengine/users/session.h"
#include "support/approot.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QComboBox>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>
#include <sys/stat.h>

using namespace sim;

namespace {

User administrator() {
    User user;
    user.name = QStringLiteral("admin");
    user.administrator = true;
    return user;
}

unsigned modeOf(QString const& path) {
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 07777u : 0u;
}

QByteArray fileBytes(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A machine's users and a clock that only the test moves on.
struct Machine {
    tests::TemporaryRoot root;
    UserStore store{root.path("/ini/Users.db")};
    BootTime now{QStringLiteral("boot-1"), 1'000'000};

    Machine() { QCOMPARE(store.add(administrator(), "right-1"), UserResult::Done); }
    std::function<BootTime()> clock() {
        return [this] { return now; };
    }
    void guessWrongly(Session& session, int times) {
        for (int i = 0; i < times; ++i)
            QCOMPARE(session.login("admin", "wrong"), LoginResult::Wrong);
    }
};

/// The umask of the process for as long as the object lives.
class Umask {
public:
    explicit Umask(mode_t mask)
        : m_before(::umask(mask)) {}
    ~Umask() { ::umask(m_before); }
    Umask(Umask const&) = delete;
    Umask& operator=(Umask const&) = delete;

private:
    mode_t m_before;
};

struct LoginParts {
    explicit LoginParts(QDialog& dialog)
        : password(dialog.findChild<QLineEdit*>("lineEditPassword"))
        , ok(dialog.findChild<QPushButton*>("pushButtonOK"))
        , key(dialog.findChild<QPushButton*>("pushButtonKey1"))
        , fault(dialog.findChild<QLabel*>("labelFault")) {}
    void tryPassword(QString const& text) {
        password->setText(text);
        ok->click();
    }
    QLineEdit* password;
    QPushButton* ok;
    QPushButton* key;
    QLabel* fault;
};

QString lockText(int seconds) {
    return LanguageManager::GetLanText("尝试次数过多,请%1秒后再试").arg(seconds);
}

} // namespace

class TestLoginGuard : public QObject {
    Q_OBJECT

private slots:
    void five_wrong_passwords_in_a_row_lock_for_thirty_seconds() {
        Machine machine;
        Session session(machine.store, machine.clock());
        machine.guessWrongly(session, 4);
        QCOMPARE(session.lockedMs(), 0);
        machine.guessWrongly(session, 1);
        QCOMPARE(session.lockedMs(), 30'000);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::TooMany);
        QCOMPARE(session.confirm("admin", "right-1"), LoginResult::TooMany);
        QVERIFY(!session.isLoggedIn());
        machine.now.ms += 29'999;
        QCOMPARE(session.lockedMs(), 1);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::TooMany);
        machine.now.ms += 1;
        QCOMPARE(session.lockedMs(), 0);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
    }

    void after_a_lock_the_row_begins_anew() {
        Machine machine;
        Session session(machine.store, machine.clock());
        machine.guessWrongly(session, 5);
        machine.now.ms += kLoginPauseMs;
        machine.guessWrongly(session, 4);
        QCOMPARE(session.lockedMs(), 0);
        machine.guessWrongly(session, 1);
        QCOMPARE(session.lockedMs(), kLoginPauseMs);
    }

    void a_right_password_ends_the_row() {
        Machine machine;
        Session session(machine.store, machine.clock());
        machine.guessWrongly(session, 4);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
        machine.guessWrongly(session, 4);
        QCOMPARE(session.lockedMs(), 0);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
    }

    void wrong_names_and_wrong_old_passwords_count_too() {
        Machine machine;
        Session session(machine.store, machine.clock());
        QCOMPARE(session.login("nobody", "right-1"), LoginResult::Wrong);
        QCOMPARE(session.login("nobody", "x"), LoginResult::Wrong);
        QCOMPARE(session.confirm("admin", "x"), LoginResult::Wrong);
        QCOMPARE(session.confirm("admin", "y"), LoginResult::Wrong);
        QCOMPARE(session.login("admin", "z"), LoginResult::Wrong);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::TooMany);
    }

    void a_restart_of_the_program_is_no_way_round() {
        Machine machine;
        {
            Session session(machine.store, machine.clock());
            machine.guessWrongly(session, 3);
        }
        {
            UserStore store(machine.root.path("/ini/Users.db"));
            Session session(store, machine.clock());
            machine.guessWrongly(session, 2);
            machine.now.ms += 10'000;
        }
        UserStore store(machine.root.path("/ini/Users.db"));
        Session session(store, machine.clock());
        QCOMPARE(session.lockedMs(), 20'000);
        QCOMPARE(session.login("admin", "right-1"), LoginResult::TooMany);
        machine.now.ms += 20'000;
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
    }

    void an_attempt_counts_before_its_password_is_looked_at() {
        Machine machine;
        for (int i = 0; i < kLoginAttempts; ++i) {
            // The program is switched off between the two halves of the attempt.
            LoginGuard guard(machine.store, machine.clock());
            QVERIFY(guard.begin());
        }
        LoginGuard guard(machine.store, machine.clock());
        QVERIFY(!guard.begin());
        QCOMPARE(guard.lockedMs(), kLoginPauseMs);
    }

    void a_restart_of_the_machine_leaves_what_it_has_not_been_up_for_data() {
        QTest::addColumn<int>("upFor");
        QTest::addColumn<int>("locked");
        QTest::newRow("at once") << 0 << 30'000;
        QTest::newRow("after a quick start") << 12'000 << 18'000;
        QTest::newRow("after a slow start") << 30'000 << 0;
        QTest::newRow("later than the old machine's time") << 5'000'000 << 0;
    }

    void a_restart_of_the_machine_leaves_what_it_has_not_been_up_for() {
        QFETCH(int, upFor);
        QFETCH(int, locked);
        Machine machine;
        {
            Session session(machine.store, machine.clock());
            machine.guessWrongly(session, 5);
        }
        machine.now = {QStringLiteral("boot-2"), upFor};
        UserStore store(machine.root.path("/ini/Users.db"));
        Session session(store, machine.clock());
        QCOMPARE(session.lockedMs(), locked);
    }

    void the_clock_is_the_time_since_the_start_of_the_machine() {
        BootTime const first = bootTime();
        QVERIFY(!first.boot.isEmpty());
        QVERIFY(first.ms > 0);
        QTRY_VERIFY(bootTime().ms > first.ms);
        QCOMPARE(bootTime().boot, first.boot);
    }

    void the_login_dialog_counts_down_and_opens_again() {
        Machine machine;
        Session session(machine.store, machine.clock());
        LoginDialog dialog(machine.store, session, nullptr);
        dialog.show();
        LoginParts parts(dialog);
        for (int i = 0; i < 4; ++i)
            parts.tryPassword("wrong");
        QCOMPARE(parts.fault->text(), LanguageManager::GetLanText("登录失败,用户名或密码错误"));
        QVERIFY(parts.ok->isEnabled());
        parts.tryPassword("wrong");
        QCOMPARE(parts.fault->text(), lockText(30));
        for (QWidget* widget : QVector<QWidget*>{parts.password, parts.ok, parts.key})
            QVERIFY(!widget->isEnabled());
        QVERIFY(dialog.findChild<QPushButton*>("pushButtonCancel")->isEnabled());
        machine.now.ms += 12'300;
        QTRY_COMPARE(parts.fault->text(), lockText(18));
        machine.now.ms += 17'699;
        QTRY_COMPARE(parts.fault->text(), lockText(1));
        QVERIFY(!parts.ok->isEnabled());
        machine.now.ms += 1;
        QTRY_VERIFY(parts.ok->isEnabled() && parts.password->isEnabled() && parts.key->isEnabled());
        QVERIFY(parts.fault->text().isEmpty());
        parts.tryPassword("right-1");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(session.user().name, QString("admin"));
    }

    void a_dialog_that_opens_in_a_lock_shows_it_at_once() {
        Machine machine;
        Session session(machine.store, machine.clock());
        machine.guessWrongly(session, 5);
        LoginDialog dialog(machine.store, session, nullptr);
        LoginParts parts(dialog);
        QCOMPARE(parts.fault->text(), lockText(30));
        QVERIFY(!parts.password->isEnabled() && !parts.ok->isEnabled());
    }

    void the_password_dialog_is_locked_as_the_login_is() {
        Machine machine;
        Session session(machine.store, machine.clock());
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
        PasswordDialog dialog(machine.store, session, nullptr);
        auto* old = dialog.findChild<QLineEdit*>("lineEditOld");
        auto* ok = dialog.findChild<QPushButton*>("pushButtonOK");
        for (int i = 0; i < kLoginAttempts; ++i) {
            QVERIFY(ok->isEnabled());
            old->setText("guess");
            dialog.findChild<QLineEdit*>("lineEditNew")->setText("new-1");
            dialog.findChild<QLineEdit*>("lineEditAgain")->setText("new-1");
            ok->click();
        }
        QCOMPARE(dialog.findChild<QLabel*>("labelFault")->text(), lockText(30));
        QVERIFY(!ok->isEnabled() && !old->isEnabled());
        machine.now.ms += kLoginPauseMs;
        QTRY_VERIFY(ok->isEnabled());
        QCOMPARE(session.login("admin", "right-1"), LoginResult::Done);
    }

    void the_database_is_closed_to_others_from_its_first_moment() {
        tests::TemporaryRoot root;
        Umask const open(0);
        UserStore store(root.path("/ini/Users.db"));
        QCOMPARE(store.add(administrator(), "right-1"), UserResult::Done);
        QCOMPARE(modeOf(root.path("/ini/Users.db")), 0600u);
        QCOMPARE(modeOf(root.path("/ini")) & 0022u, 0u);
    }

    void a_database_and_a_folder_that_were_open_are_closed() {
        Machine machine;
        QString const path = machine.root.path("/ini/Users.db");
        QVERIFY(::chmod(QFile::encodeName(path).constData(), 0666) == 0);
        QVERIFY(::chmod(QFile::encodeName(machine.root.path("/ini")).constData(), 0777) == 0);
        QVERIFY(machine.store.check("admin", "right-1").has_value());
        QCOMPARE(modeOf(path), 0600u);
        QCOMPARE(modeOf(machine.root.path("/ini")), 0755u);
    }

    void the_journal_of_a_change_is_closed_too() {
        Machine machine;
        Umask const open(0);
        QString const path = machine.root.path("/ini/Users.db");
        {
            QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "journal");
            database.setDatabaseName(path);
            QVERIFY(database.open() && database.transaction());
            QVERIFY(QSqlQuery(database).exec("UPDATE users SET rights=1"));
            QVERIFY(QFile::exists(path + "-journal"));
            QCOMPARE(modeOf(path + "-journal"), 0600u);
            database.rollback();
        }
        QSqlDatabase::removeDatabase("journal");
        QCOMPARE(QDir(machine.root.path("/ini")).entryList({"Users.db-*"}, QDir::Files), QStringList());
    }

    void a_link_in_the_place_of_the_database_is_not_followed() {
        tests::TemporaryRoot root;
        QVERIFY(root.write("/elsewhere", "kept"));
        QVERIFY(QDir().mkpath(root.path("/ini")));
        QVERIFY(QFile::link(root.path("/elsewhere"), root.path("/ini/Users.db")));
        UserStore store(root.path("/ini/Users.db"));
        QCOMPARE(store.add(administrator(), "right-1"), UserResult::Failed);
        QCOMPARE(root.read("/elsewhere"), QByteArray("kept"));
    }

    /// Everything that a day's work with users writes, but for the database itself and the keypad password, which is
    /// kept to be compared with digits that are typed and lies in a file of its own.
    void no_password_and_no_hash_is_in_any_other_file() {
        tests::TemporaryRoot root;
        tessera::setApplicationRoot(root.path());
        UserStore& store = userStore();
        QVERIFY(store.users()->isEmpty());
        QCOMPARE(store.add(administrator(), "Geheim-Admin"), UserResult::Done);
        User second = administrator();
        second.name = "zweite";
        QCOMPARE(store.add(second, "Geheim-Zweite"), UserResult::Done);
        QCOMPARE(session().login("admin", "Falsch-Eins"), LoginResult::Wrong);
        QCOMPARE(session().login("niemand", "Falsch-Zwei"), LoginResult::Wrong);
        QCOMPARE(session().login("admin", "Geheim-Admin"), LoginResult::Done);
        {
            tests::DialogAnswerer answerer;
            answerer.press("pushButtonOK");
            PasswordDialog dialog(store, session(), nullptr);
            dialog.findChild<QLineEdit*>("lineEditOld")->setText("Falsch-Drei");
            dialog.findChild<QLineEdit*>("lineEditNew")->setText("Geheim-Neu");
            dialog.findChild<QLineEdit*>("lineEditAgain")->setText("Geheim-Neu");
            dialog.findChild<QPushButton*>("pushButtonOK")->click();
            dialog.findChild<QLineEdit*>("lineEditOld")->setText("Geheim-Admin");
            dialog.findChild<QPushButton*>("pushButtonOK")->click();
        }
        QVERIFY(store.check("admin", "Geheim-Neu").has_value());
        AuthorityManager::Loginout();
        QCOMPARE(store.remove("zweite"), UserResult::Done);
        QVERIFY(writeAdminPassword("7314159"));
        int files = 0;
        bool logged = false;
        QDirIterator walk(root.path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            QString const path = walk.next();
            if (path.endsWith("/ini/Users.db") || path.endsWith("/ini/AdminPassword"))
                continue;
            ++files;
            QByteArray const bytes = fileBytes(path);
            logged = logged || bytes.contains("login refused: niemand");
            for (char const* secret : {"Geheim", "Falsch", "argon2", "7314159"})
                QVERIFY2(!bytes.contains(secret), qPrintable(path + " has " + secret));
        }
        QVERIFY(files > 0);
        QVERIFY(logged);
        QVERIFY(fileBytes(root.path("/ini/Users.db")).contains("$argon2id$"));
    }
};

QTEST_MAIN(TestLoginGuard)
#include "tst_loginguard.moc"
