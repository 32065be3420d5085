// SPDX-License-Identifier: MIT
#include "remote/hostcommand.h"

#include "remote/laserfrequency.h"

#include <QByteArray>
#include <QStringList>
#include <charconv>
#include <cmath>
#include <iterator>

namespace tessera {

namespace {

/// In the order of the enumeration.
QString const kPrefixes[] = {QStringLiteral("_VZTest("), QStringLiteral("_VZSetOffset("),
                             QStringLiteral("_VZGetLayerParas("), QStringLiteral("_VZMarkStop(")};

constexpr char kStop[] = "_VZMarkStop()";
constexpr QLatin1Char kFieldEnd(',');
constexpr QLatin1Char kRecordEnd('#');
constexpr QLatin1Char kPartEnd('%');
constexpr int kRecordFields = 7;
/// The last two fields of a record are sent by every host and mean nothing here.
constexpr int kUsedFields = 5;
constexpr int kLayerFields = 2;
constexpr double kSevenDigits = 1000000.0;

/// What stands between the first "(" and the first ")"; false when that is nothing.
bool cutArguments(QString const& frame, QString& arguments) {
    int const open = frame.indexOf(QLatin1Char('('));
    int const close = frame.indexOf(QLatin1Char(')'));
    if (open < 0 || close < 0 || open + 1 >= close)
        return false;
    arguments = frame.mid(open + 1, close - open - 1);
    return true;
}

/// "nan" and "inf" would pass for numbers and leave no place to mark at.
double number(QStringRef const& text) {
    double const value = text.toDouble();
    return std::isfinite(value) ? value : 0.0;
}

bool readRecord(QString const& text, CCDBufdata& record) {
    QVector<QStringRef> const fields = text.splitRef(kFieldEnd);
    if (fields.size() != kRecordFields)
        return false;
    for (int i = 0; i < kUsedFields; ++i)
        record.Values[std::size_t(i)] = number(fields.at(i));
    return true;
}

/// Adds one value to the text; a host may ask thousands of times a second, so that none is a string of its own.
using AddValue = void (*)(QByteArray& text, LayerData const& layer, MarkCardType laser);

void addWhole(QByteArray& text, int value) {
    char digits[16];
    text.append(digits, int(std::to_chars(digits, digits + sizeof digits, value).ptr - digits));
}

/// Six digits. Whole numbers, which most values are, have a short way to the same text.
void addDecimal(QByteArray& text, double value) {
    const int whole = std::fabs(value) < kSevenDigits ? int(value) : 0;
    if (whole != 0 && double(whole) == value)
        addWhole(text, whole);
    else
        text.append(QByteArray::number(value, 'g', 6));
}

template<int LayerData::*Member>
void whole(QByteArray& text, LayerData const& layer, MarkCardType) {
    addWhole(text, layer.*Member);
}

template<double LayerData::*Member>
void real(QByteArray& text, LayerData const& layer, MarkCardType) {
    addDecimal(text, layer.*Member);
}

void frequency(QByteArray& text, LayerData const& layer, MarkCardType laser) {
    addDecimal(text, FrequencyInHertz(layer, laser));
}

/// In whole ms.
void pointTime(QByteArray& text, LayerData const& layer, MarkCardType) {
    addWhole(text, layer.PointTime / 1000);
}

void usesDefault(QByteArray& text, LayerData const& layer, MarkCardType) {
    addWhole(text, int(layer.UseDefault));
}

/// The end delay, which stands before the corner delay in the record, is left out on purpose.
constexpr AddValue kLayerValues[] = {
    whole<&LayerData::MarkCnt>,
    real<&LayerData::MarkSpeed>,
    real<&LayerData::RedSpeed>,
    real<&LayerData::Power>,
    whole<&LayerData::WaveNumber>,
    frequency,
    real<&LayerData::PWM>,
    whole<&LayerData::OpenLaserDelay>,
    whole<&LayerData::CloseLaserDelay>,
    whole<&LayerData::TurnDelay>,
    real<&LayerData::JumpSpeed>,
    whole<&LayerData::MaxJumpDelay>,
    whole<&LayerData::MarkDelay>,
    whole<&LayerData::MinJumpDelay>,
    pointTime,
    real<&LayerData::MinJumpDelayDist>,
    real<&LayerData::MaxJumpDelayDist>,
    usesDefault,
};

} // namespace

QString const& HostPrefix(HostOrder order) {
    return kPrefixes[std::size_t(order)];
}

HostOrderList HostOrders(QString const& frame) {
    HostOrderList orders;
    for (std::size_t i = 0; i < std::size(kPrefixes); ++i) {
        if (frame.indexOf(kPrefixes[i]) >= 0)
            orders.append(HostOrder(i));
    }
    return orders;
}

bool IsHostStop(QString const& frame) {
    return frame.indexOf(QLatin1String(kStop)) >= 0;
}

QString HostReply(HostOrder order, bool good, QString const& text) {
    QString reply;
    reply.reserve(HostPrefix(order).size() + text.size() + 4);
    return reply.append(HostPrefix(order))
        .append(QLatin1String(good ? "0," : "1,"))
        .append(text)
        .append(QLatin1String(");"));
}

QString HostReply(HostOrder order, bool good, char const* text) {
    return HostReply(order, good, QString::fromUtf8(text));
}

HostOffsets ReadHostOffsets(QString const& frame) {
    HostOffsets offsets;
    QString arguments;
    if (!cutArguments(frame, arguments)) {
        offsets.fault = kHostBadFormat;
        return offsets;
    }
    QStringList const parts = arguments.split(kPartEnd);
    if (parts.isEmpty()) {
        offsets.fault = kHostNoData;
        return offsets;
    }
    offsets.document = parts.first().toInt();
    if (parts.size() < 2)
        return offsets;
    for (QString const& text : parts.at(1).split(kRecordEnd)) {
        CCDBufdata record;
        if (!readRecord(text, record)) {
            offsets.records.clear();
            offsets.fault = kHostBadLength;
            return offsets;
        }
        offsets.records.append(record);
    }
    return offsets;
}

HostLayer ReadHostLayer(QString const& frame) {
    HostLayer wanted;
    QString arguments;
    if (!cutArguments(frame, arguments)) {
        wanted.fault = kHostBadFormat;
        return wanted;
    }
    QVector<QStringRef> const fields = arguments.splitRef(kFieldEnd);
    if (fields.size() < kLayerFields) {
        wanted.fault = kHostBadLength;
        return wanted;
    }
    wanted.document = fields.at(0).toInt();
    wanted.layer = fields.at(1).toUInt();
    return wanted;
}

QString HostLayerValues(LayerData const& layer, MarkCardType laser) {
    QByteArray values;
    values.reserve(200);
    for (AddValue const add : kLayerValues) {
        if (!values.isEmpty())
            values.append(',');
        add(values, layer, laser);
    }
    return QString::fromLatin1(values);
}

} // namespace tessera
