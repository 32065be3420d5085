// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variablecsv.h"

#include "simengine/document/csvtexts.h"
#include "support/approot.h"

#include <QFile>
#include <QFileInfo>

namespace sim {

namespace {

/// The folder of the documents, below which the files lie.
QString documentFolder() {
    return tessera::rootPath(QStringLiteral("/MarkFile"));
}

/// Nothing when a link leads out of the folder or there is no such file.
QString pathOf(const CsvSource& source) {
    const QString folder = QFileInfo(documentFolder()).canonicalFilePath();
    const QFileInfo file(folder + QLatin1Char('/') + source.file);
    const QString path = file.canonicalFilePath();
    return !folder.isEmpty() && file.isFile() && path.startsWith(folder + QLatin1Char('/')) ? path : QString();
}

/// Takes the records of a text one by one.
class CsvReader {
public:
    CsvReader(const QString& text, QChar separator)
        : m_text(text)
        , m_separator(separator) {}

    /// The next record that is not blank; false at the end or at a fault.
    bool next(QStringList& fields) {
        while (m_place < m_text.size() && m_sound) {
            fields = record();
            if (m_sound && (fields.size() > 1 || !fields.first().trimmed().isEmpty()))
                return true;
        }
        return false;
    }
    bool isSound() const { return m_sound; }

private:
    QStringList record() {
        QStringList fields;
        do
            fields.append(field());
        while (m_sound && take(m_separator));
        if (m_sound && m_place < m_text.size()) {
            // what stands here ends the line, or stands behind the end of a quotation
            const bool carriage = take(QLatin1Char('\r'));
            m_sound = take(QLatin1Char('\n')) || carriage;
        }
        return fields;
    }

    QString field() {
        if (take(QLatin1Char('"')))
            return quoted();
        const int begin = m_place;
        while (m_place < m_text.size() && !endsField(m_text.at(m_place)))
            ++m_place;
        return m_text.mid(begin, m_place - begin);
    }

    QString quoted() {
        QString value;
        while (m_place < m_text.size()) {
            const int quote = m_text.indexOf(QLatin1Char('"'), m_place);
            if (quote < 0)
                break;
            value += m_text.midRef(m_place, quote - m_place);
            m_place = quote + 1;
            if (!take(QLatin1Char('"')))
                return value;
            value += QLatin1Char('"');
        }
        m_sound = false;
        return value;
    }

    bool endsField(QChar c) const { return c == m_separator || c == QLatin1Char('\n') || c == QLatin1Char('\r'); }

    bool take(QChar c) {
        if (m_place >= m_text.size() || m_text.at(m_place) != c)
            return false;
        ++m_place;
        return true;
    }

    const QString& m_text;
    QChar m_separator;
    int m_place = 0;
    bool m_sound = true;
};

QString placeOf(const CsvSource& source, const QString& more) {
    return QStringLiteral("%1, %2%3").arg(source.name, source.file, more);
}

CsvRow rowOf(const CsvSource& source, const QString& text, VariableProblem& problem) {
    CsvReader reader(text, source.separator);
    CsvRow taken;
    QStringList fields;
    if (source.header && reader.next(fields))
        taken.header = fields;
    QStringList first;
    int rows = 0;
    while (rows < source.row && reader.next(fields)) {
        if (++rows == 1)
            first = fields;
    }
    taken.row = source.row;
    taken.fields = fields;
    if (!reader.isSound()) {
        problem = {VariableFault::BadFile, placeOf(source, QString())};
    } else if (rows < source.row) {
        taken.row = 1;
        taken.fields = first;
        if (rows == 0 || source.atEnd == CounterEnd::Stop)
            problem = {VariableFault::SourceEnded, placeOf(source, QStringLiteral(" [%1]").arg(source.row))};
    }
    return taken;
}

} // namespace

CsvRow readCsvRow(const CsvSource& source, VariableProblem& problem) {
    QFile file(pathOf(source));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly) || file.size() > kMaxCsvBytes) {
        problem = {VariableFault::NoFile, placeOf(source, QString())};
        return {};
    }
    const std::shared_ptr<const QString> text = CsvTexts::instance().text(file, source.coding);
    if (!text) {
        problem = {VariableFault::BadFile, placeOf(source, QString())};
        return {};
    }
    return rowOf(source, *text, problem);
}

QString csvField(const CsvSource& source, const CsvRow& row, const QString& column, VariableProblem& problem) {
    const bool numbered = column.startsWith(QLatin1Char('#'));
    const int index = numbered ? column.mid(1).toInt() - 1 : row.header.indexOf(column);
    if (index >= 0 && index < row.fields.size())
        return row.fields.at(index);
    problem = {VariableFault::NoColumn, placeOf(source, QStringLiteral(" [%1]: %2").arg(row.row).arg(column))};
    return QString();
}

} // namespace sim
