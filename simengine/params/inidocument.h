// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

namespace sim {

/// The text of one ini file. Lines that are not written stay byte for byte: comments (";" or "#" first), blank lines,
/// order, keys of others, line ends. Section and key names are compared exactly; the first of two equal keys counts.
///
/// Values are UTF-8. One that begins or ends with a blank, begins with a quotation mark or holds a control character is
/// kept in quotation marks with \n, \r, \t, \", \\ and \xHH; all others stand as they are. A plain value.
class IniDocument {
public:
    IniDocument() = default;
    static IniDocument parse(QByteArray const& bytes);
    QByteArray bytes() const;

    std::optional<QString> value(QString const& section, QString const& key) const;
    /// False, and nothing changed, when section or key cannot stand in an ini file (see isName).
    bool setValue(QString const& section, QString const& key, QString const& value);

    /// Names hold no control character, do not begin or end with a blank; a section has no "]", a key is not empty, has
    /// no "=" and begins with none of "[", ";" and "#".
    static bool isSectionName(QString const& name);
    static bool isKeyName(QString const& name);

private:
    struct Line {
        QByteArray text;     ///< without the line end
        QByteArray end;      ///< line end, empty when the file ends without one
        QByteArray section;  ///< of the section that the line stands in
        QByteArray key;      ///< empty for a line that is no entry
        int valueOffset = 0; ///< where the value begins in `text`
    };

    static Line readLine(QByteArray const& text, QByteArray& section);
    void index();
    void append(QByteArray const& section, Line line);
    QByteArray lineEnd() const;

    std::vector<Line> m_lines;
    QHash<QByteArray, std::size_t> m_index; ///< section, line feed, key -> line
    bool m_byteOrderMark = false;
};

/// The shortest text that reads back as the same number, with a point as decimal sign.
QString iniNumber(double value);
/// Numbers as ini files hold them; nothing for a text that is no number, not finite, or beyond the range of the type.
std::optional<double> iniDouble(QString const& text);
/// A fraction is cut off.
std::optional<int> iniInt(QString const& text);

} // namespace sim
