#include "widgets/Picture.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdlib>
#include <gtest/gtest.h>

namespace ztv {

namespace {

QDir Drawings() {
    return QDir(QStringLiteral(ZTV_TESTS_DIR "/../src/widgets/icons"));
}

QImage Drawn(const QString &file, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(file).render(&painter, image.rect());
    return image;
}

// Returns the mean difference of the colour values, which is the greatest one between two sizes.
double Difference(const QImage &one, const QImage &other) {
    const QImage left = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage right = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (left.size() != right.size()) {
        return 255;
    }
    double sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width() * 4; ++x) {
            sum += std::abs(left.constScanLine(y)[x] - right.constScanLine(y)[x]);
        }
    }
    return sum / (left.width() * left.height() * 4);
}

} // namespace

TEST(PictureTest, HasEachIconAtEachScaleAsItsDrawing) {
    for (const QFileInfo &file : Drawings().entryInfoList({QStringLiteral("*.svg")})) {
        const Picture picture(QStringLiteral(":/icons/") + file.baseName());
        EXPECT_EQ(picture.Size(), QSvgRenderer(file.filePath()).defaultSize()) << qPrintable(file.baseName());
        for (const double scale : {1.0, 1.5, 2.0}) {
            const QSize size = (picture.Size().toSizeF() * scale).toSize();
            EXPECT_LT(Difference(picture.OfHeight(size.height()).toImage(), Drawn(file.filePath(), size)),
                      0.5)
                << qPrintable(file.baseName()) << " at " << scale;
        }
    }
}

TEST(PictureTest, TakesTheNextLargerDrawingOrElseTheLargest) {
    const Picture picture(QStringLiteral(":/icons/online"));
    EXPECT_EQ(picture.OfHeight(1).height(), 16);
    EXPECT_EQ(picture.OfHeight(16).height(), 16);
    EXPECT_EQ(picture.OfHeight(17).height(), 24);
    EXPECT_EQ(picture.OfHeight(72).height(), 72);
    EXPECT_EQ(picture.OfHeight(10'000).height(), 96);
}

TEST(PictureTest, AnIconIsSharpAtTheSizesOfToolbars) {
    const QIcon icon = IconNamed(QStringLiteral("save-file"));
    const QString drawing = Drawings().filePath(QStringLiteral("save-file.svg"));
    for (const int side : {16, 32, 48, 64, 96}) {
        const QImage shown = icon.pixmap(QSize(side, side), 1.0).toImage();
        EXPECT_LT(Difference(shown, Drawn(drawing, QSize(side, side))), 0.5) << side;
    }
}

} // namespace ztv
