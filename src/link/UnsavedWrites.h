#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace ztv {

// The settings that were written to the sensor since its last save, and that it therefore forgets when it
// loses power. docs/master.md has the rules. Each call that reports an event returns true if the rows
// changed.
class UnsavedWrites {
public:
    struct Row {
        std::int16_t tag = 0;
        std::optional<std::int32_t> before; // of the first write; none if the sensor hadn't been read
        std::int32_t value = 0;             // the one that the sensor holds now

        bool operator==(const Row &) const = default;
    };

    // `isSetting` says of each tag whether a save stores its row.
    explicit UnsavedWrites(std::vector<bool> isSetting);

    std::vector<Row> Rows() const; // by tag
    std::size_t Count() const { return rows_.size(); }

    // The port was opened: until the next poll, the sensor may be another one.
    void WentOnline();

    // The sensor confirmed a value.
    bool Written(std::int16_t tag, std::int32_t value);

    // A write failed. The sensor may have the value all the same, which the next poll reveals.
    void NotConfirmed(std::int16_t tag, std::int32_t value);

    // The sensor confirmed its save, or its return to the factory's values, which it stores itself.
    bool Saved();
    bool Reinitialised();

    // A poll was good. `values` are by tag; one that is too short leaves the rows beyond it as they are.
    bool Polled(std::int32_t serialNumber, std::span<const std::int32_t> values);

private:
    using Values = std::map<std::int16_t, std::int32_t>;

    bool IsSetting(std::int16_t tag) const;
    bool Note(std::int16_t tag, std::optional<std::int32_t> before, std::int32_t value);
    void StartAnew();
    void Reconcile(std::span<const std::int32_t> values);

    std::vector<bool> isSetting_;
    std::map<std::int16_t, Row> rows_;
    std::vector<std::int32_t> held_; // the sensor's values by tag, as far as they are known
    std::optional<std::int32_t> serialNumber_;
    bool isIdentified_ = false; // a poll was good since the port was opened
    Values unidentified_;       // confirmed before that
    Values unconfirmed_;        // failed since the last poll
};

} // namespace ztv
