// SPDX-License-Identifier: MIT
#include "automation/propertyjson.h"

#include "automation/hiddentext.h"

#include <QColor>
#include <QDate>
#include <QDateTime>
#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QKeySequence>
#include <QMetaProperty>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringList>
#include <QTime>
#include <QUrl>
#include <cmath>

namespace tessera {

namespace {

/// Number fields of the geometric types, in the order of their constructors.
struct GeometryType {
    int type;
    char const* fields[4];
};
constexpr GeometryType kGeometryTypes[] = {
    {QMetaType::QPoint, {"x", "y", nullptr, nullptr}},
    {QMetaType::QPointF, {"x", "y", nullptr, nullptr}},
    {QMetaType::QSize, {"width", "height", nullptr, nullptr}},
    {QMetaType::QSizeF, {"width", "height", nullptr, nullptr}},
    {QMetaType::QRect, {"x", "y", "width", "height"}},
    {QMetaType::QRectF, {"x", "y", "width", "height"}},
};

GeometryType const* geometryType(int type) {
    for (GeometryType const& entry : kGeometryTypes) {
        if (entry.type == type)
            return &entry;
    }
    return nullptr;
}

QRectF geometryValue(QVariant const& value) {
    switch (value.userType()) {
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        return {value.toPointF(), QSizeF()};
    case QMetaType::QSize:
    case QMetaType::QSizeF: {
        QSizeF const size = value.toSizeF();
        return {QPointF(size.width(), size.height()), QSizeF()};
    }
    default:
        return value.toRectF();
    }
}

QJsonObject geometryToJson(GeometryType const& entry, QVariant const& value) {
    QRectF const rect = geometryValue(value);
    double const numbers[4] = {rect.x(), rect.y(), rect.width(), rect.height()};
    QJsonObject object;
    for (int i = 0; i < 4 && entry.fields[i]; ++i)
        object.insert(QLatin1String(entry.fields[i]), numbers[i]);
    return object;
}

bool geometryFromJson(GeometryType const& entry, QJsonValue const& given, QVariant& value) {
    QJsonObject const object = given.toObject();
    double numbers[4] = {};
    int count = 0;
    for (; count < 4 && entry.fields[count]; ++count) {
        QJsonValue const number = object.value(QLatin1String(entry.fields[count]));
        if (!number.isDouble())
            return false;
        numbers[count] = number.toDouble();
    }
    if (object.size() != count)
        return false;
    switch (entry.type) {
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        value = QPointF(numbers[0], numbers[1]);
        break;
    case QMetaType::QSize:
    case QMetaType::QSizeF:
        value = QSizeF(numbers[0], numbers[1]);
        break;
    default:
        value = QRectF(numbers[0], numbers[1], numbers[2], numbers[3]);
    }
    return value.convert(entry.type);
}

bool variantToJson(QVariant const& value, QJsonValue& json) {
    if (GeometryType const* geometry = geometryType(value.userType())) {
        json = geometryToJson(*geometry, value);
        return true;
    }
    switch (value.userType()) {
    case QMetaType::Bool:
        json = value.toBool();
        return true;
    case QMetaType::Float:
    case QMetaType::Double:
        json = value.toDouble();
        return true;
    case QMetaType::QStringList:
        json = QJsonArray::fromStringList(value.toStringList());
        return true;
    case QMetaType::QDate:
        json = value.toDate().toString(Qt::ISODate);
        return true;
    case QMetaType::QTime:
        json = value.toTime().toString(Qt::ISODateWithMs);
        return true;
    case QMetaType::QDateTime:
        json = value.toDateTime().toString(Qt::ISODateWithMs);
        return true;
    case QMetaType::QColor: {
        QColor const color = value.value<QColor>();
        json = color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
        return true;
    }
    case QMetaType::QFont:
    case QMetaType::QKeySequence:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
    case QMetaType::QChar:
        json = value.toString();
        return true;
    default:
        break;
    }
    if (!value.isValid() || !value.canConvert<double>())
        return false;
    json = value.toDouble();
    return true;
}

QString enumText(QMetaEnum const& meta, int value) {
    if (meta.isFlag())
        return QString::fromLatin1(meta.valueToKeys(value));
    char const* key = meta.valueToKey(value);
    return key ? QString::fromLatin1(key) : QString();
}

bool enumFromJson(QMetaEnum const& meta, QJsonValue const& given, QVariant& value) {
    if (given.isDouble()) {
        int const number = given.toInt(-1);
        if (QJsonValue(number) != given || (!meta.isFlag() && !meta.valueToKey(number)))
            return false;
        value = number;
        return true;
    }
    bool known = false;
    QByteArray const key = given.toString().toLatin1();
    int const number =
        meta.isFlag() ? meta.keysToValue(key.constData(), &known) : meta.keyToValue(key.constData(), &known);
    value = number;
    return given.isString() && known;
}

/// Whether a JSON value of this kind may become the type at all: QVariant alone would take "abc" for false.
bool kindFits(QJsonValue const& given, int type) {
    switch (type) {
    case QMetaType::Bool:
        return given.isBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
        return given.isDouble() && std::floor(given.toDouble()) == given.toDouble();
    case QMetaType::Double:
    case QMetaType::Float:
        return given.isDouble() && std::isfinite(given.toDouble());
    case QMetaType::QStringList:
        return given.isArray();
    default:
        return given.isString();
    }
}

/// The whole numbers that an int property takes without being cut.
bool inRange(QJsonValue const& given, QVariant const& converted) {
    return !given.isDouble() || converted.toDouble() == given.toDouble() || converted.userType() == QMetaType::Float;
}

bool isValidText(QVariant const& value) {
    switch (value.userType()) {
    case QMetaType::QColor:
        return value.value<QColor>().isValid();
    case QMetaType::QDate:
        return value.toDate().isValid();
    case QMetaType::QTime:
        return value.toTime().isValid();
    case QMetaType::QDateTime:
        return value.toDateTime().isValid();
    default:
        return true;
    }
}

QMetaProperty metaProperty(QObject const* object, QString const& property) {
    QMetaObject const* meta = object->metaObject();
    return meta->property(meta->indexOfProperty(property.toLatin1().constData()));
}

} // namespace

bool PropertyJson::read(QObject const* object, QString const& property, QJsonValue& value, QString& error) {
    QMetaProperty const meta = metaProperty(object, property);
    QByteArray const name = property.toLatin1();
    if (!meta.isValid() && !object->dynamicPropertyNames().contains(name)) {
        error = QStringLiteral("no property \"%1\"").arg(property);
        return false;
    }
    QVariant const variant = HiddenText::read(object, name.constData());
    if (meta.isValid() && meta.isEnumType()) {
        value = enumText(meta.enumerator(), variant.toInt());
        return true;
    }
    if (variantToJson(variant, value))
        return true;
    error = QStringLiteral("the property \"%1\" is of the type %2, which has no JSON form")
                .arg(property, QString::fromLatin1(variant.typeName()));
    return false;
}

bool PropertyJson::prepare(QObject const* object, QString const& property, QJsonValue const& given, QVariant& value,
                           QString& error) {
    QMetaProperty const meta = metaProperty(object, property);
    if (!meta.isValid()) {
        error = QStringLiteral("no property \"%1\"").arg(property);
        return false;
    }
    if (!meta.isWritable() || HiddenText::isGuard(object, meta.name())) {
        error = QStringLiteral("the property \"%1\" is read-only").arg(property);
        return false;
    }
    bool fits = false;
    if (meta.isEnumType()) {
        fits = enumFromJson(meta.enumerator(), given, value);
    } else if (GeometryType const* geometry = geometryType(meta.userType())) {
        fits = geometryFromJson(*geometry, given, value);
    } else if (kindFits(given, meta.userType())) {
        value = given.toVariant();
        fits = value.convert(meta.userType()) && inRange(given, value) && isValidText(value);
    }
    if (!fits)
        error = QStringLiteral("the value does not fit the property \"%1\" of the type %2")
                    .arg(property, QString::fromLatin1(meta.typeName()));
    return fits;
}

} // namespace tessera
