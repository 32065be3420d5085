// SPDX-License-Identifier: MIT
// The import of drawings of 100,000 and 1,000,000 segments beside two programs that people use for such files, on the
// same files in the same run, turn by turn: an SVG to a smooth PNG of 96 dots to the inch by inkscape, a DXF to a PDF
// by librecad. Ours is a process of its own that imports as the program does and writes the same kind of picture. Told
// are the time from start to end, the largest memory, and the ratios; and for our import how far its points are from
// the file's own numbers, which a reader of the bench finds by itself.
#include "drawings.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/importers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Shares of the reference's time and memory that ours may take.
struct Bounds {
    double time;
    double memory;
};
constexpr Bounds kSvg{0.2, 0.5};
constexpr Bounds kDxf{0.5, 0.5};

struct Figure {
    double seconds = 0.0;
    double mebibytes = 0.0;
    bool good = false;
};

double now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

/// Runs a program to its end; good when it wrote the picture.
Figure run(QStringList const& command, QString const& picture) {
    QFile::remove(picture);
    QList<QByteArray> words;
    for (QString const& word : command)
        words.append(word.toLocal8Bit());
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    double const begin = now();
    pid_t const child = ::fork();
    if (child == 0) {
        int const nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, 0);
        ::dup2(nothing, 1);
        ::dup2(nothing, 2);
        ::execvp(arguments.front(), arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    ::wait4(child, &status, 0, &used);
    Figure figure;
    figure.seconds = now() - begin;
    figure.mebibytes = double(used.ru_maxrss) / 1024.0;
    figure.good = WIFEXITED(status) && WEXITSTATUS(status) == 0 && QFileInfo(picture).size() > 0;
    return figure;
}

Figure median(std::vector<Figure> figures) {
    Figure middle = figures.front();
    auto const of = [&figures](double Figure::*member) {
        std::sort(figures.begin(), figures.end(),
                  [member](Figure const& a, Figure const& b) { return a.*member < b.*member; });
        return figures[figures.size() / 2].*member;
    };
    middle.seconds = of(&Figure::seconds);
    middle.mebibytes = of(&Figure::mebibytes);
    middle.good = std::all_of(figures.begin(), figures.end(), [](Figure const& f) { return f.good; });
    return middle;
}

/// Largest distance, in micrometres, between a point of the import and that of the file; below 0 when they do not
/// match.
double deviation(QString const& path, std::vector<QPolygonF> const& contours, bool page) {
    sim::ImportOptions options;
    options.placement = sim::ImportPlacement::CenterPage;
    if (page)
        options.center = QPointF(drawings::kPage / 2.0, -drawings::kPage / 2.0);
    sim::ImportResult const result = sim::importDrawing(path, options);
    if (!result.ok() || result.objects.size() != contours.size())
        return -1.0;
    double worst = 0.0;
    for (std::size_t i = 0; i < contours.size(); ++i) {
        auto const* line = std::get_if<sim::PolylineShape>(&result.objects[i]->shape());
        if (!line || !result.objects[i]->transform().isIdentity() || line->points.size() != contours[i].size())
            return -1.0;
        for (int k = 0; k < line->points.size(); ++k) {
            QPointF const off = line->points[k] - contours[i][k];
            worst = std::max(worst, std::hypot(off.x(), off.y()) * 1000.0);
        }
    }
    return worst;
}

/// False when a bound was not kept, or could not be measured.
bool compare(char const* kind, int segments, QString const& file, QStringList const& reference,
             QString const& referencePicture, QString const& ownPicture, int rounds, Bounds bounds) {
    bool const there = !QStandardPaths::findExecutable(reference.first()).isEmpty();
    std::vector<Figure> own;
    std::vector<Figure> other;
    for (int i = 0; i < rounds; ++i) {
        own.push_back(run({QStringLiteral(IMPORT_PICTURE), file, ownPicture}, ownPicture));
        if (there)
            other.push_back(run(reference, referencePicture));
    }
    Figure const a = median(own);
    std::printf("%s %8d segments, %5.1f MB  import   %7.3f s %7.1f MiB%s\n", kind, segments,
                double(QFileInfo(file).size()) / 1e6, a.seconds, a.mebibytes, a.good ? "" : "  FAILED");
    if (!there) {
        std::printf("    %s is not installed: nothing to compare with\n", qPrintable(reference.first()));
        return false;
    }
    Figure const b = median(other);
    double const time = a.seconds / b.seconds;
    double const memory = a.mebibytes / b.mebibytes;
    bool const kept = time <= bounds.time && memory <= bounds.memory;
    std::printf("    %-32s %7.3f s %7.1f MiB%s   ratio %.3f time, %.3f memory   %s %.1f and %.1f\n",
                qPrintable(reference.first()), b.seconds, b.mebibytes, b.good ? "" : "  FAILED", time, memory,
                kept ? "within" : "ABOVE", bounds.time, bounds.memory);
    std::fflush(stdout);
    return kept && a.good && b.good;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir dir;
    // the programs' own settings are not touched
    qputenv("HOME", dir.path().toLocal8Bit());
    bool good = true;
    for (int segments : {100000, 1000000}) {
        int const rounds = segments > 100000 ? 3 : 5;
        QString const svg = dir.filePath(QStringLiteral("drawing.svg"));
        QString const dxf = dir.filePath(QStringLiteral("drawing.dxf"));
        if (!drawings::writeSvg(svg, segments) || !drawings::writeDxf(dxf, segments)) {
            std::fprintf(stderr, "the drawings cannot be written\n");
            return 1;
        }
        QString const png = dir.filePath(QStringLiteral("reference.png"));
        // the reference names its picture as the drawing
        QString const pdf = dir.filePath(QStringLiteral("drawing.pdf"));
        good &= compare("SVG", segments, svg,
                        {QStringLiteral("inkscape"), QStringLiteral("--export-type=png"),
                         QStringLiteral("--export-filename=") + png, svg},
                        png, dir.filePath(QStringLiteral("own.png")), rounds, kSvg);
        good &= compare("DXF", segments, dxf,
                        {QStringLiteral("librecad"), QStringLiteral("dxf2pdf"), QStringLiteral("-a"),
                         QStringLiteral("-o"), pdf, dxf},
                        pdf, dir.filePath(QStringLiteral("own.pdf")), rounds, kDxf);
        double const svgOff = deviation(svg, drawings::readSvg(svg), true);
        double const dxfOff = deviation(dxf, drawings::readDxf(dxf), false);
        std::printf("    off the file's own coordinates at most: SVG %.6f um, DXF %.6f um\n", svgOff, dxfOff);
        good = good && svgOff >= 0.0 && svgOff < 1.0 && dxfOff >= 0.0 && dxfOff < 1.0;
    }
    return good ? 0 : 1;
}
