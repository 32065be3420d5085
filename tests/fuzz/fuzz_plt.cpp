// SPDX-License-Identifier: MIT
// Files with the suffix .plt through their importer, as bytes from anywhere.
#include "importcheck.h"
#include "simengine/importers/pltimport.h"

#include <QByteArray>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::checkImport(sim::importPltData(QByteArray(reinterpret_cast<char const*>(data), int(size))));
    return 0;
}
