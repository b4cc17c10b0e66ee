#pragma once

#include "widgets/Picture.h"

#include <QPixmap>
#include <QWidget>

namespace ztv {

// A drawing from the program's resources, sharp at any scale, on a light ground that suits any colour scheme.
class StepPicture : public QWidget {
    Q_OBJECT

public:
    // Fixes the widget's size to the drawing's own size in pixels.
    StepPicture(const QString &folder, QWidget *parent);

    QSize sizeHint() const override { return drawing_.Size(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Picture drawing_;
    QPixmap shown_; // at the scale that was painted last
};

} // namespace ztv
