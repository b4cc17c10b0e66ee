#include "link/SystemPorts.h"

#include <QCollator>
#include <algorithm>
#include <array>
#include <map>
#include <qt_windows.h>

#include <devguid.h>
#include <initguid.h>
#include <setupapi.h>

namespace ztv {

namespace {

constexpr DWORD longestText = 512; // letters

QString PortNameOf(HDEVINFO devices, SP_DEVINFO_DATA &device) {
    const HKEY key = SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
    if (key == INVALID_HANDLE_VALUE) {
        return {};
    }
    std::array<wchar_t, longestText> text = {};
    DWORD bytes = (longestText - 1) * sizeof(wchar_t);
    const LSTATUS status =
        RegQueryValueExW(key, L"PortName", nullptr, nullptr, reinterpret_cast<BYTE *>(text.data()), &bytes);
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? QString::fromWCharArray(text.data()) : QString();
}

QString DescriptionOf(HDEVINFO devices, SP_DEVINFO_DATA &device) {
    std::array<wchar_t, longestText> text = {};
    const BOOL found = SetupDiGetDeviceRegistryPropertyW(devices, &device, SPDRP_DEVICEDESC, nullptr,
                                                         reinterpret_cast<BYTE *>(text.data()),
                                                         (longestText - 1) * sizeof(wchar_t), nullptr);
    return found != 0 ? QString::fromWCharArray(text.data()) : QString();
}

// The descriptions of the devices that have an installed driver, by the name of the port.
std::map<QString, QString> Descriptions() {
    std::map<QString, QString> descriptions;
    const HDEVINFO devices = SetupDiGetClassDevsW(&GUID_DEVCLASS_PORTS, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE) {
        return descriptions;
    }
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD index = 0; SetupDiEnumDeviceInfo(devices, index, &device) != 0; ++index) {
        descriptions[PortNameOf(devices, device)] = DescriptionOf(devices, device);
    }
    SetupDiDestroyDeviceInfoList(devices);
    return descriptions;
}

// The ports that exist at this moment, also those without a driver of their own.
QStringList Names() {
    QStringList names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
        ERROR_SUCCESS) {
        return names;
    }
    for (DWORD index = 0;; ++index) {
        std::array<wchar_t, longestText> value = {};
        std::array<wchar_t, longestText> name = {};
        DWORD letters = longestText;
        DWORD bytes = (longestText - 1) * sizeof(wchar_t);
        const LSTATUS status = RegEnumValueW(key, index, value.data(), &letters, nullptr, nullptr,
                                             reinterpret_cast<BYTE *>(name.data()), &bytes);
        if (status != ERROR_SUCCESS) {
            break;
        }
        names.append(QString::fromWCharArray(name.data()));
    }
    RegCloseKey(key);
    return names;
}

} // namespace

std::vector<SystemPort> SystemPorts() {
    const std::map<QString, QString> descriptions = Descriptions();
    QStringList names = Names();
    for (const auto &[name, description] : descriptions) {
        if (name.startsWith(QStringLiteral("COM")) && !names.contains(name)) {
            names.append(name);
        }
    }
    QCollator byNumber;
    byNumber.setNumericMode(true);
    std::sort(names.begin(), names.end(), byNumber);
    std::vector<SystemPort> ports;
    for (const QString &name : names) {
        const auto found = descriptions.find(name);
        ports.push_back(
            {.name = name, .description = found == descriptions.end() ? QString() : found->second});
    }
    return ports;
}

} // namespace ztv
