// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/headway.h"

namespace sim {

namespace {

/// Keeps the noise of measurements apart from that of jobs.
constexpr std::uint64_t kMeasurementStream = 0x6D656173;

} // namespace

void HeadWay::setDistortion(const SimHeadDistortion& head) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_head = head;
    m_jobs = 0;
    m_measurements = 0;
}

SimHeadDistortion HeadWay::distortion() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_head;
}

void HeadWay::setBox(const BoxCorrection& box) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_box = box.sanitized();
}

void HeadWay::setGrid(std::shared_ptr<const GridCorrection> grid) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_grid.swap(grid);
}

bool HeadWay::hasGrid() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_grid != nullptr;
}

void HeadWay::setSplice(const Splice& splice) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_splice = splice;
    m_direct = false;
}

std::shared_ptr<const HeadMap> HeadWay::beginJob(bool pilot, bool direct) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_direct = direct;
    return HeadMap::make(m_head, m_box, m_grid, pilot, m_jobs++, direct ? Splice{} : m_splice);
}

std::shared_ptr<const HeadMap> HeadWay::now(bool pilot) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return HeadMap::make(m_head, m_box, m_grid, pilot, 0, m_direct ? Splice{} : m_splice);
}

std::uint64_t HeadWay::beginMeasurement() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return mixedKey(mixedKey(static_cast<std::uint64_t>(m_head.seed), kMeasurementStream), m_measurements++);
}

} // namespace sim
