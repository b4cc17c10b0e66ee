#include "widgets/Picture.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace ztv {

Picture::Picture(const QString &folder) : folder_(folder) {
    for (const QFileInfo &file : QDir(folder).entryInfoList({QStringLiteral("*.png")})) {
        percents_.append(file.baseName().toInt());
    }
    std::ranges::sort(percents_);
    constexpr int ownSize = 100;
    size_ = QPixmap(FileOf(ownSize)).size();
}

QPixmap Picture::OfHeight(int height) const {
    constexpr int percent = 100;
    const auto found = std::ranges::lower_bound(percents_, height * percent, {},
                                                [this](int part) { return part * size_.height(); });
    return QPixmap(FileOf(found != percents_.end() ? *found : percents_.last()));
}

QIcon Picture::Icon() const {
    QIcon icon;
    for (const int percent : percents_) {
        icon.addFile(FileOf(percent));
    }
    return icon;
}

QIcon IconNamed(const QString &name) {
    return Picture(QStringLiteral(":/icons/") + name).Icon();
}

} // namespace ztv
