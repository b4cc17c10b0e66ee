// Draws SVG files as PNG files of several sizes, so that the program needs no SVG module. The arguments are
// an output folder, the sizes in percent of the drawing's own size, and the files. NAME.svg becomes
// NAME/PERCENT.png.

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace ztv {

namespace {

bool Draw(QSvgRenderer &drawing, double percent, const QString &fileName) {
    const QSize size = (drawing.defaultSize().toSizeF() * percent / 100).toSize();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, image.rect());
    painter.end();
    return image.save(fileName);
}

bool DrawAll(const QString &svg, const QStringList &percents, const QString &folder) {
    QSvgRenderer drawing(svg);
    if (!drawing.isValid() || !QDir().mkpath(folder)) {
        return false;
    }
    return std::ranges::all_of(percents, [&](const QString &percent) {
        return Draw(drawing, percent.toDouble(), QStringLiteral("%1/%2.png").arg(folder, percent));
    });
}

int RenderPictures(const QStringList &arguments) {
    QStringList percents;
    QStringList files;
    for (const QString &argument : arguments.mid(1)) {
        (argument.endsWith(QStringLiteral(".svg")) ? files : percents).append(argument);
    }
    for (const QString &file : files) {
        const QString folder = arguments.first() + u'/' + QFileInfo(file).completeBaseName();
        if (!DrawAll(file, percents, folder)) {
            std::fprintf(stderr, "render-pictures: %s can't be drawn\n", qPrintable(file));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

} // namespace

} // namespace ztv

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        std::fputs("usage: render-pictures FOLDER PERCENT... FILE.svg...\n", stderr);
        return EXIT_FAILURE;
    }
    return ztv::RenderPictures(arguments);
}
