#pragma once

#include <QComboBox>

namespace ztv {

// Offers the serial devices that are connected, and the one that is set.
class DeviceBox : public QComboBox {
    Q_OBJECT

public:
    explicit DeviceBox(QWidget *parent = nullptr);

    // Sets the device; an empty text means none.
    void Device(const QString &device);
    QString Device() const { return device_; }

    void showPopup() override;

Q_SIGNALS:
    void DeviceChosen(const QString &device); // by the user

private:
    void Fill();

    QString device_;
};

} // namespace ztv
