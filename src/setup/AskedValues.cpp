#include "setup/AskedValues.h"

#include "model/Global.h"
#include "model/ParamDefines.h"

#include <algorithm>

namespace ztv {

namespace {

// A register holds 16 bits: a negative value of an unsigned row comes back as a great one.
bool IsSameWord(std::int32_t one, std::int32_t other) {
    return Global::SignedFromUnsigned(one) == Global::SignedFromUnsigned(other);
}

} // namespace

void AskedValues::Ask(const std::vector<ParameterValue> &values, std::optional<std::int32_t> serialNumber) {
    Forget();
    serialNumber_ = serialNumber;
    for (const ParameterValue &value : values) {
        if (value.tag != ParamDefines::SaveCommand) {
            values_.push_back({.asked = value});
        }
    }
}

void AskedValues::Forget() {
    values_.clear();
    judged_.clear();
    serialNumber_.reset();
}

void AskedValues::Judge(const ClassZentrova &zentrova) {
    const auto isOpen = [&](const Value &value) { return zentrova.ParamWritePending(value.asked.tag); };
    if (values_.empty() || zentrova.WritesWait() || zentrova.WriteAllPending() ||
        std::ranges::any_of(values_, isOpen)) {
        return;
    }
    const std::int32_t serialNumber = zentrova.ParamValue(ParamDefines::SerialNumber);
    if (serialNumber_.value_or(serialNumber) != serialNumber) {
        Forget();
        return;
    }
    serialNumber_ = serialNumber;
    for (Value &value : values_) {
        value.held = zentrova.ParamValue(value.asked.tag);
        value.isTaken = value.isTaken || IsSameWord(value.held, value.asked.value);
    }
    judged_ = values_;
    Conclude();
}

void AskedValues::Written(std::int16_t tag, std::int32_t value) {
    for (std::vector<Value> *values : {&values_, &judged_}) {
        std::erase_if(*values, [&](const Value &other) {
            return other.asked.tag == tag && !IsSameWord(other.asked.value, value) && !other.isTaken;
        });
    }
    if (!judged_.empty()) {
        Conclude();
    }
}

void AskedValues::Conclude() {
    if (std::ranges::all_of(judged_, &Value::isTaken)) {
        Forget();
    }
}

} // namespace ztv
