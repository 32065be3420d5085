// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/params/inifile.h"

#include <QString>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace sim {

enum class ParamType { Flag, Int, Real, Text };

/// One parameter of a settings file: where it stands and what it is without a file.
struct ParamRow {
    char const* section;
    char const* key;
    ParamType type;
    double number;    ///< default of a flag (0 or 1), an int or a real
    char const* text; ///< default of a text
};

constexpr ParamRow flagRow(char const* section, char const* key, bool value) {
    return {section, key, ParamType::Flag, value ? 1.0 : 0.0, ""};
}
constexpr ParamRow intRow(char const* section, char const* key, int value) {
    return {section, key, ParamType::Int, static_cast<double>(value), ""};
}
constexpr ParamRow realRow(char const* section, char const* key, double value) {
    return {section, key, ParamType::Real, value, ""};
}
constexpr ParamRow textRow(char const* section, char const* key, char const* value) {
    return {section, key, ParamType::Text, 0.0, value};
}

/// The values of a table of parameters and their file. Rows are named by their place in the table. Values may be read
/// and set on any thread; a group that must fit together is read and set under groupLock(). A real that is not finite
/// is not taken.
class ParamStore {
public:
    /// `path` is below the application root ("/ini/SystemParam.ini"). Loads the file; without it the defaults hold.
    ParamStore(QString const& path, ParamRow const* rows, std::size_t count);

    bool flag(std::size_t row) const { return m_numbers[row].load() != 0.0; }
    int integer(std::size_t row) const { return static_cast<int>(m_numbers[row].load()); }
    double real(std::size_t row) const { return m_numbers[row].load(); }
    QString text(std::size_t row) const;
    void setFlag(std::size_t row, bool value) { m_numbers[row].store(value ? 1.0 : 0.0); }
    void setInteger(std::size_t row, int value) { m_numbers[row].store(value); }
    void setReal(std::size_t row, double value);
    void setText(std::size_t row, QString const& value);

    void load();
    /// Writes all rows; keys of others in the file stay. False when the file could not be written.
    bool save();

    std::mutex& groupLock() const { return m_group; }

private:
    IniFile m_file;
    ParamRow const* m_rows;
    std::size_t m_count;
    std::unique_ptr<std::atomic<double>[]> m_numbers; ///< flags and ints too: a double holds every int
    std::vector<QString> m_texts;
    mutable std::mutex m_textLock;
    mutable std::mutex m_group;
};

/// The value of a row as its file holds it.
QString paramText(ParamRow const& row, double number, QString const& text);

} // namespace sim
