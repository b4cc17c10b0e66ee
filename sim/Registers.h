#pragma once

#include "sim/LineSettings.h"
#include "sim/ParameterTable.h"

#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace sim {

// The sensor's memory: the values in use and the stored set that a restart restores.
class Registers {
public:
    explicit Registers(const ParameterTable &table);

    bool Has(int number) const { return table_.Has(number); }
    int Count() const { return table_.Count(); }
    int Value(int number) const { return values_.at(static_cast<std::size_t>(number)); }
    quint16 Word(int number) const { return static_cast<quint16>(Value(number)); }
    int FromWord(int number, quint16 word) const;

    // Return whether the host may write the row at all, and whether the row accepts this value from the host.
    bool Writable(int number) const;
    bool Accepts(int number, int value) const;
    // Returns whether the sensor can store the value at all.
    bool Holds(int number, int value) const;

    // Writes as the host does: a command row executes its command and reads 0 again.
    void Write(int number, int value);
    void Store(int number, int value) { values_.at(static_cast<std::size_t>(number)) = value; }
    static bool IsCommand(int number);

    LineSettings Line() const;
    // Sets the line both in the values in use and in the stored set.
    void Configure(const LineSettings &line);

    void Restart();
    bool TakeBootRequest();

private:
    void Reinitialise();

    const ParameterTable &table_;
    std::vector<int> values_;
    std::vector<int> stored_;
    bool bootRequested_ = false;
};

} // namespace sim
