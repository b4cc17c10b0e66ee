#pragma once

#include <QSvgRenderer>
#include <QWidget>

namespace ztv {

// A drawing from the program's resources, sharp at any scale, on a light ground that suits any colour scheme.
class StepPicture : public QWidget {
    Q_OBJECT

public:
    // Fixes the widget's size to the drawing's own size in pixels.
    StepPicture(const QString &file, QWidget *parent);

    QSize sizeHint() const override { return drawing_.defaultSize(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSvgRenderer drawing_;
};

} // namespace ztv
