// SPDX-License-Identifier: MIT
#include "remote/hostcommand.h"

#include <QStringList>
#include <cmath>

namespace tessera {

namespace {

struct PrefixRow {
    HostOrder order;
    char const* prefix;
};

constexpr PrefixRow kPrefixes[] = {
    {HostOrder::Test, "_VZTest("},
    {HostOrder::SetOffset, "_VZSetOffset("},
    {HostOrder::GetLayerParas, "_VZGetLayerParas("},
    {HostOrder::MarkStop, "_VZMarkStop("},
};

constexpr char kStop[] = "_VZMarkStop()";
constexpr QLatin1Char kFieldEnd(',');
constexpr QLatin1Char kRecordEnd('#');
constexpr QLatin1Char kPartEnd('%');
constexpr int kRecordFields = 7;
/// The last two fields of a record are sent by every host and mean nothing here.
constexpr int kUsedFields = 5;
constexpr int kLayerFields = 2;

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
double number(QString const& text) {
    double const value = text.toDouble();
    return std::isfinite(value) ? value : 0.0;
}

bool readRecord(QString const& text, CCDBufdata& record) {
    QStringList const fields = text.split(kFieldEnd);
    if (fields.size() != kRecordFields)
        return false;
    for (int i = 0; i < kUsedFields; ++i)
        record.Values[std::size_t(i)] = number(fields.at(i));
    return true;
}

using ValueText = QString (*)(LayerData const& layer, MarkCardType laser);

QString decimal(double value) {
    return QString::number(value, 'g', 6);
}

template<int LayerData::*Member>
QString whole(LayerData const& layer, MarkCardType) {
    return QString::number(layer.*Member);
}

template<double LayerData::*Member>
QString real(LayerData const& layer, MarkCardType) {
    return decimal(layer.*Member);
}

/// In Hz: these laser types keep it in kHz.
QString frequency(LayerData const& layer, MarkCardType laser) {
    bool const isKilo = laser == MarkCardFilber || laser == MarkCardSPI || laser == MarkCardEP;
    return decimal(isKilo ? layer.Fre * 1000 : layer.Fre);
}

/// In whole ms.
QString pointTime(LayerData const& layer, MarkCardType) {
    return QString::number(layer.PointTime / 1000);
}

QString usesDefault(LayerData const& layer, MarkCardType) {
    return QString::number(int(layer.UseDefault));
}

/// The end delay, which stands before the corner delay in the record, is left out on purpose.
constexpr ValueText kLayerValues[] = {
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

QString HostPrefix(HostOrder order) {
    for (PrefixRow const& row : kPrefixes) {
        if (row.order == order)
            return QString::fromLatin1(row.prefix);
    }
    return QString();
}

QVector<HostOrder> HostOrders(QString const& frame) {
    QVector<HostOrder> orders;
    for (PrefixRow const& row : kPrefixes) {
        if (frame.indexOf(QLatin1String(row.prefix)) >= 0)
            orders.append(row.order);
    }
    return orders;
}

bool IsHostStop(QString const& frame) {
    return frame.indexOf(QLatin1String(kStop)) >= 0;
}

QString HostReply(HostOrder order, bool good, QString const& text) {
    return HostPrefix(order) + QLatin1String(good ? "0," : "1,") + text + QLatin1String(");");
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
    QStringList const fields = arguments.split(kFieldEnd);
    if (fields.size() < kLayerFields) {
        wanted.fault = kHostBadLength;
        return wanted;
    }
    wanted.document = fields.at(0).toInt();
    wanted.layer = fields.at(1).toUInt();
    return wanted;
}

QString HostLayerValues(LayerData const& layer, MarkCardType laser) {
    QString values;
    for (ValueText const text : kLayerValues) {
        if (!values.isEmpty())
            values += kFieldEnd;
        values += text(layer, laser);
    }
    return values;
}

} // namespace tessera
