// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/standardcalibparam.h"

#include "simengine/params/standardcalibfile.h"
#include "support/approot.h"
#include "support/durablefile.h"

#include <QFile>

namespace sim {

namespace {

/// One line of the record file: exactly one of the three pointers is set.
struct CalibRow {
    double StandardCalibParam::*number;
    bool StandardCalibParam::*flag;
    MirrorCorrection StandardCalibParam::*mirror;
    double MirrorCorrection::*term;
};

constexpr CalibRow number(double StandardCalibParam::*field) {
    return {field, nullptr, nullptr, nullptr};
}
constexpr CalibRow flag(bool StandardCalibParam::*field) {
    return {nullptr, field, nullptr, nullptr};
}
constexpr CalibRow term(MirrorCorrection StandardCalibParam::*mirror, double MirrorCorrection::*field) {
    return {nullptr, nullptr, mirror, field};
}

// The red-light pairs come last: they joined the file after the correction terms.
constexpr CalibRow kRows[] = {
    number(&StandardCalibParam::MaxArea),
    number(&StandardCalibParam::TestSize),
    number(&StandardCalibParam::OffsetX),
    number(&StandardCalibParam::OffsetY),
    number(&StandardCalibParam::Angle),
    flag(&StandardCalibParam::Mirror1IsX),
    flag(&StandardCalibParam::Mirror1Reverse),
    flag(&StandardCalibParam::Mirror2Reverse),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::Scale),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::Barrel),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::Parallelogram),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::Trapezoid),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::Scale),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::Barrel),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::Parallelogram),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::Trapezoid),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::LightScale),
    term(&StandardCalibParam::Mirror1, &MirrorCorrection::LightOffset),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::LightScale),
    term(&StandardCalibParam::Mirror2, &MirrorCorrection::LightOffset),
};
static_assert(std::size(kRows) == 20, "the record file has 20 lines");

double get(StandardCalibParam const& record, CalibRow const& row) {
    if (row.number)
        return record.*row.number;
    if (row.flag)
        return record.*row.flag ? 1.0 : 0.0;
    return record.*row.mirror.*row.term;
}

void set(StandardCalibParam& record, CalibRow const& row, double value) {
    if (row.number)
        record.*row.number = value;
    else if (row.flag)
        record.*row.flag = value != 0.0;
    else
        record.*row.mirror.*row.term = value;
}

} // namespace

QByteArray standardCalibText(StandardCalibParam const& record) {
    QByteArray text;
    for (CalibRow const& row : kRows)
        text += QByteArray::number(get(record, row), 'g', 6) + '\n';
    return text;
}

bool loadStandardCalib(StandardCalibParam& record) {
    QFile file(tessera::rootPath(QStringLiteral("/ini/") + record.FileName));
    if (record.FileName.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    StandardCalibParam read = record;
    for (CalibRow const& row : kRows) {
        bool ok = false;
        double const value = file.readLine().trimmed().toDouble(&ok);
        if (!ok || !(value >= -1e9 && value <= 1e9))
            return false;
        set(read, row, value);
    }
    record = read;
    return true;
}

} // namespace sim

bool StandardCalibParam::Save() const {
    if (FileName.isEmpty())
        return false;
    QString const path = tessera::rootPath(QStringLiteral("/ini/") + FileName);
    return tessera::writeFileKeepingTail(path, sim::standardCalibText(*this)).ok();
}
