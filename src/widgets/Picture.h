#pragma once

#include <QIcon>
#include <QList>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace ztv {

// A picture of the program, which the build has drawn at several sizes below a folder of the resources.
class Picture {
public:
    explicit Picture(const QString &folder);

    // The size at the scale 1, in pixels.
    QSize Size() const { return size_; }

    // Returns the smallest drawing that has at least `height` device pixels, or else the largest.
    QPixmap OfHeight(int height) const;

    // Returns an icon with all drawings.
    QIcon Icon() const;

private:
    QString FileOf(int percent) const { return QStringLiteral("%1/%2.png").arg(folder_).arg(percent); }

    QString folder_;
    QList<int> percents_; // of the size, ascending
    QSize size_;
};

// Returns the icon of that name.
QIcon IconNamed(const QString &name);

} // namespace ztv
