// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/snapsettings.h"

#include "simengine/params/paramstore.h"

#include <algorithm>

namespace sim {

namespace {

constexpr char kViewFile[] = "/ini/View.ini";

enum SnapRow : std::size_t { OnRow, GridRow, ObjectsRow, GuidesRow, PixelsRow, SnapRowCount };

constexpr SnapSettings kDefaults{};

constexpr ParamRow kRows[] = {
    flagRow("Snap", "Enable", kDefaults.on),       flagRow("Snap", "Grid", kDefaults.grid),
    flagRow("Snap", "Objects", kDefaults.objects), flagRow("Snap", "Guides", kDefaults.guides),
    intRow("Snap", "Pixels", kDefaults.pixels),
};
static_assert(std::size(kRows) == SnapRowCount, "a row for each name");

} // namespace

SnapSettings loadSnapSettings() {
    const ParamStore store(QString::fromLatin1(kViewFile), kRows, SnapRowCount);
    SnapSettings settings;
    settings.on = store.flag(OnRow);
    settings.grid = store.flag(GridRow);
    settings.objects = store.flag(ObjectsRow);
    settings.guides = store.flag(GuidesRow);
    settings.pixels = std::clamp(store.integer(PixelsRow), SnapSettings::kLeastPixels, SnapSettings::kMostPixels);
    return settings;
}

bool saveSnapSettings(const SnapSettings& settings) {
    ParamStore store(QString::fromLatin1(kViewFile), kRows, SnapRowCount);
    store.setFlag(OnRow, settings.on);
    store.setFlag(GridRow, settings.grid);
    store.setFlag(ObjectsRow, settings.objects);
    store.setFlag(GuidesRow, settings.guides);
    store.setInteger(PixelsRow, std::clamp(settings.pixels, SnapSettings::kLeastPixels, SnapSettings::kMostPixels));
    return store.save();
}

} // namespace sim
