#include "firmware/BootComm.h"

#include "firmware/HexDigits.h"
#include "firmware/MemoryImageLine.h"
#include "firmware/TextFileReader.h"
#include "firmware/TextFileWriter.h"

#include <algorithm>
#include <array>

namespace ztv {

namespace {

constexpr std::int32_t largestReply = 10;
constexpr std::int32_t triesOfPacket = 3;
constexpr std::int32_t largestReplyOfErase = 255;
constexpr std::int32_t triesOfErase = 5;
using PacketBuffer = std::array<std::uint8_t, 11>;
constexpr PacketBuffer versionRead{BootCommand::VersionOrReset, 2};

constexpr std::uint32_t runModeAddress = 0x7FFF;
constexpr std::uint8_t startsApplication = 0;

constexpr int addressDigits = 6;
constexpr qsizetype longestLine = 1024; // an image's lines have at most 55 characters

std::uint8_t ByteOf(std::int32_t address, int index) {
    constexpr int bitsPerByte = 8;
    return static_cast<std::uint8_t>(static_cast<std::uint32_t>(address) >> (index * bitsPerByte));
}

} // namespace

bool BootComm::OpenPort() {
    if (settings_.PortHandle <= 0) {
        settings_.PortHandle =
            library_->OpenPIC(settings_.PortName.toLatin1(), settings_.BitRate, settings_.TimeoutMs);
    }
    return settings_.PortHandle >= 0;
}

void BootComm::ClosePort() {
    if (settings_.PortHandle > 0) {
        library_->ClosePIC(settings_.PortHandle);
        settings_.PortHandle = -1;
    }
}

QString BootComm::ReadBootVersion() {
    PacketBuffer packet = versionRead;
    if (library_->SendGetPacket(settings_.PortHandle, packet, 2, largestReply, triesOfPacket) <= 0) {
        return {};
    }
    return QStringLiteral("V%1.%2").arg(packet[3]).arg(packet[2]);
}

bool BootComm::LoaderIsSilent() {
    PacketBuffer packet = versionRead;
    return library_->SendGetPacket(settings_.PortHandle, packet, 2, largestReply, 1) == BootResult::NoAnswer;
}

QString BootComm::ResetProcessor() {
    PacketBuffer packet{BootCommand::VersionOrReset, 0};
    library_->SendGetPacket(settings_.PortHandle, packet, 2, largestReply, triesOfPacket);
    return {};
}

std::int16_t BootComm::SetRunMode() {
    const TransferRecord record = NewRecord(BootCommand::WriteEeprom, 1, runModeAddress);
    const std::array buffer{startsApplication};
    return static_cast<std::int16_t>(library_->WritePIC(settings_.PortHandle, record, buffer));
}

std::int16_t BootComm::ReadEepromByte(std::int16_t address) {
    const TransferRecord record = NewRecord(BootCommand::ReadEeprom, 1, static_cast<std::uint16_t>(address));
    std::array<std::uint8_t, 1> buffer{};
    const std::int32_t result = library_->ReadPIC(settings_.PortHandle, record, buffer);
    return result < 1 ? std::int16_t{-1} : std::int16_t{buffer[0]};
}

TransferResult BootComm::ReadRegion(std::int32_t &start, std::int32_t &end, std::uint8_t bytesPerAddress,
                                    std::uint8_t command, const QString &fileName) {
    TextFileWriter file(fileName);
    std::array<std::uint8_t, 256> buffer{};
    start *= bytesPerAddress;
    end *= bytesPerAddress;
    settings_.ContinueFlag = 1;
    QByteArray line;
    for (std::int32_t address = start; address <= end;) {
        const bool goesOn = GoesOn();
        if (file.HasChanged()) { // by a command that ran meanwhile; its image is kept
            return goesOn ? TransferResult::ImageChanged : TransferResult::Aborted;
        }
        if (!goesOn) {
            file.Close();
            return TransferResult::Aborted;
        }
        TransferRecord record = NewRecord(
            command,
            static_cast<std::uint8_t>(std::min<std::int32_t>(settings_.MaxPacketBytes, end - address + 1)),
            static_cast<std::uint32_t>(address / bytesPerAddress));
        record.BlockBytes = record.BytesPerAddress = bytesPerAddress;
        const std::int32_t result = library_->ReadPIC(settings_.PortHandle, record, buffer);
        if (result < 0) {
            file.Close();
            return static_cast<TransferResult>(result);
        }
        for (std::int32_t index = 0; index < result; ++index) {
            if (address % MemoryImageLine::byteCount == 0) {
                line = HexDigits(address, addressDigits).toLatin1();
            }
            line += ' ' + HexDigits(buffer.at(static_cast<std::size_t>(index)), 2).toLatin1();
            ++address;
            if (address % MemoryImageLine::byteCount == 0) {
                file.WriteLine(line);
            }
        }
        events_.status(QStringLiteral("Reading: %1").arg(address));
        events_.progress(static_cast<double>(address - start) / (end - start + 1));
    }
    file.Close();
    return TransferResult::Finished;
}

TransferResult BootComm::EraseRegion(std::int32_t start, std::int32_t end) {
    ++erases_;
    settings_.ContinueFlag = 1;
    for (std::int32_t address = start; address <= end;) {
        if (!GoesOn()) {
            return TransferResult::Aborted;
        }
        PacketBuffer packet{BootCommand::EraseProgram, 1, ByteOf(address, 0), ByteOf(address, 1),
                            ByteOf(address, 2)};
        const std::int32_t result =
            library_->SendGetPacket(settings_.PortHandle, packet, 5, largestReplyOfErase, triesOfErase);
        if (result < 0) {
            return static_cast<TransferResult>(result);
        }
        address += settings_.EraseBlockBytes;
        events_.status(QStringLiteral("Erasing: %1").arg(address));
        events_.progress(static_cast<double>(address - start) / (end - start + 1));
    }
    return TransferResult::Finished;
}

ImageWritten BootComm::WriteProgramImage(std::uint8_t blockBytes, std::uint8_t bytesPerAddress,
                                         std::uint8_t writeCommand, const QString &fileName) {
    TextFileReader lines(fileName, longestLine);
    TextFileWriter errors(settings_.ErrorFile);
    settings_.ContinueFlag = 1;
    ImageWritten image;
    while (!lines.AtEnd()) {
        events_.yield();
        const QByteArray line = lines.ReadLine().toByteArray(); // a yield may read on in the file
        if (settings_.ContinueFlag == 0) {
            if (image.result != TransferResult::VerifyFailed) {
                image.result = TransferResult::Aborted;
            }
            break;
        }
        if (lines.HasChanged()) { // by a command that ran meanwhile: the rest isn't of that image
            image.result = TransferResult::ImageChanged;
            break;
        }
        TransferRecord record = NewRecord(writeCommand, MemoryImageLine::byteCount,
                                          MemoryImageLine::AddressToWrite(line) / bytesPerAddress);
        record.BlockBytes = blockBytes;
        record.BytesPerAddress = bytesPerAddress;
        std::array<std::uint8_t, MemoryImageLine::byteCount> bytes{};
        for (int index = 0; index < MemoryImageLine::byteCount; ++index) {
            bytes.at(static_cast<std::size_t>(index)) = MemoryImageLine::Byte(line, index);
        }
        const std::int32_t written = library_->WritePIC(settings_.PortHandle, record, bytes);
        if (written < 0) {
            image.result = static_cast<TransferResult>(written);
            break;
        }
        --record.Command; // reading is the command before writing
        const std::int32_t verified = library_->VerifyPIC(settings_.PortHandle, record, bytes);
        if (verified >= 0) {
            // Deliberate: a good line clears the error of earlier lines that differed. They remain in the
            // error file.
            image.result = TransferResult::Finished;
        } else if (verified == BootResult::BytesDiffer) {
            errors.WriteLine(line);
            ++image.differingLines;
            image.result = TransferResult::VerifyFailed;
        } else {
            image.result = static_cast<TransferResult>(verified);
            break;
        }
        events_.status(QStringLiteral("Writing: %1").arg(record.Address));
        events_.progress(lines.Fraction());
    }
    errors.Close();
    return image;
}

bool BootComm::GoesOn() {
    events_.yield();
    return settings_.ContinueFlag != 0;
}

TransferRecord BootComm::NewRecord(std::uint8_t command, std::uint8_t length, std::uint32_t address) const {
    return {.Command = command,
            .DataLength = length,
            .Address = address,
            .BlockBytes = 1,
            .BytesPerAddress = 1,
            .Retries = settings_.Retries};
}

} // namespace ztv
