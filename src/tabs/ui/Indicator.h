#pragma once

#include "tabs/ui/ImageListCheckout.h"

#include <QLabel>

namespace ztv {

// Shows a state of the sensor as a picture. Its accessible description is the state.
class Indicator : public QLabel {
    Q_OBJECT

public:
    Indicator(const QString &spokenName, QWidget *parent);

    ImageListCheckout::Key Picture() const { return picture_; }
    void Picture(ImageListCheckout::Key key);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ImageListCheckout::Key picture_ = ImageListCheckout::Key::Gray;
};

} // namespace ztv
