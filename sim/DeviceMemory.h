#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sim {

// The processor's memories as its boot loader accesses them. No address is out of bounds: outside a memory
// every byte reads 0xFF and writes have no effect.
class DeviceMemory {
public:
    static constexpr int programSize = 0xC000;
    static constexpr int applicationStart = 0x0800; // the boot block is below it
    static constexpr int applicationSize = programSize - applicationStart;
    static constexpr int eepromSize = 1024;
    static constexpr int idStart = 0x200000;
    static constexpr int configStart = 0x300000;
    static constexpr int areaSize = 16; // of the ids and of the configuration
    static constexpr int eraseBlock = 64;

    // Creates the factory state, with an application of this version.
    explicit DeviceMemory(int version);

    // Reads program flash, ids and configuration, which share one address range.
    QByteArray Read(int address, int count) const;
    // Writes flash, where a write only clears bits. Everything outside the application area is protected and
    // stays unchanged.
    void Write(int address, const QByteArray &bytes);
    // Erases whole blocks, from the one that contains the address.
    void Erase(int address, int blocks);

    // Access the EEPROM. Its addresses wrap around.
    QByteArray ReadEeprom(int address, int count) const;
    void WriteEeprom(int address, const QByteArray &bytes);

    // The last byte of the EEPROM. After a restart, 0 starts the application; any other value starts the
    // loader.
    int Mark() const;
    void SetMark(int mark);
    bool HasApplication() const;
    // Without an application the processor runs through erased flash into its boot block.
    bool StartsApplication() const { return Mark() == 0 && HasApplication(); }
    // Returns none when the application isn't one of this simulator.
    std::optional<int> ApplicationVersion() const;

    // Load or save the program flash as a raw file. Return a description of the error, or an empty text. A
    // failed load changes nothing; a save replaces the file as a whole.
    QString Load(const QString &fileName);
    QString Save(const QString &fileName) const;

private:
    QByteArray program_;
    QByteArray eeprom_;
    QByteArray ids_;
    QByteArray config_;
};

} // namespace sim
