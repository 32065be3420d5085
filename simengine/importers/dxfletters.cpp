// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfletters.h"

#include "simengine/document/strokefonts.h"
#include "simengine/document/textmaker.h"

#include <QGuiApplication>
#include <cmath>
#include <cstring>

namespace sim {

namespace {

/// Characters of one text that are drawn.
constexpr int kMostCharacters = 10000;
/// How far letters reach below the base line, in heights.
constexpr double kDescent = 1.0 / 3.0;

struct Line {
    PathShape path;
    double width = 0.0;
};

QString fontName() {
    return QString::fromLatin1(strokeFonts().front().name);
}

Line strokeLine(const QString& text, int& missing) {
    Line line;
    for (uint c : text.toUcs4()) {
        const StrokeGlyph glyph = strokeGlyph(fontName(), c);
        if (!glyph.known)
            ++missing;
        const PathShape mapped = mapPath(glyph.path, QTransform::fromTranslate(line.width, 0.0));
        line.path.verbs += mapped.verbs;
        line.path.points += mapped.points;
        line.width += glyph.width;
    }
    return line;
}

Line outlineLine(const QString& text, int& missing) {
    Line line;
    TextSpec spec;
    spec.text = text;
    spec.singleLine = false;
    spec.height = 1.0;
    const MadeText made = makeText(spec);
    if (!made.ok()) {
        missing += text.trimmed().size();
        return line;
    }
    line.path = made.shape.outline;
    line.width = shapeBounds(Shape(line.path), QTransform()).maxX;
    return line;
}

bool canOutline() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

/// Breaks lines at blanks where they would be wider.
QStringList wrapped(const QStringList& lines, double width) {
    QStringList all;
    for (const QString& line : lines) {
        QString now;
        for (const QString& word : line.split(QLatin1Char(' '))) {
            int ignored = 0;
            const QString longer = now.isEmpty() ? word : now + QLatin1Char(' ') + word;
            if (!now.isEmpty() && strokeLine(longer, ignored).width > width) {
                all << now;
                now = word;
            } else {
                now = longer;
            }
        }
        all << now;
    }
    return all;
}

void putLine(PathShape& path, const Line& line, const DxfText& text, double down) {
    double high = text.height;
    double wide = text.height * text.widthFactor;
    if (text.fitWidth > 0.0 && line.width > 0.0) {
        wide = text.fitWidth / line.width;
        high = text.fitHeight ? wide : high;
    }
    const double across = -0.5 * text.across * line.width * wide;
    const QTransform place = QTransform(wide, 0, 0, high, 0, 0) * QTransform(1, 0, std::tan(text.slant), 1, 0, 0) *
                             QTransform::fromTranslate(across, down);
    const PathShape mapped = mapPath(line.path, place);
    path.verbs += mapped.verbs;
    path.points += mapped.points;
}

} // namespace

DxfLetters dxfLetters(const DxfText& text) {
    DxfLetters letters;
    int size = 0;
    for (const QString& line : text.lines)
        size += line.size();
    if (size > kMostCharacters || !(text.height > 0.0)) {
        letters.missing = size;
        return letters;
    }
    const QStringList rows = text.wrapWidth > 0.0 && text.height * text.widthFactor > 0.0
                                 ? wrapped(text.lines, text.wrapWidth / (text.height * text.widthFactor))
                                 : text.lines;
    std::vector<Line> lines;
    for (const QString& row : rows)
        lines.push_back(strokeLine(row, letters.missing));
    if (letters.missing > 0 && canOutline()) {
        letters.missing = 0;
        letters.outline = true;
        lines.clear();
        for (const QString& row : rows)
            lines.push_back(row.trimmed().isEmpty() ? Line() : outlineLine(row, letters.missing));
    }
    // from the base line of the first line to that of the last
    const double all = double(lines.size() - 1) * text.lineStep * text.height;
    const double top[] = {0.0, all + kDescent * text.height, (all - text.height) / 2.0, -text.height};
    double down = top[text.along];
    for (const Line& line : lines) {
        putLine(letters.path, line, text, down);
        down -= text.lineStep * text.height;
    }
    return letters;
}

namespace {

/// "\U+XXXX" at a place; its length or 0.
int unicodeEscape(const QString& text, int at, QString& out) {
    if (text.mid(at, 3).compare(QLatin1String("\\U+"), Qt::CaseInsensitive) != 0)
        return 0;
    bool ok = false;
    const uint code = text.mid(at + 3, 4).toUInt(&ok, 16);
    if (!ok || code < 32)
        return 0;
    out += QChar(code);
    return 7;
}

/// Special signs behind "%%".
int percentCode(const QString& text, int at, QString& out) {
    if (text.mid(at, 2) != QLatin1String("%%") || at + 2 >= text.size())
        return 0;
    switch (text[at + 2].toLower().unicode()) {
    case 'c':
        out += QChar(0x2300);
        return 3;
    case 'd':
        out += QChar(0x00b0);
        return 3;
    case 'p':
        out += QChar(0x00b1);
        return 3;
    case '%':
        out += QLatin1Char('%');
        return 3;
    case 'u':
    case 'o':
    case 'k':
        return 3;
    default:
        break;
    }
    bool ok = false;
    const uint code = text.mid(at + 2, 3).toUInt(&ok);
    if (!ok || code < 32 || code > 255)
        return 0;
    out += QChar(code);
    return 5;
}

/// The end of a formatting code with an argument: behind its semicolon.
int behindSemicolon(const QString& text, int at) {
    const int end = text.indexOf(QLatin1Char(';'), at);
    return end < 0 ? text.size() : end + 1;
}

} // namespace

QString dxfPlainText(const QString& text) {
    QString out;
    for (int at = 0; at < text.size();) {
        int taken = percentCode(text, at, out);
        if (taken == 0)
            taken = unicodeEscape(text, at, out);
        if (taken == 0) {
            if (text[at].unicode() >= 32)
                out += text[at];
            taken = 1;
        }
        at += taken;
    }
    return out;
}

QStringList dxfParagraphs(const QString& text) {
    QString out;
    for (int at = 0; at < text.size();) {
        const QChar c = text[at];
        if (const int taken = unicodeEscape(text, at, out); taken > 0) {
            at += taken;
        } else if (c == QLatin1Char('\\') && at + 1 < text.size()) {
            const char code = text[at + 1].toLatin1();
            at += 2;
            if (code == 'P' || code == 'X') {
                out += QLatin1Char('\n');
            } else if (code == '~') {
                out += QLatin1Char(' ');
            } else if (code == '\\' || code == '{' || code == '}') {
                out += QLatin1Char(code);
            } else if (code == 'S') {
                // a fraction: "1/2", "1^2" or "1#2" up to the semicolon
                const int end = behindSemicolon(text, at);
                QString fraction = text.mid(at, std::max(0, end - at - 1));
                out += fraction.replace(QLatin1Char('^'), QLatin1Char('/')).replace(QLatin1Char('#'), QLatin1Char('/'));
                at = end;
            } else if (code && std::strchr("fFHCcQTWApN", code)) {
                at = behindSemicolon(text, at);
            }
        } else {
            const int sign = percentCode(text, at, out);
            if (sign == 0 && c == QLatin1Char('^') && at + 1 < text.size() && text[at + 1] == QLatin1Char('J')) {
                out += QLatin1Char('\n');
                ++at;
            } else if (sign == 0 && c != QLatin1Char('{') && c != QLatin1Char('}')) {
                out += c.unicode() >= 32 ? c : QChar(' ');
            }
            at += std::max(1, sign);
        }
    }
    return out.split(QLatin1Char('\n'));
}

} // namespace sim
