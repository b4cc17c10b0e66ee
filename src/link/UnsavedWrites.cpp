#include "link/UnsavedWrites.h"

#include <iterator>
#include <utility>

namespace ztv {

namespace {

std::optional<std::int32_t> ValueOf(std::span<const std::int32_t> values, std::int16_t tag) {
    const auto index = static_cast<std::size_t>(tag);
    return index < values.size() ? std::optional(values[index]) : std::nullopt;
}

} // namespace

UnsavedWrites::UnsavedWrites(std::vector<bool> isSetting) : isSetting_(std::move(isSetting)) {}

std::vector<UnsavedWrites::Row> UnsavedWrites::Rows() const {
    std::vector<Row> rows;
    rows.reserve(rows_.size());
    for (const auto &[tag, row] : rows_) {
        rows.push_back(row);
    }
    return rows;
}

bool UnsavedWrites::IsSetting(std::int16_t tag) const {
    return tag >= 0 && static_cast<std::size_t>(tag) < isSetting_.size() &&
           isSetting_[static_cast<std::size_t>(tag)];
}

void UnsavedWrites::WentOnline() {
    isIdentified_ = false;
    unidentified_.clear();
    unconfirmed_.clear();
}

bool UnsavedWrites::Written(std::int16_t tag, std::int32_t value) {
    if (!IsSetting(tag)) {
        return false;
    }
    if (!isIdentified_) {
        unidentified_[tag] = value;
    }
    unconfirmed_.erase(tag);
    const std::optional<std::int32_t> before = ValueOf(held_, tag);
    if (before) {
        held_[static_cast<std::size_t>(tag)] = value;
    }
    return Note(tag, before, value);
}

// Counts a row once, with the value before its first write. A row that has that value again has nothing to
// save.
bool UnsavedWrites::Note(std::int16_t tag, std::optional<std::int32_t> before, std::int32_t value) {
    const auto found = rows_.find(tag);
    if (found == rows_.end()) {
        if (before == value) {
            return false;
        }
        rows_[tag] = {.tag = tag, .before = before, .value = value};
        return true;
    }
    if (found->second.before == value) {
        rows_.erase(found);
        return true;
    }
    return std::exchange(found->second.value, value) != value;
}

void UnsavedWrites::NotConfirmed(std::int16_t tag, std::int32_t value) {
    if (IsSetting(tag)) {
        unconfirmed_[tag] = value;
    }
}

bool UnsavedWrites::Saved() {
    unidentified_.clear();
    unconfirmed_.clear();
    return std::exchange(rows_, {}) != decltype(rows_){};
}

bool UnsavedWrites::Reinitialised() {
    held_.clear();
    return Saved();
}

bool UnsavedWrites::Polled(std::int32_t serialNumber, std::span<const std::int32_t> values) {
    const bool hadRows = !rows_.empty() || !unconfirmed_.empty();
    const auto before = hadRows ? std::optional(rows_) : std::nullopt;
    if (serialNumber_ && *serialNumber_ != serialNumber) {
        StartAnew();
    }
    Reconcile(values);
    serialNumber_ = serialNumber;
    isIdentified_ = true;
    unidentified_.clear();
    unconfirmed_.clear();
    held_.assign(values.begin(), values.end());
    return before ? *before != rows_ : !rows_.empty();
}

// Another sensor answers. Only writes since the port was opened went to it, over values that nobody has read.
void UnsavedWrites::StartAnew() {
    rows_.clear();
    unconfirmed_.clear();
    held_.clear();
    for (const auto &[tag, value] : unidentified_) {
        rows_[tag] = {.tag = tag, .before = std::nullopt, .value = value};
    }
}

// Drops rows that the sensor has forgotten, as after a loss of power, and takes failed writes that it has
// accepted.
void UnsavedWrites::Reconcile(std::span<const std::int32_t> values) {
    for (const auto &[tag, value] : unconfirmed_) {
        const std::optional<std::int32_t> before = ValueOf(held_, tag);
        if (!rows_.contains(tag) && before && *before != value && ValueOf(values, tag) == value) {
            Note(tag, before, value);
        }
    }
    for (auto entry = rows_.begin(); entry != rows_.end();) {
        Row &row = entry->second;
        const std::int32_t written = row.value;
        row.value = ValueOf(values, row.tag).value_or(written);
        const bool isForgotten = row.value != written && (!row.before || *row.before == row.value);
        entry = isForgotten ? rows_.erase(entry) : std::next(entry);
    }
}

} // namespace ztv
