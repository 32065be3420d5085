// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/layerdata.h"

#include "engine/marklog.h"
#include "simengine/document/defaultpen.h"
#include "support/approot.h"
#include "support/durablefile.h"

#include <QFile>
#include <mutex>

namespace {

struct SharedDefault {
    std::mutex mutex;
    LayerData data;
};

SharedDefault& sharedDefault() {
    static SharedDefault shared;
    return shared;
}

QString defaultPenPath() {
    return tessera::rootPath(QStringLiteral("/ini/DefaultPen.dat"));
}

} // namespace

void LayerData::InitLayerData() {
    LayerData loaded;
    QFile file(defaultPenPath());
    if (file.open(QIODevice::ReadOnly)) {
        if (const auto stored = sim::decodeDefaultPen(file.read(sim::kMaxDefaultPenBytes)))
            loaded = *stored;
        else
            MarkLog::Instance()->ShowNote_Error(file.fileName() +
                                                QStringLiteral(" is damaged, the built-in pen is used"));
    }
    const std::lock_guard<std::mutex> lock(sharedDefault().mutex);
    sharedDefault().data = loaded;
}

LayerData LayerData::GetDefaultLayerData() {
    const std::lock_guard<std::mutex> lock(sharedDefault().mutex);
    return sharedDefault().data;
}

void LayerData::SetDefaultLatyerData(LayerData const& data) {
    {
        const std::lock_guard<std::mutex> lock(sharedDefault().mutex);
        sharedDefault().data = data;
    }
    const tessera::DurableResult result = tessera::writeFileDurably(defaultPenPath(), sim::encodeDefaultPen(data));
    if (!result)
        MarkLog::Instance()->ShowNote_Error(result.message());
}
