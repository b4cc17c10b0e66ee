#pragma once

#include "firmware/BootFrame.h"
#include "firmware/BootLine.h"
#include "firmware/TransferRecord.h"

#include <QByteArray>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace ztv {

// A boot loader that answers each packet at once and accepts every write to its memory. Tests can replace the
// answer to a packet, or suppress it.
class FakeLoader {
public:
    // Opens the port. REQUIRES: the loader outlives the line.
    OpenBootLine Opener() {
        return [this](const QByteArray &portName, std::int32_t bitRate) -> std::unique_ptr<BootLine> {
            openedPorts.emplace_back(portName, bitRate);
            return opens ? std::make_unique<Line>(*this) : nullptr;
        };
    }

    std::vector<std::pair<QByteArray, std::int32_t>> openedPorts;
    std::vector<QByteArray> packets; // each try
    bool opens = true;
    bool answers = true;
    bool restarted = false; // runs the application, which doesn't answer
    int resetsToLose = 0;
    bool closed = false;
    bool gone = false;     // the device is unplugged; `opens` says whether the port can be opened again
    int longestWaitMs = 0; // for an answer
    std::map<std::uint32_t, std::uint8_t> program; // a missing byte reads as 0xFF
    std::map<std::uint32_t, std::uint8_t> eeprom;
    // Gives the answer to a packet; empty: no answer.
    std::function<QByteArray(const QByteArray &packet, const QByteArray &usual)> instead;

private:
    static constexpr std::uint32_t runModeMark = 0x7FFF;

    class Line : public BootLine {
    public:
        explicit Line(FakeLoader &loader) : loader_(loader) { loader_.closed = false; }
        ~Line() override { loader_.closed = true; }
        Line(const Line &) = delete;
        Line &operator=(const Line &) = delete;

        void ClearInput() override { input_.clear(); }
        bool Write(const QByteArray &bytes) override {
            if (loader_.gone) {
                return false;
            }
            BootFrame::Reader reader(300);
            for (const char byte : bytes) {
                reader.Take(byte);
            }
            const QByteArray packet = reader.Payload();
            loader_.packets.push_back(packet);
            QByteArray answer =
                loader_.answers && !loader_.restarted ? loader_.AnswerTo(packet) : QByteArray();
            if (loader_.instead) {
                answer = loader_.instead(packet, answer);
            }
            input_ = answer.isEmpty() ? answer : BootFrame::Encode(answer);
            return true;
        }
        std::optional<QByteArray> Read(int milliseconds) override {
            loader_.longestWaitMs = std::max(loader_.longestWaitMs, milliseconds);
            return std::exchange(input_, {});
        }

    private:
        FakeLoader &loader_;
        QByteArray input_;
    };

    QByteArray AnswerTo(const QByteArray &packet) {
        const auto at = [&packet](qsizetype index) {
            return static_cast<std::uint32_t>(static_cast<std::uint8_t>(packet.at(index)));
        };
        if (packet == QByteArray(2, '\0')) {
            const auto mark = eeprom.find(runModeMark);
            restarted = --resetsToLose < 0 && mark != eeprom.end() && mark->second == 0;
            return {};
        }
        if (packet.at(0) == BootCommand::VersionOrReset) {
            return packet.at(1) == 2 ? packet + QByteArray("\x05\x01", 2) : QByteArray();
        }
        const std::uint32_t address = at(2) | at(3) << 8 | at(4) << 16;
        const bool isEeprom = at(0) == BootCommand::ReadEeprom || at(0) == BootCommand::WriteEeprom;
        std::map<std::uint32_t, std::uint8_t> &memory = isEeprom ? eeprom : program;
        if (at(0) == BootCommand::EraseProgram) {
            memory.erase(memory.lower_bound(address), memory.lower_bound(address + 64));
            return packet.first(1);
        }
        if (at(0) == BootCommand::ReadProgram || at(0) == BootCommand::ReadEeprom) {
            QByteArray answer = packet.first(5);
            for (std::uint32_t index = 0; index < at(1); ++index) {
                const auto found = memory.find(address + index);
                answer.append(static_cast<char>(found == memory.end() ? 0xFF : found->second));
            }
            return answer;
        }
        for (qsizetype index = 5; index < packet.size(); ++index) {
            memory[address + static_cast<std::uint32_t>(index) - 5] = static_cast<std::uint8_t>(at(index));
        }
        return packet.first(1);
    }
};

} // namespace ztv
