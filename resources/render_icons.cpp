// SPDX-License-Identifier: MIT
// render_icons ICONS STYLESHEET OUT: renders every ICONS/<path>.svg to OUT/<path>.png and writes OUT/tessera.qrc, in
// which the pictures have the resource path /<path>.png and the style sheet /myQSS.qss. A drawing on the 24 unit grid
// becomes 64 pixels, any other one pixel a unit. Exit code 0, or 1 with a message.

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

namespace {

constexpr int kGrid = 24;
constexpr int kIconPixels = 64;

bool render(QString const& source, QString const& target) {
    QSvgRenderer drawing(source);
    if (!drawing.isValid())
        return false;
    QSize size = drawing.viewBox().size();
    if (size == QSize(kGrid, kGrid))
        size = QSize(kIconPixels, kIconPixels);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    return QDir().mkpath(QFileInfo(target).path()) && image.save(target);
}

int fail(QString const& what) {
    QTextStream(stderr) << "render_icons: " << what << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4)
        return fail(QStringLiteral("usage: render_icons ICONS STYLESHEET OUT"));
    const QDir icons(QString::fromLocal8Bit(argv[1]));
    const QDir out(QString::fromLocal8Bit(argv[3]));
    QStringList drawings;
    QDirIterator files(icons.path(), {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        drawings.append(icons.relativeFilePath(files.next()));
    drawings.sort();

    QString list = QStringLiteral("<RCC><qresource>\n<file alias=\"myQSS.qss\">%1</file>\n")
                       .arg(QFileInfo(QString::fromLocal8Bit(argv[2])).absoluteFilePath());
    for (QString const& drawing : qAsConst(drawings)) {
        const QString name = drawing.left(drawing.size() - 4) + QStringLiteral(".png");
        if (!render(icons.filePath(drawing), out.filePath(name)))
            return fail(drawing + QStringLiteral(": cannot be rendered"));
        list += QStringLiteral("<file alias=\"%1\">%2</file>\n").arg(name, out.absoluteFilePath(name));
    }
    list += QStringLiteral("</qresource></RCC>\n");

    QFile file(out.filePath(QStringLiteral("tessera.qrc")));
    if (!file.open(QIODevice::WriteOnly) || file.write(list.toUtf8()) < 0 || !file.flush())
        return fail(file.fileName() + QStringLiteral(": ") + file.errorString());
    return 0;
}
