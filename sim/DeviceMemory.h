#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sim {

// The processor's memories as its boot loader reaches them. No address is out of bounds: beyond a memory
// everything reads 0xFF and nothing can be written.
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

    // As it leaves the factory, with an application of this version.
    explicit DeviceMemory(int version);

    // Program flash, ids and configuration in one range of addresses.
    QByteArray Read(int address, int count) const;
    // Flash: a write only clears bits. All but the application area is protected: nothing happens there.
    void Write(int address, const QByteArray &bytes);
    // Whole blocks, from the one that holds the address.
    void Erase(int address, int blocks);

    // The addresses of the EEPROM wrap around.
    QByteArray ReadEeprom(int address, int count) const;
    void WriteEeprom(int address, const QByteArray &bytes);

    // The last byte of the EEPROM: 0 has a restart lead to the application, anything else to the loader.
    int Mark() const;
    void SetMark(int mark);
    bool HasApplication() const;
    // Without an application the processor runs through erased flash into its boot block.
    bool StartsApplication() const { return Mark() == 0 && HasApplication(); }
    // None when the application isn't one of this simulator's.
    std::optional<int> ApplicationVersion() const;

    // The program flash as a raw file. They return what went wrong, or an empty text; a load that failed
    // changes nothing, and a file is replaced as a whole.
    QString Load(const QString &fileName);
    QString Save(const QString &fileName) const;

private:
    QByteArray program_;
    QByteArray eeprom_;
    QByteArray ids_;
    QByteArray config_;
};

} // namespace sim
