#pragma once

#include "tabs/ui/ImageListCheckout.h"
#include "widgets/PageScale.h"

#include <QLabel>

namespace ztv {

// Shows a state of the sensor as a picture. Its accessible description is the state.
class Indicator : public QLabel {
    Q_OBJECT

public:
    Indicator(const QString &spokenName, QWidget *parent);

    ImageListCheckout::Key Picture() const { return picture_; }
    void Picture(ImageListCheckout::Key key);

    // Shows the picture as that of a disabled control, or as usual.
    void Dim(bool dimmed);

    // Sets the size of the picture by the page's scale.
    void Rescale(const PageScale &scale);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ImageListCheckout::Key picture_ = ImageListCheckout::Key::Gray;
    bool dimmed_ = false;
    int side_;
};

} // namespace ztv
