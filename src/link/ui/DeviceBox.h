#pragma once

#include <QComboBox>

// The choice of a serial device: those that are there at the moment, and the one that is set.
class DeviceBox : public QComboBox {
    Q_OBJECT

public:
    explicit DeviceBox(QWidget *parent = nullptr);

    // Makes this the device that is set; an empty text: none is.
    void Device(const QString &device);
    QString Device() const { return device_; }

    void showPopup() override;

Q_SIGNALS:
    void DeviceChosen(const QString &device); // by the user

private:
    void Fill();

    QString device_;
};
