// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/carddevices.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sim {

bool FlashMemory::write(std::uint32_t address, const unsigned char* data, int size) {
    if (!data || size < 1 || size > kMaxWrite || address >= kSize || kSize - address < static_cast<std::uint32_t>(size))
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::uint32_t end = address + static_cast<std::uint32_t>(size);
    m_first = m_end > 0 ? std::min(m_first, address) : address;
    m_end = std::max(m_end, end);
    for (int i = 0; i < size; ++i, ++address) {
        std::unique_ptr<Page>& page = m_pages[address / kPage];
        if (!page) {
            page = std::make_unique<Page>();
            page->fill(0xFF);
        }
        (*page)[address % kPage] = data[i];
    }
    m_written += static_cast<std::uint64_t>(size);
    return true;
}

std::vector<unsigned char> FlashMemory::read(std::uint32_t address, std::uint32_t size) const {
    std::vector<unsigned char> bytes(size, 0xFF);
    const std::uint64_t end = std::uint64_t(address) + size;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto page = m_pages.lower_bound(address / kPage); page != m_pages.end(); ++page) {
        const std::uint64_t begin = std::uint64_t(page->first) * kPage;
        if (begin >= end)
            break;
        const std::uint64_t from = std::max<std::uint64_t>(begin, address);
        const std::uint64_t to = std::min(begin + kPage, end);
        std::copy_n(page->second->begin() + static_cast<std::ptrdiff_t>(from - begin), to - from,
                    bytes.begin() + static_cast<std::ptrdiff_t>(from - address));
    }
    return bytes;
}

std::uint64_t FlashMemory::written() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_written;
}

std::pair<std::uint32_t, std::uint32_t> FlashMemory::extent() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return {m_first, m_end};
}

void FlashMemory::erase() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pages.clear();
    m_first = 0;
    m_end = 0;
}

void CardDevices::setCommandHandler(CommandHandler handler) {
    auto shared = handler ? std::make_shared<const CommandHandler>(std::move(handler)) : nullptr;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_handler = std::move(shared);
}

bool CardDevices::command(int code, int a, int b, int& out1, int& out2) {
    std::shared_ptr<const CommandHandler> handler;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        handler = m_handler;
    }
    int first = out1;
    int second = out2;
    if (!handler || !(*handler)(code, a, b, first, second))
        return false;
    out1 = first;
    out2 = second;
    return true;
}

} // namespace sim
