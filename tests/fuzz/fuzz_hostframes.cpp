// SPDX-License-Identifier: MIT
// What a host sends, in any pieces, through the cutting of frames and the reading of their arguments. The first byte of
// an input says how it is cut into reads. Beside the faults that the sanitizers find it checks that
//   - frames come out as a plain split of the text gives them, whatever the pieces,
//   - arguments are either refused with a text or good: records without a gap, numbers finite, a refusal without
//   records.
#include "remote/hostcommand.h"
#include "remote/hostframes.h"

#include <QByteArray>
#include <QStringList>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tessera;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

void checkFrame(QString const& frame) {
    const HostOffsets offsets = ReadHostOffsets(frame);
    require(!offsets.fault || offsets.records.isEmpty());
    for (CCDBufdata const& record : offsets.records) {
        for (double value : record.Values)
            require(std::isfinite(value));
        require(record.Valid && !record.Used && record.Extra.empty());
    }
    const HostLayer layer = ReadHostLayer(frame);
    require(!layer.fault || (layer.document == 0 && layer.layer == 0));
    const HostOrderList orders = HostOrders(frame);
    for (int i = 1; i < orders.size(); ++i)
        require(orders.at(i - 1) < orders.at(i));
    require(!IsHostStop(frame) || orders.contains(HostOrder::MarkStop));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0)
        return 0;
    int const step = data[0] + 1;
    const QByteArray input(reinterpret_cast<char const*>(data) + 1, int(size) - 1);
    HostFrames frames;
    QString text;
    QStringList taken;
    for (int at = 0; at < input.size(); at += step) {
        const QString read = HostFrames::Text(input.mid(at, step));
        text += read;
        frames.Append(read);
        for (QString frame; frames.Next(frame);)
            taken.append(frame);
        require(!frames.HasFrame());
        require(frames.DropOverlong() == 0);
    }
    QStringList expected = text.split(QLatin1Char(';'));
    require(frames.Rest() == expected.takeLast());
    require(taken == expected);
    for (QString const& frame : qAsConst(taken))
        checkFrame(frame);
    return 0;
}
