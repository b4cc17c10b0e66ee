#include "sim/Registers.h"

#include "sim/Parameters.h"

#include <utility>

namespace sim {
namespace {

bool IsLine(int number) {
    return number >= parameter::NetworkAddress && number <= parameter::AddressingMode;
}

bool LineCanBe(int number, int value) {
    switch (number) {
    case parameter::NetworkAddress:
        return value >= 1 && value <= 247;
    case parameter::BaudRateCode:
        return value >= 0 && value <= 4;
    case parameter::ParityStopCode:
        return value >= 0 && value <= 3;
    default:
        return value == 0 || value == 1;
    }
}

} // namespace

Registers::Registers(const ParameterTable &table) : table_(table) {
    for (int i = 0; i < table.Count(); ++i) {
        values_.push_back(table.Row(i).readOnly ? table.Row(i).value : table.Row(i).preset);
    }
    stored_ = values_;
}

int Registers::FromWord(int number, quint16 word) const {
    return table_.Row(number).isSigned ? static_cast<qint16>(word) : word;
}

bool Registers::Writable(int number) const {
    return number == parameter::AddressingMode || !table_.Row(number).readOnly;
}

bool Registers::Accepts(int number, int value) const {
    if (IsCommand(number) || number == parameter::AddressingMode) {
        return Holds(number, value);
    }
    const ParameterRow &row = table_.Row(number);
    return value >= row.min && value <= row.max && Holds(number, value);
}

bool Registers::Holds(int number, int value) const {
    if (number == parameter::SaveCommand) {
        return value == parameter::NoCommand || value == parameter::StoreSettings;
    }
    if (number == parameter::ReinitCommand) {
        return value == parameter::NoCommand || value == parameter::FactoryDefaults ||
               value == parameter::EnterBootLoader;
    }
    if (IsLine(number)) {
        return LineCanBe(number, value);
    }
    return FromWord(number, static_cast<quint16>(value)) == value;
}

void Registers::Write(int number, int value) {
    if (number == parameter::SaveCommand && value == parameter::StoreSettings) {
        stored_ = values_;
    } else if (number == parameter::ReinitCommand && value == parameter::FactoryDefaults) {
        Reinitialise();
    } else if (number == parameter::ReinitCommand && value == parameter::EnterBootLoader) {
        bootRequested_ = true;
    } else if (!IsCommand(number)) {
        Store(number, value);
    }
}

bool Registers::IsCommand(int number) {
    return number == parameter::SaveCommand || number == parameter::ReinitCommand;
}

LineSettings Registers::Line() const {
    return {Value(parameter::NetworkAddress), Value(parameter::BaudRateCode),
            Value(parameter::ParityStopCode), Value(parameter::AddressingMode)};
}

void Registers::Configure(const LineSettings &line) {
    const int values[] = {line.address, line.baud, line.parity, line.addressing};
    int number = parameter::NetworkAddress;
    for (const int value : values) {
        Store(number, value);
        stored_.at(static_cast<std::size_t>(number)) = value;
        ++number;
    }
}

// Restores the presets. The line in use stays, so that the host isn't disconnected; its presets apply from
// the next restart.
void Registers::Reinitialise() {
    for (int i = 1; i < table_.Count(); ++i) {
        if (table_.Row(i).readOnly || i == parameter::AddressingMode) {
            continue;
        }
        stored_.at(static_cast<std::size_t>(i)) = table_.Row(i).preset;
        if (!IsLine(i)) {
            Store(i, table_.Row(i).preset);
        }
    }
}

void Registers::Restart() {
    values_ = stored_;
    bootRequested_ = false;
}

bool Registers::TakeBootRequest() {
    return std::exchange(bootRequested_, false);
}

} // namespace sim
