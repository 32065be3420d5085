// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/layerparamex.h"

#include <algorithm>

namespace {

/// Display colours of a new document's pens, all different and readable on the light drawing area.
constexpr QRgb kPenColors[kLayerCount] = {
    0xff000000, 0xff0050ff, 0xffe00000, 0xff009020, 0xffd000d0, 0xff0098a8, 0xffd07000,
    0xff6020c0, 0xff806000, 0xff4060a0, 0xffa03050, 0xff508000, 0xff00a070, 0xffb050ff,
    0xffff5090, 0xff703010, 0xff305030, 0xff90a000, 0xff5090ff, 0xff707070,
};

bool isPen(int index) {
    return index >= 0 && index < kLayerCount;
}

} // namespace

LayerParamEx::LayerParamEx()
    : m_Layers(kLayerCount, LayerData::GetDefaultLayerData()) {
    for (int i = 0; i < kLayerCount; ++i) {
        const QColor color = GetDefultColor(i);
        m_Layers[i].ColorR = color.red();
        m_Layers[i].ColorG = color.green();
        m_Layers[i].ColorB = color.blue();
    }
}

LayerParamEx::LayerParamEx(LayerParamEx const& other)
    : m_Layers(other.m_Layers)
    , m_Waves(other.m_Waves) {
    // record addresses of `other` are in use: what is written through them must not reach the copy
    m_Layers.detach();
}

LayerParamEx& LayerParamEx::operator=(LayerParamEx const& other) {
    if (this == &other)
        return *this;
    if (m_Layers.size() == other.m_Layers.size()) {
        // in place, so that record addresses handed out stay good
        std::copy(other.m_Layers.cbegin(), other.m_Layers.cend(), m_Layers.begin());
    } else {
        m_Layers = other.m_Layers;
        m_Layers.detach();
    }
    m_Waves = other.m_Waves;
    return *this;
}

void LayerParamEx::GetLayerData(int index, LayerData& data) const {
    data = isPen(index) ? m_Layers.value(index) : LayerData::GetDefaultLayerData();
}

void LayerParamEx::GetLayerData(int index, LayerData*& data) {
    data = isPen(index) && index < m_Layers.size() ? &m_Layers[index] : nullptr;
}

QVector<LayerData>& LayerParamEx::GetLayerData() {
    return m_Layers;
}

QVector<LayerData> const& LayerParamEx::GetLayerData() const {
    return m_Layers;
}

void LayerParamEx::SetLayerData(int index, LayerData const& data) {
    LayerData* record = nullptr;
    GetLayerData(index, record);
    if (record)
        *record = data;
}

LYQCWWave* LayerParamEx::GetQCWWaves() {
    return m_Waves.data();
}

LYQCWWave const* LayerParamEx::GetQCWWaves() const {
    return m_Waves.data();
}

QColor LayerParamEx::GetDefultColor(int index) {
    return isPen(index) ? QColor(kPenColors[index]) : QColor();
}
