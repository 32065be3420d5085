// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"

#include <QByteArray>
#include <functional>
#include <streambuf>

namespace sim {

/// Hands a DXF file to the library that reads it, made safe: the library takes an array's length from the file, stands
/// still at lines of 1024 bytes and takes what is no number for zero. Left out is what no drawing needs: handles,
/// owners, data of other programs. The file ends early when the budget is spent.
class DxfFeed : public std::streambuf {
public:
    /// `pair` is called with each code and value just before the library reads it, and tells whether it shall not.
    DxfFeed(const QByteArray& bytes, ImportResult& result, ImportBudget& budget,
            std::function<bool(int code, const char* value, int size)> pair);

    /// The file ended within a pair.
    bool isCutOff() const { return m_cutOff; }
    /// The mark of the file's end was there.
    bool hasEnd() const { return m_end; }

protected:
    int_type underflow() override;

private:
    struct Line {
        const char* begin;
        int size;
    };
    bool takeLine(Line& line);
    bool takePair();
    bool checkCount(int code, const Line& value);
    void checkEntity(const Line& value);

    const QByteArray& m_bytes;
    ImportResult& m_result;
    ImportBudget& m_budget;
    std::function<bool(int, const char*, int)> m_pair;
    int m_at = 0;
    qint64 m_counted = 0; ///< sum of the lengths that entities tell
    QByteArray m_entity;
    std::string m_buffer; ///< one pair
    std::string m_value;
    bool m_cutOff = false;
    bool m_end = false;
};

} // namespace sim
