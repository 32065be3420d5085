// SPDX-License-Identifier: MIT
#include "pinyindecoder.h"

#include <QFileInfo>
#include <QLibraryInfo>
#include <algorithm>
#include <pinyinime.h>

namespace tessera {

namespace {

/// Letters of one spelling; the library holds less than forty.
constexpr int kMostLetters = 32;
constexpr int kMostWordLength = 40;

QByteArray dictionary() {
    QString const file =
        QLibraryInfo::location(QLibraryInfo::LibrariesPath) + QStringLiteral("/googlepinyin/data/dict_pinyin.dat");
    return QFileInfo::exists(file) ? file.toLocal8Bit() : QByteArray();
}

} // namespace

PinyinDecoder::PinyinDecoder() {
    QByteArray const file = dictionary();
    // Without a file for words of the user there are none.
    m_ready = !file.isEmpty() && ime_pinyin::im_open_decoder(file.constData(), "");
}

PinyinDecoder::~PinyinDecoder() {
    if (m_ready)
        ime_pinyin::im_close_decoder();
}

QStringList PinyinDecoder::words(QString const& letters) {
    m_found = 0;
    QStringList words;
    if (!m_ready || letters.isEmpty())
        return words;
    QByteArray const spelling = letters.left(kMostLetters).toLatin1();
    ime_pinyin::im_reset_search();
    std::size_t const found = ime_pinyin::im_search(spelling.constData(), static_cast<std::size_t>(spelling.size()));
    m_found = static_cast<int>(std::min<std::size_t>(found, kMostWords));
    for (int i = 0; i < m_found; ++i) {
        ime_pinyin::char16 text[kMostWordLength + 1] = {};
        if (ime_pinyin::im_get_candidate(static_cast<std::size_t>(i), text, kMostWordLength))
            words.append(QString::fromUtf16(reinterpret_cast<ushort const*>(text)));
        else
            words.append(QString());
    }
    return words;
}

int PinyinDecoder::lettersOf(int index) {
    if (!m_ready || index < 0 || index >= m_found)
        return 0;
    ime_pinyin::im_choose(static_cast<std::size_t>(index));
    ime_pinyin::uint16 const* starts = nullptr;
    std::size_t const syllables = ime_pinyin::im_get_spl_start_pos(starts);
    std::size_t const chosen = ime_pinyin::im_get_fixed_len();
    return starts ? starts[std::min(chosen, syllables)] : 0;
}

} // namespace tessera
