// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/csvtexts.h"

#include "simengine/document/variablecsv.h"

#include <QFile>
#include <QTextCodec>
#include <algorithm>
#include <ctime>
#include <sys/stat.h>

namespace sim {

namespace {

using Lock = std::lock_guard<std::mutex>;

/// Units of the texts that are kept, together: one of the largest files, or many of the usual ones.
constexpr qint64 kMostUnits = kMaxCsvBytes;

/// A file that was changed so shortly before it was read may be changed again without its time telling, s.
constexpr qint64 kSettled = 2;

/// Nothing when the bytes are not of the encoding.
std::shared_ptr<const QString> decoded(const QByteArray& bytes, CsvCoding coding) {
    // the larger set of the same standard: what is GBK reads the same in it
    QTextCodec* codec = QTextCodec::codecForName(coding == CsvCoding::Utf8 ? "UTF-8" : "GB18030");
    if (!codec)
        return nullptr;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return nullptr;
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return std::make_shared<const QString>(std::move(text));
}

} // namespace

bool CsvTexts::Stamp::operator==(const Stamp& other) const {
    return device == other.device && inode == other.inode && size == other.size && seconds == other.seconds &&
           nanoseconds == other.nanoseconds;
}

CsvTexts& CsvTexts::instance() {
    static CsvTexts texts;
    return texts;
}

std::optional<CsvTexts::Stamp> CsvTexts::stampOf(const QFile& file) {
    struct stat info = {};
    if (::fstat(file.handle(), &info) != 0)
        return std::nullopt;
    return Stamp{quint64(info.st_dev), quint64(info.st_ino), qint64(info.st_size), qint64(info.st_mtim.tv_sec),
                 qint64(info.st_mtim.tv_nsec)};
}

bool CsvTexts::isOld(const Stamp& stamp) {
    return qint64(std::time(nullptr)) - stamp.seconds > kSettled;
}

std::shared_ptr<const QString> CsvTexts::find(const QString& path, CsvCoding coding, const Stamp& stamp) {
    const Lock lock(m_mutex);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& kept) {
        return kept.path == path && kept.coding == coding && kept.stamp == stamp;
    });
    if (entry == m_entries.end())
        return nullptr;
    std::rotate(entry, entry + 1, m_entries.end());
    return m_entries.back().text;
}

void CsvTexts::keep(Entry entry) {
    const Lock lock(m_mutex);
    const auto former = [&](const Entry& kept) { return kept.path == entry.path && kept.coding == entry.coding; };
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), former), m_entries.end());
    m_entries.push_back(std::move(entry));
    qint64 units = 0;
    for (const Entry& kept : m_entries)
        units += kept.text->size();
    while (units > kMostUnits) {
        units -= m_entries.front().text->size();
        m_entries.erase(m_entries.begin());
    }
}

std::shared_ptr<const QString> CsvTexts::text(QFile& file, CsvCoding coding) {
    const std::optional<Stamp> stamp = stampOf(file);
    if (!stamp || stamp->size > kMaxCsvBytes)
        return nullptr;
    if (auto kept = find(file.fileName(), coding, *stamp))
        return kept;
    const bool settled = isOld(*stamp);
    const QByteArray bytes = file.read(kMaxCsvBytes + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > kMaxCsvBytes)
        return nullptr;
    std::shared_ptr<const QString> read = decoded(bytes, coding);
    if (read && settled && bytes.size() == stamp->size && stampOf(file) == stamp)
        keep({file.fileName(), coding, *stamp, read});
    return read;
}

} // namespace sim
