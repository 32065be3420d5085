// SPDX-License-Identifier: MIT
#include "drawings.h"

#include <QFile>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace drawings {

namespace {

/// A wavy ring about a place of its own; no two are alike.
QPointF place(int contour, int i) {
    const double angle = 2.0 * M_PI * i / kSegments * 0.97;
    const double radius = 3.0 + 1.5 * std::sin(7 * angle + contour) + 0.4 * std::sin(23 * angle + 0.3 * contour);
    const double cx = 8.0 + std::fmod(contour * 7.368, kPage - 16.0);
    const double cy = 8.0 + std::fmod(contour * 3.1415926, kPage - 16.0);
    return {cx + radius * std::cos(angle), cy + radius * std::sin(angle)};
}

class Writer {
public:
    explicit Writer(const QString& path)
        : m_file(std::fopen(path.toLocal8Bit().constData(), "wb")) {}
    ~Writer() {
        if (m_file)
            std::fclose(m_file);
    }
    template<class... Values>
    void text(const char* form, Values... values) {
        if (m_file)
            std::fprintf(m_file, form, values...);
    }
    bool end() {
        const bool good = m_file && !std::ferror(m_file) && std::fclose(m_file) == 0;
        m_file = nullptr;
        return good;
    }

private:
    std::FILE* m_file;
};

QByteArray wholeFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

bool writeSvg(const QString& path, int segments) {
    static const char* const colors[] = {"#000000", "#ff0000", "#008000", "#0000ff"};
    Writer out(path);
    out.text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%gmm\" "
             "height=\"%gmm\" viewBox=\"0 0 %g %g\">\n<g fill=\"none\" stroke-width=\"0.05\">\n",
             kPage, kPage, kPage, kPage);
    for (int contour = 0; contour < segments / kSegments; ++contour) {
        out.text("<path stroke=\"%s\" d=\"M", colors[contour % 4]);
        for (int i = 0; i <= kSegments; ++i) {
            const QPointF p = place(contour, i);
            out.text("%s%.4f %.4f", i == 1 ? " L" : i ? " " : "", p.x(), p.y());
        }
        out.text("\"/>\n");
    }
    out.text("</g>\n</svg>\n");
    return out.end();
}

bool writeDxf(const QString& path, int segments) {
    Writer out(path);
    out.text("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n9\n$INSUNITS\n70\n4\n0\nENDSEC\n0\nSECTION\n2\nTABLES\n0\n"
             "TABLE\n2\nLAYER\n70\n4\n");
    for (int layer = 0; layer < 4; ++layer)
        out.text("0\nLAYER\n2\nL%d\n70\n0\n62\n%d\n6\nCONTINUOUS\n", layer, layer + 1);
    out.text("0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n");
    for (int contour = 0; contour < segments / kSegments; ++contour) {
        if (contour % 2 == 0) {
            out.text("0\nLWPOLYLINE\n5\n%X\n100\nAcDbEntity\n8\nL%d\n100\nAcDbPolyline\n90\n%d\n70\n0\n",
                     contour * 200 + 100, contour % 4, kSegments + 1);
            for (int i = 0; i <= kSegments; ++i)
                out.text("10\n%.4f\n20\n%.4f\n", place(contour, i).x(), place(contour, i).y());
            continue;
        }
        for (int i = 0; i < kSegments; ++i) {
            const QPointF a = place(contour, i);
            const QPointF b = place(contour, i + 1);
            out.text(
                "0\nLINE\n5\n%X\n100\nAcDbEntity\n8\nL%d\n100\nAcDbLine\n10\n%.4f\n20\n%.4f\n30\n0.0\n11\n%.4f\n21\n"
                "%.4f\n31\n0.0\n",
                contour * 200 + 100 + i, contour % 4, a.x(), a.y(), b.x(), b.y());
        }
    }
    out.text("0\nENDSEC\n0\nEOF\n");
    return out.end();
}

std::vector<QPolygonF> readSvg(const QString& path) {
    const QByteArray text = wholeFile(path);
    std::vector<QPolygonF> contours;
    const char* at = text.constData();
    while ((at = std::strstr(at, " d=\"M"))) {
        at += 5;
        QPolygonF contour;
        while (*at && *at != '"') {
            char* end = nullptr;
            const double x = std::strtod(at, &end);
            const double y = std::strtod(end, &end);
            contour.append(QPointF(x, -y));
            at = end;
            while (*at == ' ' || *at == 'L')
                ++at;
        }
        contours.push_back(contour);
    }
    return contours;
}

std::vector<QPolygonF> readDxf(const QString& path) {
    std::vector<QPolygonF> contours;
    QPointF from;
    QPointF to;
    QByteArray entity;
    const QList<QByteArray> lines = wholeFile(path).split('\n');
    const auto finishLine = [&] {
        if (entity != "LINE")
            return;
        if (contours.empty() || contours.back().isEmpty() || contours.back().last() != from)
            contours.push_back(QPolygonF(QVector<QPointF>{from}));
        contours.back().append(to);
    };
    for (int i = 0; i + 1 < lines.size(); i += 2) {
        const int code = lines[i].toInt();
        const QByteArray& value = lines[i + 1];
        if (code == 0) {
            finishLine();
            entity = value;
            if (entity == "LWPOLYLINE")
                contours.emplace_back();
        } else if (code == 10) {
            from.setX(std::strtod(value.constData(), nullptr));
        } else if (code == 20) {
            from.setY(std::strtod(value.constData(), nullptr));
            if (entity == "LWPOLYLINE")
                contours.back().append(from);
        } else if (code == 11) {
            to.setX(std::strtod(value.constData(), nullptr));
        } else if (code == 21) {
            to.setY(std::strtod(value.constData(), nullptr));
        }
    }
    return contours;
}

} // namespace drawings
