// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/measurement.h"

#include "simengine/card/crosses.h"
#include "support/durablefile.h"

#include <QFileInfo>

namespace sim {

namespace {

SimOutcome nothingToMeasure(std::string& error, char const* reason) {
    error = reason;
    return SimOutcome::NoFigures;
}

void addInstrumentNoise(CardCore& card, std::vector<Point>& places) {
    double const noise = card.headWay().distortion().noise;
    std::uint64_t const key = card.headWay().beginMeasurement();
    for (std::size_t i = 0; i < places.size(); ++i) {
        Point const pair = normalPair(mixedKey(key, i));
        places[i] = {places[i].x + pair.x * noise, places[i].y + pair.y * noise};
    }
}

} // namespace

QByteArray measurementText(std::vector<Point> const& places) {
    QByteArray text;
    for (Point const& place : places)
        text += QByteArray::number(place.x, 'g', 6) + ',' + QByteArray::number(place.y, 'g', 6) + '\n';
    return text;
}

SimOutcome measureFigures(CardCore& card, QString const& file, std::string& error) {
    if (card.runner().jobs() == 0)
        return nothingToMeasure(error, "nothing has been marked yet");
    if (card.head().activity != Activity::Idle)
        return nothingToMeasure(error, "a job is on the card");
    std::vector<Point> places = markedFigures(card.trace().snapshot());
    if (places.empty())
        return nothingToMeasure(error, "the last job marked neither crosses nor points");
    addInstrumentNoise(card, places);
    const tessera::DurableResult result =
        tessera::writeFileDurably(QFileInfo(file).absoluteFilePath(), measurementText(places));
    if (result.ok())
        return SimOutcome::Done;
    error = result.message().toStdString();
    return SimOutcome::FileError;
}

} // namespace sim
