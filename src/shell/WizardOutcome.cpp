#include "shell/WizardOutcome.h"

#include "model/ParamDefines.h"

#include <cstdint>
#include <optional>

namespace ztv {

// The session takes a poll's values before this, since it was connected to the master first.
WizardOutcome::WizardOutcome(LinkSession &link, const ClassZentrova &zentrova)
    : link_(link),
      zentrova_(zentrova) {
    connect(&link.Mbaxp1(), &Mbaxp::TransactionDone, this, [this, &link](LinkTransaction transaction) {
        if (transaction == LinkTransaction::Poll && link.State() == ValueState::Live) {
            Update([this] { values_.Judge(zentrova_); });
        }
    });
    connect(&link, &LinkSession::WriteEnded, this, [this](std::int16_t tag, LinkStatus status) {
        if (status == LinkStatus::NoError) {
            // The value that was asked for last: an earlier one may have been on the line when the wizard
            // asked.
            Update([this, tag] { values_.Written(tag, zentrova_.ParamValue(tag)); });
        }
    });
    connect(&link, &LinkSession::DownloadEnded, this, [this](LinkStatus status) {
        if (status == LinkStatus::NoError) { // it replaced all values on purpose
            Forget();
        }
    });
    connect(&link, &LinkSession::ValueStateChanged, this, [this](ValueState state) {
        if (state == ValueState::NeverRead) { // a file was loaded
            Forget();
        }
    });
}

void WizardOutcome::Ask(const std::vector<ParameterValue> &values) {
    const SensorValues &sensor = link_.Sensor();
    const auto serialNumber =
        sensor.IsCurrent() ? sensor.Value(ParamDefines::SerialNumber) : std::optional<std::int32_t>();
    Update([&] { values_.Ask(values, serialNumber); });
}

void WizardOutcome::Forget() {
    Update([this] { values_.Forget(); });
}

// Reports a change of the message's values only: without any, nothing is compared.
void WizardOutcome::Update(const std::function<void()> &work) {
    const std::vector<AskedValues::Value> before = Values();
    work();
    if (Values() != before) {
        Q_EMIT Changed();
    }
}

} // namespace ztv
