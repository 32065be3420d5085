// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfletters.h"

#include "simengine/document/textmaker.h"
#include "simengine/importers/strokeletters.h"

#include <QGuiApplication>
#include <QTextCodec>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace sim {

namespace {

/// Characters of one text that are drawn.
constexpr int kMostCharacters = 10000;
/// What one of them costs the budget, as strokes and as an outline.
constexpr qint64 kLetterCost = 64;
constexpr qint64 kOutlineCost = 2048;
/// How far letters reach below the base line, in heights.
constexpr double kDescent = 1.0 / 3.0;

struct Line {
    PathShape path;
    double width = 0.0;
};

Line strokeLine(const QString& text, StrokeLetters& letters, int& missing) {
    Line line;
    for (uint c : text.toUcs4()) {
        const StrokeGlyph& glyph = letters.letter(c);
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

double strokeWidth(const QString& text, StrokeLetters& letters) {
    double width = 0.0;
    for (uint c : text.toUcs4())
        width += letters.letter(c).width;
    return width;
}

/// Breaks lines at blanks where they would be wider.
QStringList wrapped(const QStringList& lines, double width, StrokeLetters& letters) {
    const double blank = letters.letter(' ').width;
    QStringList all;
    for (const QString& line : lines) {
        QString now;
        double wide = 0.0;
        for (const QString& word : line.split(QLatin1Char(' '))) {
            const double more = strokeWidth(word, letters);
            if (now.isEmpty()) {
                now = word;
                wide = more;
            } else if (wide + blank + more > width) {
                all << now;
                now = word;
                wide = more;
            } else {
                now += QLatin1Char(' ') + word;
                wide += blank + more;
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

DxfLetters dxfLetters(const DxfText& text, ImportBudget& budget) {
    DxfLetters letters;
    int size = 0;
    for (const QString& line : text.lines)
        size += line.size();
    letters.tooLong = size > kMostCharacters;
    if (letters.tooLong || !budget.step((size + text.lines.size()) * kLetterCost))
        return letters;
    StrokeLetters strokes;
    const QStringList rows = text.wrapWidth > 0.0 && text.height * text.widthFactor > 0.0
                                 ? wrapped(text.lines, text.wrapWidth / (text.height * text.widthFactor), strokes)
                                 : text.lines;
    std::vector<Line> lines;
    for (const QString& row : rows)
        lines.push_back(strokeLine(row, strokes, letters.missing));
    if (letters.missing > 0 && canOutline()) {
        letters.missing = 0;
        letters.outline = true;
        lines.clear();
        for (const QString& row : rows) {
            if (!budget.step(row.size() * kOutlineCost))
                return letters;
            lines.push_back(row.trimmed().isEmpty() ? Line() : outlineLine(row, letters.missing));
        }
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
    if (text.midRef(at, 3).compare(QLatin1String("\\U+"), Qt::CaseInsensitive) != 0)
        return 0;
    bool ok = false;
    const uint code = text.midRef(at + 3, 4).toUInt(&ok, 16);
    if (!ok || code < 32)
        return 0;
    out += QChar(code);
    return 7;
}

/// "\M+nXXXX" at a place, a character of one of five encodings, as files from before Unicode have it; its length or 0.
int multibyteEscape(const QString& text, int at, DxfPlainText& plain, QString& out) {
    constexpr int kPages[] = {932, 950, 949, 1361, 936};
    if (text.midRef(at, 3) != QLatin1String("\\M+") || at + 8 > text.size())
        return 0;
    const int page = text[at + 3].digitValue();
    bool ok = false;
    const uint code = text.midRef(at + 4, 4).toUInt(&ok, 16);
    if (!ok || page < 1 || page > 5)
        return 0;
    const char bytes[] = {char(code >> 8), char(code & 0xff)};
    QTextCodec* codec = dxfCodec(kPages[page - 1]);
    QTextCodec::ConverterState state;
    const QString read = codec ? codec->toUnicode(bytes, 2, &state) : QString();
    // some codecs put a sign, or a character that is none, for what they do not know without counting it
    const bool known = !read.isEmpty() && state.remainingChars == 0 &&
                       !read.contains(QChar(QChar::ReplacementCharacter)) &&
                       std::all_of(read.begin(), read.end(), [](QChar c) { return c.isPrint() || c.isSurrogate(); });
    if (!known) {
        plain.unknown = true;
        return 0;
    }
    out += read;
    return 8;
}

/// Special signs behind "%%".
int percentCode(const QString& text, int at, DxfPlainText& plain, QString& out) {
    if (text.midRef(at, 2) != QLatin1String("%%") || at + 2 >= text.size())
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
        plain.formatted = true;
        return 3;
    default:
        break;
    }
    bool ok = false;
    const uint code = text.midRef(at + 2, 3).toUInt(&ok);
    if (!ok || code < 32 || code > 255)
        return 0;
    out += QChar(code);
    return 5;
}

/// A code of a paragraph that is none of a character's: a new line, a sign, a fraction, or what the letters look like.
/// `at` is behind the backslash, the last semicolon of the text at `last`; the place behind the code.
int formatCode(const QString& text, int at, int last, DxfPlainText& plain, QString& out) {
    const char code = text[at].toLatin1();
    const bool hasEnd = at < last && code && std::strchr("SfFHCcQTWAp", code);
    const int semicolon = hasEnd ? text.indexOf(QLatin1Char(';'), at) : -1;
    if (code == 'P' || code == 'X' || code == 'N') {
        out += QLatin1Char('\n');
    } else if (code == '~') {
        out += QLatin1Char(' ');
    } else if (code == '\\' || code == '{' || code == '}') {
        out += QLatin1Char(code);
    } else if (code == 'S' && semicolon >= 0) {
        // a fraction: "1/2", "1^2" or "1#2" up to the semicolon
        QString fraction = text.mid(at + 1, semicolon - at - 1);
        out += fraction.replace(QLatin1Char('^'), QLatin1Char('/')).replace(QLatin1Char('#'), QLatin1Char('/'));
        return semicolon + 1;
    } else {
        plain.formatted = true;
        // a code that lacks its end takes no text with it
        if (semicolon >= 0)
            return semicolon + 1;
    }
    return at + 1;
}

} // namespace

QTextCodec* dxfCodec(int page) {
    switch (page) {
    case 932:
        return QTextCodec::codecForName("Shift_JIS");
    case 936:
        return QTextCodec::codecForName("GBK");
    case 949:
        return QTextCodec::codecForName("EUC-KR");
    case 950:
        return QTextCodec::codecForName("Big5");
    default:
        return QTextCodec::codecForName("windows-" + QByteArray::number(page));
    }
}

DxfPlainText dxfPlainText(const QString& text) {
    DxfPlainText plain;
    QString out;
    for (int at = 0; at < text.size();) {
        int taken = percentCode(text, at, plain, out);
        if (taken == 0)
            taken = unicodeEscape(text, at, out);
        if (taken == 0)
            taken = multibyteEscape(text, at, plain, out);
        if (taken == 0) {
            if (text[at].unicode() >= 32)
                out += text[at];
            taken = 1;
        }
        at += taken;
    }
    plain.lines << out;
    return plain;
}

DxfPlainText dxfParagraphs(const QString& text) {
    DxfPlainText plain;
    QString out;
    const int last = text.lastIndexOf(QLatin1Char(';'));
    for (int at = 0; at < text.size();) {
        const QChar c = text[at];
        int taken = unicodeEscape(text, at, out);
        if (taken == 0)
            taken = multibyteEscape(text, at, plain, out);
        if (taken == 0)
            taken = percentCode(text, at, plain, out);
        if (taken > 0) {
            at += taken;
        } else if (c == QLatin1Char('\\') && at + 1 < text.size()) {
            at = formatCode(text, at + 1, last, plain, out);
        } else {
            if (c == QLatin1Char('^') && at + 1 < text.size() && text[at + 1] == QLatin1Char('J')) {
                out += QLatin1Char('\n');
                ++at;
            } else if (c != QLatin1Char('{') && c != QLatin1Char('}')) {
                out += c.unicode() >= 32 ? c : QChar(' ');
            }
            ++at;
        }
    }
    plain.lines = out.split(QLatin1Char('\n'));
    return plain;
}

} // namespace sim
