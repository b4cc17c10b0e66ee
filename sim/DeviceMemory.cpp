#include "sim/DeviceMemory.h"

#include "sim/FirmwareImage.h"
#include "sim/WholeFile.h"

#include <QFile>

#include <algorithm>

namespace sim {
namespace {

constexpr char erased = '\xFF';
constexpr int markAddress = DeviceMemory::eepromSize - 1;
constexpr int calibrationSize = 64;
constexpr unsigned bootBlockSeed = 0xB007;
constexpr unsigned calibrationSeed = 0xEE;

qsizetype Wrapped(int address) {
    return ((address % DeviceMemory::eepromSize) + DeviceMemory::eepromSize) % DeviceMemory::eepromSize;
}

// Copies the part of a memory that lies in a range of addresses.
void CopyFrom(const QByteArray &memory, int start, int address, QByteArray &bytes) {
    const qsizetype first = std::max<qsizetype>(start, address);
    const qsizetype end = std::min<qsizetype>(start + memory.size(), address + bytes.size());
    if (first < end) {
        std::copy(memory.begin() + (first - start), memory.begin() + (end - start),
                  bytes.begin() + (first - address));
    }
}

bool Writable(qsizetype address) {
    return address >= DeviceMemory::applicationStart && address < DeviceMemory::programSize;
}

} // namespace

DeviceMemory::DeviceMemory(int version)
    : program_(Noise(bootBlockSeed, applicationStart) + Application(version, applicationSize)),
      eeprom_(Noise(calibrationSeed, calibrationSize).leftJustified(eepromSize, erased)),
      ids_(QByteArray("ZTV500-1").leftJustified(areaSize, erased)),
      config_(QByteArray::fromHex("00060E1E0083810003C003E003400000")) {
    SetMark(0);
}

QByteArray DeviceMemory::Read(int address, int count) const {
    QByteArray bytes(count, erased);
    CopyFrom(program_, 0, address, bytes);
    CopyFrom(ids_, idStart, address, bytes);
    CopyFrom(config_, configStart, address, bytes);
    return bytes;
}

void DeviceMemory::Write(int address, const QByteArray &bytes) {
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (Writable(address + i)) {
            program_[address + i] = static_cast<char>(program_.at(address + i) & bytes.at(i));
        }
    }
}

void DeviceMemory::Erase(int address, int blocks) {
    const int start = address - address % eraseBlock;
    for (int i = start; i < start + blocks * eraseBlock; ++i) {
        if (Writable(i)) {
            program_[i] = erased;
        }
    }
}

QByteArray DeviceMemory::ReadEeprom(int address, int count) const {
    QByteArray bytes(count, erased);
    for (int i = 0; i < count; ++i) {
        bytes[i] = eeprom_.at(Wrapped(address + i));
    }
    return bytes;
}

void DeviceMemory::WriteEeprom(int address, const QByteArray &bytes) {
    for (const char byte : bytes) {
        eeprom_[Wrapped(address++)] = byte;
    }
}

int DeviceMemory::Mark() const {
    return static_cast<quint8>(eeprom_.at(markAddress));
}

void DeviceMemory::SetMark(int mark) {
    eeprom_[markAddress] = static_cast<char>(mark);
}

bool DeviceMemory::HasApplication() const {
    return program_.at(applicationStart) != erased || program_.at(applicationStart + 1) != erased;
}

std::optional<int> DeviceMemory::ApplicationVersion() const {
    return VersionOf(program_.sliced(applicationStart));
}

QString DeviceMemory::Load(const QString &fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("%1: %2").arg(fileName, file.errorString());
    }
    const QByteArray bytes = file.read(programSize + 1);
    if (bytes.size() != programSize) {
        return QStringLiteral("%1 is no flash: it hasn't %2 bytes").arg(fileName).arg(programSize);
    }
    program_ = bytes;
    return {};
}

QString DeviceMemory::Save(const QString &fileName) const {
    return WriteWholeFile(fileName, program_);
}

} // namespace sim
