#pragma once

#include "tabs/ui/ImageListCheckout.h"

#include <QAbstractButton>

// A switch that only asks for the other state: its picture shows what the sensor is said to be in. It is read
// out by its accessible name, with the state for its description.
class SwitchButton : public QAbstractButton {
    Q_OBJECT

public:
    SwitchButton(const QString &spokenName, QWidget *parent);

    ImageListCheckout::Key Picture() const { return picture_; }
    void Picture(ImageListCheckout::Key key);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ImageListCheckout::Key picture_ = ImageListCheckout::Key::Off;
};
