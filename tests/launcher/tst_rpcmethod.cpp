// SPDX-License-Identifier: MIT
#include "automation/rpcmethod.h"

#include <QJsonDocument>
#include <QtTest>

using namespace tessera;

namespace {

constexpr RpcParameters kParameters{{{"text", RpcType::Text, true},
                                     {"index", RpcType::Index, false},
                                     {"word", RpcType::Word, false},
                                     {"number", RpcType::Number, false},
                                     {"on", RpcType::Switch, false},
                                     {"level", RpcType::Level, false},
                                     {"any", RpcType::Any, false},
                                     {"count", RpcType::Count, false}}};

QJsonValue json(QByteArray const& text) {
    QJsonDocument const document = QJsonDocument::fromJson(text);
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

} // namespace

class TestRpcMethod : public QObject {
    Q_OBJECT
private slots:
    void fitting_parameters_pass_data() {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QByteArray>("taken");
        QTest::newRow("required alone") << QByteArray(R"({"text":"a"})") << QByteArray(R"({"text":"a"})");
        QTest::newRow("limits") << QByteArray(R"({"text":"a","index":2147483647,"word":4294967295})")
                                << QByteArray(R"({"index":2147483647,"text":"a","word":4294967295})");
        QTest::newRow("largest count") << QByteArray(R"({"text":"a","count":9007199254740991})")
                                       << QByteArray(R"({"count":9007199254740991,"text":"a"})");
        QTest::newRow("level 1") << QByteArray(R"({"text":"a","level":1})")
                                 << QByteArray(R"({"level":true,"text":"a"})");
        QTest::newRow("level 0") << QByteArray(R"({"text":"a","level":0})")
                                 << QByteArray(R"({"level":false,"text":"a"})");
        QTest::newRow("level bool") << QByteArray(R"({"text":"a","level":true})")
                                    << QByteArray(R"({"level":true,"text":"a"})");
        QTest::newRow("any null") << QByteArray(R"({"text":"a","any":null})")
                                  << QByteArray(R"({"any":null,"text":"a"})");
        QTest::newRow("by position") << QByteArray(R"(["a",3])") << QByteArray(R"({"index":3,"text":"a"})");
    }
    void fitting_parameters_pass() {
        QFETCH(QByteArray, given);
        CheckedParams const checked = CheckedParams::check(kParameters, json(given));
        QVERIFY2(!checked.error, checked.error ? qPrintable(checked.error->message) : "");
        QTEST(QJsonDocument(checked.values).toJson(QJsonDocument::Compact), "taken");
    }

    void other_parameters_are_refused_data() {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QString>("message");
        auto row = [](char const* name, char const* given, char const* message) {
            QTest::newRow(name) << QByteArray(given) << QString::fromLatin1(message);
        };
        row("missing", "{}", "parameter \"text\" is missing");
        row("unknown", R"({"text":"a","x":1})",
            "unknown parameter \"x\"; taken: text, index, word, number, on, level, any, count");
        row("too many", R"([1,2,3,4,5,6,7,8,9])", "9 parameters given, at most 8 taken");
        row("count fraction", R"({"text":"a","count":0.5})", "\"count\" is a whole number from 0 to 9007199254740991");
        row("count beyond exact numbers", R"({"text":"a","count":9007199254740994})",
            "\"count\" is a whole number from 0 to 9007199254740991");
        row("text empty", R"({"text":""})", "\"text\" is a text that is not empty");
        row("text number", R"({"text":1})", "\"text\" is a text that is not empty");
        row("index negative", R"({"text":"a","index":-1})", "\"index\" is a whole number from 0 to 2147483647");
        row("index fraction", R"({"text":"a","index":1.5})", "\"index\" is a whole number from 0 to 2147483647");
        row("index too large", R"({"text":"a","index":2147483648})",
            "\"index\" is a whole number from 0 to 2147483647");
        row("word too large", R"({"text":"a","word":4294967296})", "\"word\" is a whole number from 0 to 4294967295");
        row("number text", R"({"text":"a","number":"1"})", "\"number\" is a number");
        row("switch number", R"({"text":"a","on":1})", "\"on\" is true or false");
        row("level two", R"({"text":"a","level":2})", "\"level\" is true, false, 0 or 1");
    }
    void other_parameters_are_refused() {
        QFETCH(QByteArray, given);
        CheckedParams const checked = CheckedParams::check(kParameters, json(given));
        QVERIFY(checked.error.has_value());
        QCOMPARE(checked.error->code, int(RpcInvalidParams));
        QTEST(checked.error->message, "message");
    }

    void undefined_params_are_none() {
        CheckedParams const checked = CheckedParams::check(RpcParameters{}, QJsonValue(QJsonValue::Undefined));
        QVERIFY(!checked.error);
        QVERIFY(checked.values.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRpcMethod)
#include "tst_rpcmethod.moc"
