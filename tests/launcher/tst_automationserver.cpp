// SPDX-License-Identifier: MIT
#include "automation/automationserver.h"
#include "automation/uimethods.h"

#include <QDialog>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QPushButton>
#include <QtTest>
#include <chrono>
#include <future>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace tessera;

namespace {

/// Methods that record their calls, in their order.
class SampleMethods : public RpcMethodTable<SampleMethods> {
public:
    static std::array<Row, 5> const& methods() {
        static std::array<Row, 5> const rows{{
            {"test.echo", {{{"value", RpcType::Any, true}}}, &SampleMethods::echo},
            {"test.note", {{{"value", RpcType::Index, true}}}, &SampleMethods::note},
            {"test.noteLater", {{{"value", RpcType::Index, true}}}, &SampleMethods::noteLater},
            {"test.modal", {}, &SampleMethods::modal},
            {"test.large", {}, &SampleMethods::large},
        }};
        return rows;
    }
    QVector<int> m_notes;
    QDialog* m_dialog = nullptr;

private:
    RpcReply echo(QJsonObject const& params) { return RpcReply::value(params.value("value")); }
    RpcReply note(QJsonObject const& params) {
        m_notes.append(params.value("value").toInt());
        return RpcReply::value(m_notes.size());
    }
    RpcReply noteLater(QJsonObject const& params) {
        return RpcReply::done([this, value = params.value("value").toInt()] { m_notes.append(value); });
    }
    RpcReply modal(QJsonObject const&) {
        return RpcReply::done([this] {
            QDialog dialog;
            dialog.setObjectName("modal");
            m_dialog = &dialog;
            dialog.exec();
            m_dialog = nullptr;
        });
    }
    RpcReply large(QJsonObject const&) { return RpcReply::value(QString(256 * 1024, 'x')); }
};

QByteArray request(int id, char const* method, QByteArray const& params = "{}") {
    return "{\"jsonrpc\":\"2.0\",\"id\":" + QByteArray::number(id) + ",\"method\":\"" + method +
           "\",\"params\":" + params + "}\n";
}

} // namespace

class TestAutomationServer : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<AutomationServer> m_server;
    SampleMethods* m_methods = nullptr;

    QString path() const { return m_directory->filePath("s"); }

    std::unique_ptr<QLocalSocket> client() {
        auto socket = std::make_unique<QLocalSocket>();
        socket->connectToServer(path());
        if (!socket->waitForConnected())
            qFatal("cannot connect: %s", qPrintable(socket->errorString()));
        return socket;
    }
    static QByteArray answer(QLocalSocket& socket) {
        if (!QTest::qWaitFor([&] { return socket.canReadLine(); }, 10000))
            return "no answer";
        return socket.readLine();
    }
    static int code(QByteArray const& answer) {
        return QJsonDocument::fromJson(answer).object().value("error").toObject().value("code").toInt();
    }
    static QJsonValue result(QByteArray const& answer) {
        return QJsonDocument::fromJson(answer).object().value("result");
    }

private slots:
    void init() {
        m_directory = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<AutomationServer>();
        auto methods = std::make_unique<SampleMethods>();
        m_methods = methods.get();
        m_server->addFamily(std::move(methods));
        m_server->addFamily(std::make_unique<UiMethods>());
        QString error;
        QVERIFY2(m_server->listen(path(), error), qPrintable(error));
    }
    void cleanup() {
        m_server.reset();
        m_directory.reset();
    }

    void socket_is_for_the_owner_only() {
        QCOMPARE(QFileInfo(path()).permissions() & ~(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                     QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
                 QFile::Permissions());
    }

    void call_is_answered_with_its_id() {
        auto socket = client();
        socket->write(request(7, "test.echo", R"({"value":[1,"二"]})"));
        QByteArray const line = answer(*socket);
        QCOMPARE(result(line), QJsonValue(QJsonArray({1, QStringLiteral("二")})));
        QCOMPARE(QJsonDocument::fromJson(line).object().value("id"), QJsonValue(7));
    }

    void request_may_come_in_pieces() {
        auto socket = client();
        for (char byte : request(1, "test.echo", R"({"value":5})")) {
            socket->write(&byte, 1);
            socket->flush();
            QCoreApplication::processEvents();
        }
        QCOMPARE(result(answer(*socket)), QJsonValue(5));
    }

    void many_requests_at_once_are_answered_in_their_order() {
        auto socket = client();
        QByteArray all;
        for (int i = 0; i < 100; ++i)
            all += request(i, "test.echo", "{\"value\":" + QByteArray::number(i) + "}");
        socket->write(all);
        for (int i = 0; i < 100; ++i) {
            QByteArray const line = answer(*socket);
            QCOMPARE(QJsonDocument::fromJson(line).object().value("id"), QJsonValue(i));
        }
    }

    void what_is_left_to_do_is_done_before_the_next_call() {
        auto socket = client();
        socket->write(request(1, "test.noteLater", R"({"value":1})") + request(2, "test.note", R"({"value":2})") +
                      request(3, "test.noteLater", R"({"value":3})") + request(4, "test.note", R"({"value":4})"));
        for (int i = 0; i < 4; ++i)
            QVERIFY(code(answer(*socket)) == 0);
        QCOMPARE(m_methods->m_notes, QVector<int>({1, 2, 3, 4}));
    }

    void bad_lines_are_answered_and_change_nothing_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("code");
        QTest::newRow("no JSON") << QByteArray("hello\n") << int(RpcParseError);
        QTest::newRow("binary") << QByteArray("\xff\x00\x01{\n", 5) << int(RpcParseError);
        QTest::newRow("no request") << QByteArray("{}\n") << int(RpcInvalidRequest);
        QTest::newRow("empty batch") << QByteArray("[]\n") << int(RpcInvalidRequest);
        QTest::newRow("unknown method") << request(1, "test.nothing") << int(RpcMethodNotFound);
        QTest::newRow("missing parameter") << request(1, "test.note") << int(RpcInvalidParams);
        QTest::newRow("wrong parameter") << request(1, "test.note", R"({"value":"1"})") << int(RpcInvalidParams);
        QTest::newRow("unknown parameter") << request(1, "test.note", R"({"value":1,"x":2})") << int(RpcInvalidParams);
        QTest::newRow("oversized") << QByteArray(AutomationServer::kLongestLine + 1, 'x') + "\n"
                                   << int(RpcInvalidRequest);
        QTest::newRow("oversized request")
            << "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"test.note\",\"params\":{\"value\":1},\"x\":\"" +
                   QByteArray(AutomationServer::kLongestLine, 'x') + "\"}\n"
            << int(RpcInvalidRequest);
    }
    void bad_lines_are_answered_and_change_nothing() {
        QFETCH(QByteArray, line);
        auto socket = client();
        socket->write(line);
        QTEST(code(answer(*socket)), "code");
        QVERIFY(m_methods->m_notes.isEmpty());
        socket->write(request(9, "test.echo", R"({"value":"still here"})"));
        QCOMPARE(result(answer(*socket)), QJsonValue("still here"));
    }

    void longest_line_is_taken() {
        auto socket = client();
        QByteArray const begin = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"test.echo\",\"params\":{\"value\":\"";
        QByteArray const end = "\"}}";
        QByteArray const filling(AutomationServer::kLongestLine - begin.size() - end.size(), 'y');
        socket->write(begin + filling + end + "\n");
        QCOMPARE(result(answer(*socket)).toString().size(), filling.size());
    }

    void unknown_method_lists_the_known_ones() {
        auto socket = client();
        socket->write(request(1, "ui.clack"));
        QVERIFY(answer(*socket).contains("\"ui.click\""));
    }

    void notification_is_done_without_answer() {
        auto socket = client();
        socket->write("{\"jsonrpc\":\"2.0\",\"method\":\"test.note\",\"params\":[5]}\n"
                      "{\"jsonrpc\":\"2.0\",\"method\":\"test.nothing\"}\n");
        socket->write(request(2, "test.echo", R"({"value":1})"));
        QCOMPARE(QJsonDocument::fromJson(answer(*socket)).object().value("id"), QJsonValue(2));
        QCOMPARE(m_methods->m_notes, QVector<int>({5}));
    }

    void batch_is_answered_by_one_line() {
        auto socket = client();
        socket->write(R"([{"jsonrpc":"2.0","id":1,"method":"test.echo","params":["a"]},7,)"
                      R"({"jsonrpc":"2.0","method":"test.note","params":[3]},)"
                      R"({"jsonrpc":"2.0","id":2,"method":"test.nothing"}])"
                      "\n");
        QJsonArray const answers = QJsonDocument::fromJson(answer(*socket)).array();
        QCOMPARE(answers.size(), 3);
        QCOMPARE(answers.at(0).toObject().value("result"), QJsonValue("a"));
        QCOMPARE(answers.at(1).toObject().value("error").toObject().value("code"), QJsonValue(int(RpcInvalidRequest)));
        QCOMPARE(answers.at(2).toObject().value("error").toObject().value("code"), QJsonValue(int(RpcMethodNotFound)));
        QCOMPARE(m_methods->m_notes, QVector<int>({3}));
    }

    void batch_of_notifications_has_no_answer() {
        auto socket = client();
        socket->write("[{\"jsonrpc\":\"2.0\",\"method\":\"test.note\",\"params\":[3]}]\n");
        socket->write(request(2, "test.echo", R"({"value":1})"));
        QCOMPARE(QJsonDocument::fromJson(answer(*socket)).object().value("id"), QJsonValue(2));
        QCOMPARE(m_methods->m_notes, QVector<int>({3}));
    }

    void call_is_answered_before_the_modal_dialog_it_opens_ends() {
        // The dialog's event loop runs on top of this function, so the client speaks from another thread.
        auto talk = [](QString const& path, QByteArrayList const& lines) {
            QByteArrayList answers;
            QLocalSocket socket;
            socket.connectToServer(path);
            for (QByteArray const& line : lines) {
                socket.write(line);
                while (!socket.canReadLine() && socket.waitForReadyRead(10000))
                    ;
                answers.append(socket.readLine());
            }
            return answers;
        };
        auto conversation = std::async(std::launch::async, [talk, path = path()] {
            QByteArrayList answers = talk(
                path, {request(1, "test.modal"), request(2, "ui.get", R"({"object":"modal","property":"modal"})")});
            answers += talk(path, {request(3, "test.echo", R"({"value":"from inside"})"),
                                   request(4, "ui.key", R"({"key":"Escape"})")});
            return answers;
        });
        QVERIFY(QTest::qWaitFor(
            [&] { return conversation.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 30000));
        QByteArrayList const answers = conversation.get();
        QCOMPARE(answers.size(), 4);
        QCOMPARE(result(answers.at(0)), QJsonValue(true));
        QCOMPARE(result(answers.at(1)), QJsonValue(true));
        QCOMPARE(result(answers.at(2)), QJsonValue("from inside"));
        QCOMPARE(result(answers.at(3)), QJsonValue(true));
        QTRY_VERIFY(!m_methods->m_dialog);
    }

    void several_clients_are_served_each_with_its_own_answers() {
        std::vector<std::unique_ptr<QLocalSocket>> sockets;
        for (int i = 0; i < 10; ++i)
            sockets.push_back(client());
        for (int i = 0; i < 10; ++i)
            sockets[i]->write(request(i, "test.echo", "{\"value\":" + QByteArray::number(i * i) + "}"));
        for (int i = 0; i < 10; ++i)
            QCOMPARE(result(answer(*sockets[i])), QJsonValue(i * i));
    }

    void one_client_too_many_is_closed_and_the_others_stay() {
        std::vector<std::unique_ptr<QLocalSocket>> sockets;
        for (int i = 0; i < AutomationServer::kMostClients; ++i) {
            sockets.push_back(client());
            sockets.back()->write(request(1, "test.echo", R"({"value":1})"));
            QCOMPARE(result(answer(*sockets.back())), QJsonValue(1));
        }
        auto last = client();
        QTRY_COMPARE(last->state(), QLocalSocket::UnconnectedState);
        sockets.front()->write(request(2, "test.echo", R"({"value":2})"));
        QCOMPARE(result(answer(*sockets.front())), QJsonValue(2));
    }

    void client_that_never_reads_is_closed_and_blocks_nobody() {
        int const lazy = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path().toLocal8Bit().constData(), sizeof(address.sun_path));
        QCOMPARE(::connect(lazy, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        QByteArray all;
        for (int i = 0; i < 200; ++i)
            all += request(i, "test.large");
        QTest::ignoreMessage(QtWarningMsg, "automation: a client that does not read its answers was disconnected");
        QCOMPARE(::send(lazy, all.constData(), size_t(all.size()), MSG_NOSIGNAL), ssize_t(all.size()));
        auto other = client();
        for (int i = 0; i < 50; ++i) {
            other->write(request(i, "test.echo", R"({"value":1})"));
            QCOMPARE(result(answer(*other)), QJsonValue(1));
        }
        QTRY_COMPARE(m_server->findChildren<QLocalSocket*>().size(), 1);
        ::close(lazy);
    }

    void what_a_client_sent_before_it_hung_up_is_done() {
        {
            auto socket = client();
            socket->write(request(1, "test.note", R"({"value":1})") + request(2, "test.noteLater", R"({"value":2})") +
                          "{\"jsonrpc\":\"2.0\",\"method\":\"test.note\",\"params\":[3]");
            socket->waitForBytesWritten();
            socket->disconnectFromServer();
        }
        QTRY_COMPARE(m_methods->m_notes, QVector<int>({1, 2}));
        QTRY_COMPARE(m_server->findChildren<QLocalSocket*>().size(), 0);
        QCOMPARE(m_methods->m_notes, QVector<int>({1, 2}));
    }

    void path_in_use_is_refused_and_the_first_server_stays() {
        AutomationServer second;
        QString error;
        QVERIFY(!second.listen(path(), error));
        QVERIFY2(error.contains("in use"), qPrintable(error));
        auto socket = client();
        socket->write(request(1, "test.echo", R"({"value":1})"));
        QCOMPARE(result(answer(*socket)), QJsonValue(1));
    }

    void socket_of_a_dead_server_is_replaced() {
        QString const dead = m_directory->filePath("dead");
        int const left = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, dead.toLocal8Bit().constData(), sizeof(address.sun_path));
        QCOMPARE(::bind(left, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        ::close(left);
        AutomationServer server;
        QString error;
        QVERIFY2(server.listen(dead, error), qPrintable(error));
    }

    void file_that_is_no_socket_is_left_alone() {
        QFile file(m_directory->filePath("file"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("precious");
        file.close();
        AutomationServer server;
        QString error;
        QVERIFY(!server.listen(file.fileName(), error));
        QVERIFY2(error.contains("not a socket"), qPrintable(error));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("precious"));
    }

    void path_that_cannot_be_is_told() {
        AutomationServer server;
        QString error;
        QVERIFY(!server.listen(m_directory->filePath(QString(200, 'x')), error));
        QVERIFY2(error.contains("longer than 107 bytes"), qPrintable(error));
        QVERIFY(!server.listen(m_directory->filePath("no/such/s"), error));
        QVERIFY2(error.contains("cannot open"), qPrintable(error));
    }

    void socket_is_gone_after_close() {
        auto socket = client();
        m_server->close();
        QVERIFY(!QFileInfo::exists(path()));
        QTRY_COMPARE(socket->state(), QLocalSocket::UnconnectedState);
    }
};

QTEST_MAIN(TestAutomationServer)
#include "tst_automationserver.moc"
