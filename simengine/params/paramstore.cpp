// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/params/paramstore.h"

#include "support/approot.h"

#include <cmath>

namespace sim {

namespace {

double readNumber(ParamRow const& row, std::optional<QString> const& text) {
    if (!text)
        return row.number;
    switch (row.type) {
    case ParamType::Flag: {
        std::optional<int> const value = iniInt(*text);
        return value ? (*value != 0 ? 1.0 : 0.0) : row.number;
    }
    case ParamType::Int: {
        std::optional<int> const value = iniInt(*text);
        return value ? static_cast<double>(*value) : row.number;
    }
    case ParamType::Real:
        return iniDouble(*text).value_or(row.number);
    case ParamType::Text:
        break;
    }
    return row.number;
}

} // namespace

QString paramText(ParamRow const& row, double number, QString const& text) {
    switch (row.type) {
    case ParamType::Flag:
    case ParamType::Int:
        return QString::number(static_cast<int>(number));
    case ParamType::Real:
        return iniNumber(number);
    case ParamType::Text:
        break;
    }
    return text;
}

ParamStore::ParamStore(QString const& path, ParamRow const* rows, std::size_t count)
    : m_file(tessera::rootPath(path))
    , m_rows(rows)
    , m_count(count)
    , m_numbers(std::make_unique<std::atomic<double>[]>(count))
    , m_texts(count) {
    load();
}

void ParamStore::load() {
    for (std::size_t i = 0; i < m_count; ++i) {
        ParamRow const& row = m_rows[i];
        std::optional<QString> const stored = m_file.value(QString::fromUtf8(row.section), QString::fromUtf8(row.key));
        if (row.type == ParamType::Text)
            setText(i, stored.value_or(QString::fromUtf8(row.text)));
        else
            m_numbers[i].store(readNumber(row, stored));
    }
}

bool ParamStore::save() {
    return m_file.change([this](IniDocument& document) {
        for (std::size_t i = 0; i < m_count; ++i) {
            ParamRow const& row = m_rows[i];
            QString const value = paramText(row, m_numbers[i].load(), text(i));
            if (!document.setValue(QString::fromUtf8(row.section), QString::fromUtf8(row.key), value))
                return false;
        }
        return true;
    });
}

QString ParamStore::text(std::size_t row) const {
    std::lock_guard<std::mutex> guard(m_textLock);
    return m_texts[row];
}

void ParamStore::setText(std::size_t row, QString const& value) {
    std::lock_guard<std::mutex> guard(m_textLock);
    m_texts[row] = value;
}

void ParamStore::setReal(std::size_t row, double value) {
    if (std::isfinite(value))
        m_numbers[row].store(value);
}

} // namespace sim
