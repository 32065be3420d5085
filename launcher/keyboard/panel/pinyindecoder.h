// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace tessera {

/// Chinese words for a spelling in pinyin. It learns nothing and writes nothing: what is typed at a machine is nobody's
/// business. The library behind it has one state for the whole process, so there is one object at a time. Main thread.
class PinyinDecoder {
public:
    PinyinDecoder();
    ~PinyinDecoder();
    PinyinDecoder(PinyinDecoder const&) = delete;
    PinyinDecoder& operator=(PinyinDecoder const&) = delete;

    /// The dictionary was found.
    bool isReady() const { return m_ready; }
    /// Words for letters a to z, the likeliest first; at most kMostWords.
    QStringList words(QString const& letters);
    /// How many of the letters given last the word at `index` stands for; 0 for an index that is none.
    int lettersOf(int index);

    static constexpr int kMostWords = 120;

private:
    bool m_ready = false;
    int m_found = 0;
};

} // namespace tessera
