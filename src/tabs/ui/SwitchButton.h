#pragma once

#include "tabs/ui/ImageListCheckout.h"
#include "widgets/PageScale.h"

#include <QAbstractButton>

namespace ztv {

// A switch that only requests the other state; its picture shows the state that the sensor reports. Its
// accessible description is that state.
class SwitchButton : public QAbstractButton {
    Q_OBJECT

public:
    SwitchButton(const QString &spokenName, QWidget *parent);

    ImageListCheckout::Key Picture() const { return picture_; }
    void Picture(ImageListCheckout::Key key);

    // Shows the picture as that of a disabled control, or as usual.
    void Dim(bool dimmed);

    // Sets the size of the picture by the page's scale.
    void Rescale(const PageScale &scale);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ImageListCheckout::Key picture_ = ImageListCheckout::Key::Off;
    bool dimmed_ = false;
    QSize pictureSize_;
};

} // namespace ztv
