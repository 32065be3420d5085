// SPDX-License-Identifier: MIT
// Document files through their reader. The first byte of an input says what the rest is: a whole file, whose length and
// checksum are made right, since nothing else of it would be looked at; or the section of the objects in the version
// that the byte gives, put into the file of an empty document. What is taken is written and read once more and must be
// the same.
#include "simengine/document/markobject.h"
#include "simengine/document/mkfcodec.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

/// Places in a file: its length, and the version and length of the third section in the table.
constexpr int kLengthAt = 16;
constexpr int kTableAt = 24;
constexpr int kEntryBytes = 24;
constexpr int kObjectsEntry = kTableAt + 2 * kEntryBytes;
constexpr int kChecksumBytes = 32;

void require(bool holds) {
    if (!holds)
        std::abort();
}

template<class Integer>
void put(QByteArray& bytes, int at, Integer value) {
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        bytes[at + int(i)] = char(std::uint64_t(value) >> (8 * i));
}

/// The content with the right length before and the right checksum behind it.
QByteArray framed(QByteArray bytes) {
    if (bytes.size() >= kLengthAt + 8)
        put(bytes, kLengthAt, std::uint64_t(bytes.size() + kChecksumBytes));
    return bytes + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

/// The file of an empty document up to its objects.
QByteArray const& head() {
    static QByteArray const bytes = [] {
        QByteArray const file = *sim::encodeMkf(sim::DocumentContent());
        std::uint64_t offset = 0;
        std::memcpy(&offset, file.constData() + kObjectsEntry + 8, sizeof offset);
        return file.left(int(offset));
    }();
    return bytes;
}

QByteArray withObjects(QByteArray const& objects, unsigned version) {
    QByteArray file = head();
    put(file, kObjectsEntry + 4, std::uint32_t(version));
    put(file, kObjectsEntry + 16, std::uint64_t(objects.size()));
    return framed(file + objects);
}

void check(QByteArray const& bytes) {
    QString error;
    std::optional<sim::DocumentContent> const content = sim::decodeMkf(bytes, &error);
    require(content.has_value() == error.isEmpty());
    if (!content)
        return;
    std::optional<QByteArray> const written = sim::encodeMkf(*content);
    require(written.has_value());
    std::optional<sim::DocumentContent> const again = sim::decodeMkf(*written, &error);
    require(again.has_value() && sim::encodeMkf(*again) == written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0)
        return 0;
    QByteArray const rest(reinterpret_cast<char const*>(data) + 1, int(size) - 1);
    if (data[0] >= '1' && data[0] <= '9')
        check(withObjects(rest, unsigned(data[0] - '0')));
    else if (data[0] & 1)
        check(rest);
    else
        check(framed(rest));
    return 0;
}
