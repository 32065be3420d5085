// SPDX-License-Identifier: MIT
#include "automation/jsonrpc.h"

#include <QJsonDocument>
#include <QtTest>

using namespace tessera;

class TestJsonRpc : public QObject {
    Q_OBJECT
private slots:
    void well_formed_calls_are_read_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("method");
        QTest::addColumn<bool>("notification");
        QTest::newRow("no params") << QByteArray(R"({"jsonrpc":"2.0","id":1,"method":"a.b"})") << "a.b" << false;
        QTest::newRow("object") << QByteArray(R"({"jsonrpc":"2.0","id":"x","method":"m","params":{"a":1}})") << "m"
                                << false;
        QTest::newRow("array") << QByteArray(R"({"jsonrpc":"2.0","id":1.5,"method":"m","params":[1]})") << "m" << false;
        QTest::newRow("null id") << QByteArray(R"({"jsonrpc":"2.0","id":null,"method":"m"})") << "m" << false;
        QTest::newRow("notification") << QByteArray(R"({"jsonrpc":"2.0","method":"m"})") << "m" << true;
        QTest::newRow("carriage return") << QByteArray("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"m\"}\r") << "m"
                                         << false;
        QTest::newRow("Chinese") << QByteArray(R"({"jsonrpc":"2.0","id":1,"method":"运行"})") << QStringLiteral("运行")
                                 << false;
    }
    void well_formed_calls_are_read() {
        QFETCH(QByteArray, line);
        RpcLine const parsed = JsonRpc::parse(line);
        QVERIFY(!parsed.batch);
        QCOMPARE(parsed.items.size(), 1);
        QVERIFY(!parsed.items.first().error);
        QTEST(parsed.items.first().request.method, "method");
        QTEST(parsed.items.first().request.isNotification(), "notification");
    }

    void malformed_lines_are_answered_with_their_code_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("id");
        auto row = [](char const* name, QByteArray const& line, int code, QByteArray const& id) {
            QTest::newRow(name) << line << code << id;
        };
        row("no JSON", "hello", -32700, "null");
        row("cut off", R"({"jsonrpc":"2.0","id":1,"method":"m")", -32700, "null");
        row("two objects", R"({"a":1}{"a":1})", -32700, "null");
        row("bad UTF-8", QByteArray("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xff\xfe\"}"), -32700, "null");
        row("nul byte", QByteArray("{\"a\":\0}", 7), -32700, "null");
        row("very deep", QByteArray(5000, '['), -32700, "null");
        row("number", "12", -32700, "null");
        row("empty object", "{}", -32600, "null");
        row("empty batch", "[]", -32600, "null");
        row("no version", R"({"id":1,"method":"m"})", -32600, "1");
        row("wrong version", R"({"jsonrpc":"1.0","id":1,"method":"m"})", -32600, "1");
        row("version number", R"({"jsonrpc":2.0,"id":1,"method":"m"})", -32600, "1");
        row("no method", R"({"jsonrpc":"2.0","id":"k"})", -32600, "\"k\"");
        row("method number", R"({"jsonrpc":"2.0","id":7,"method":7})", -32600, "7");
        row("method empty", R"({"jsonrpc":"2.0","id":7,"method":""})", -32600, "7");
        row("params text", R"({"jsonrpc":"2.0","id":7,"method":"m","params":"x"})", -32600, "7");
        row("params null", R"({"jsonrpc":"2.0","id":7,"method":"m","params":null})", -32600, "7");
        row("id object", R"({"jsonrpc":"2.0","id":{},"method":"m"})", -32600, "null");
        row("id bool", R"({"jsonrpc":"2.0","id":true,"method":"m"})", -32600, "null");
    }
    void malformed_lines_are_answered_with_their_code() {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, id);
        RpcLine const parsed = JsonRpc::parse(line);
        QVERIFY(!parsed.batch);
        QCOMPARE(parsed.items.size(), 1);
        QVERIFY(parsed.items.first().error.has_value());
        QTEST(parsed.items.first().error->code, "code");
        QVERIFY(!parsed.items.first().error->message.isEmpty());
        QByteArray const answer =
            JsonRpc::line(JsonRpc::errorAnswer(parsed.items.first().request.id, *parsed.items.first().error));
        QVERIFY2(answer.contains("\"id\":" + id + ","), answer.constData());
    }

    void batch_gives_every_entry_in_its_order() {
        RpcLine const parsed =
            JsonRpc::parse(R"([{"jsonrpc":"2.0","id":1,"method":"a"},5,{"jsonrpc":"2.0","method":"b"}])");
        QVERIFY(parsed.batch);
        QCOMPARE(parsed.items.size(), 3);
        QCOMPARE(parsed.items.at(0).request.method, QStringLiteral("a"));
        QCOMPARE(parsed.items.at(1).error->code, int(RpcInvalidRequest));
        QVERIFY(parsed.items.at(2).request.isNotification());
    }

    void batch_of_too_many_calls_is_one_error() {
        QByteArray line = "[";
        for (int i = 0; i <= kMostBatchedCalls; ++i)
            line += QByteArray(i ? "," : "") + R"({"jsonrpc":"2.0","id":1,"method":"a"})";
        RpcLine const parsed = JsonRpc::parse(line + "]");
        QVERIFY(!parsed.batch);
        QCOMPARE(parsed.items.size(), 1);
        QCOMPARE(parsed.items.first().error->code, int(RpcInvalidRequest));
    }

    void answers_are_one_line_each() {
        QByteArray const result = JsonRpc::line(JsonRpc::resultAnswer(3, QStringLiteral("two\nlines")));
        QCOMPARE(result, QByteArray("{\"id\":3,\"jsonrpc\":\"2.0\",\"result\":\"two\\nlines\"}\n"));
        QByteArray const nothing = JsonRpc::line(JsonRpc::resultAnswer(QStringLiteral("a"), QJsonValue::Undefined));
        QCOMPARE(nothing, QByteArray("{\"id\":\"a\",\"jsonrpc\":\"2.0\",\"result\":null}\n"));
        RpcError const error{RpcObjectNotFound, QStringLiteral("no"), QJsonArray{1}};
        QCOMPARE(
            JsonRpc::line(JsonRpc::errorAnswer(QJsonValue(QJsonValue::Undefined), error)),
            QByteArray(
                "{\"error\":{\"code\":-32001,\"data\":[1],\"message\":\"no\"},\"id\":null,\"jsonrpc\":\"2.0\"}\n"));
    }
};

QTEST_GUILESS_MAIN(TestJsonRpc)
#include "tst_jsonrpc.moc"
