#include "link/ui/DeviceBox.h"

#include "link/SerialPorts.h"

namespace ztv {

namespace {

constexpr int leastCharacters = 24; // names by id are long, and are elided

} // namespace

DeviceBox::DeviceBox(QWidget *parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(leastCharacters);
    connect(this, &QComboBox::activated, this, [this](int index) {
        device_ = itemData(index).toString();
        setToolTip(device_);
        Q_EMIT DeviceChosen(device_);
    });
}

void DeviceBox::Device(const QString &device) {
    if (device != device_ || count() == 0) {
        device_ = device;
        setToolTip(device_);
        Fill();
    }
}

// An adapter may have been plugged in since the form opened.
void DeviceBox::showPopup() {
    Fill();
    QComboBox::showPopup();
}

void DeviceBox::Fill() {
    clear();
    for (const QString &device : SerialPorts::AvailableDevices()) {
        addItem(device, device);
        setItemData(count() - 1, device, Qt::ToolTipRole);
    }
    if (!device_.isEmpty() && findData(device_) < 0) {
        const QString mark = SerialPorts::IsThere(device_) ? QString() : QStringLiteral(" (not connected)");
        insertItem(0, device_ + mark, device_);
    }
    setCurrentIndex(findData(device_));
}

} // namespace ztv
