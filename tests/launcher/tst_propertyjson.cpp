// SPDX-License-Identifier: MIT
#include "automation/propertyjson.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QtTest>

using tessera::PropertyJson;

class Sample : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool flag MEMBER m_flag)
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(unsigned int word MEMBER m_word)
    Q_PROPERTY(double real MEMBER m_real)
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(QStringList list MEMBER m_list)
    Q_PROPERTY(QRect rect MEMBER m_rect)
    Q_PROPERTY(QPointF point MEMBER m_point)
    Q_PROPERTY(QSize size MEMBER m_size)
    Q_PROPERTY(QColor color MEMBER m_color)
    Q_PROPERTY(Qt::CheckState state MEMBER m_state)
    Q_PROPERTY(Qt::Alignment align MEMBER m_align)
    Q_PROPERTY(QDateTime time MEMBER m_time)
    Q_PROPERTY(QVariantMap map MEMBER m_map)
    Q_PROPERTY(int fixed MEMBER m_number CONSTANT)
public:
    bool m_flag = false;
    int m_number = 0;
    unsigned int m_word = 0;
    double m_real = 0;
    QString m_text;
    QStringList m_list;
    QRect m_rect;
    QPointF m_point;
    QSize m_size;
    QColor m_color;
    Qt::CheckState m_state = Qt::Unchecked;
    Qt::Alignment m_align;
    QDateTime m_time;
    QVariantMap m_map;
};

class TestPropertyJson : public QObject {
    Q_OBJECT

    static QJsonValue value(QByteArray const& text) { return QJsonDocument::fromJson("[" + text + "]").array().at(0); }

private slots:
    void set_value_comes_back_data() {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QByteArray>("json");
        auto row = [](char const* property, char const* json) {
            QTest::addRow("%s %s", property, json) << QString::fromLatin1(property) << QByteArray(json);
        };
        row("flag", "true");
        row("number", "-2147483648");
        row("word", "4294967295");
        row("real", "0.125");
        row("text", "\"\xe8\xbf\x90\xe8\xa1\x8c\"");
        row("text", "\"\"");
        row("list", R"(["a","b"])");
        row("rect", R"({"x":1,"y":2,"width":3,"height":4})");
        row("point", R"({"x":1.5,"y":-2.5})");
        row("size", R"({"width":30,"height":40})");
        row("color", "\"#ff8000\"");
        row("state", "\"PartiallyChecked\"");
        row("align", "\"AlignRight|AlignTop\"");
        row("time", "\"2024-02-29T12:34:56.789\"");
    }
    void set_value_comes_back() {
        QFETCH(QString, property);
        QFETCH(QByteArray, json);
        Sample sample;
        QVariant variant;
        QString error;
        QVERIFY2(PropertyJson::prepare(&sample, property, value(json), variant, error), qPrintable(error));
        QVERIFY(sample.setProperty(property.toLatin1().constData(), variant));
        QJsonValue back;
        QVERIFY2(PropertyJson::read(&sample, property, back, error), qPrintable(error));
        if (property == QLatin1String("align"))
            QCOMPARE(int(sample.m_align), int(Qt::AlignRight | Qt::AlignTop));
        else
            QCOMPARE(back, value(json));
    }

    void value_of_another_kind_is_refused_data() {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QByteArray>("json");
        auto row = [](char const* property, char const* json) {
            QTest::addRow("%s %s", property, json) << QString::fromLatin1(property) << QByteArray(json);
        };
        row("flag", "1");
        row("flag", "\"true\"");
        row("number", "\"5\"");
        row("number", "1.5");
        row("number", "2147483648");
        row("number", "null");
        row("word", "-1");
        row("word", "4294967296");
        row("real", "\"1\"");
        row("text", "5");
        row("list", "\"a\"");
        row("rect", R"({"x":1,"y":2,"width":3})");
        row("rect", R"({"x":1,"y":2,"width":3,"height":4,"z":5})");
        row("point", "[1,2]");
        row("color", "\"no colour\"");
        row("state", "\"Half\"");
        row("state", "7");
        row("time", "\"yesterday\"");
        row("fixed", "3");
        row("missing", "3");
    }
    void value_of_another_kind_is_refused() {
        QFETCH(QString, property);
        QFETCH(QByteArray, json);
        Sample sample;
        QVariant variant;
        QString error;
        QVERIFY(!PropertyJson::prepare(&sample, property, value(json), variant, error));
        QVERIFY(error.contains(property));
    }

    void enumeration_is_taken_by_number_too() {
        Sample sample;
        QVariant variant;
        QString error;
        QVERIFY(PropertyJson::prepare(&sample, "state", 2, variant, error));
        QVERIFY(sample.setProperty("state", variant));
        QCOMPARE(sample.m_state, Qt::Checked);
    }

    void value_without_json_form_is_an_error() {
        Sample sample;
        QJsonValue json;
        QString error;
        QVERIFY(!PropertyJson::read(&sample, "map", json, error));
        QVERIFY2(error.contains("QVariantMap"), qPrintable(error));
        QVERIFY(!PropertyJson::read(&sample, "nothing", json, error));
        QCOMPARE(error, QStringLiteral("no property \"nothing\""));
    }

    void dynamic_property_is_read() {
        Sample sample;
        sample.setProperty("extra", 7);
        QJsonValue json;
        QString error;
        QVERIFY(PropertyJson::read(&sample, "extra", json, error));
        QCOMPARE(json, QJsonValue(7));
    }

    void properties_of_widgets_are_read_and_set() {
        QDoubleSpinBox box;
        box.setMaximum(1000);
        QVariant variant;
        QString error;
        QVERIFY(PropertyJson::prepare(&box, "value", 12.5, variant, error));
        QVERIFY(box.setProperty("value", variant));
        QCOMPARE(box.value(), 12.5);
        QVERIFY(!PropertyJson::prepare(&box, "cleanText", "1", variant, error));
        QLabel label("text");
        QJsonValue json;
        QVERIFY(PropertyJson::read(&label, "text", json, error));
        QCOMPARE(json, QJsonValue("text"));
        QVERIFY(PropertyJson::read(&label, "visible", json, error));
        QCOMPARE(json, QJsonValue(false));
    }
};

QTEST_MAIN(TestPropertyJson)
#include "tst_propertyjson.moc"
