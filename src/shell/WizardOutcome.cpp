#include "shell/WizardOutcome.h"

namespace ztv {

// The session takes a poll's values before this, since it was connected to the master first.
WizardOutcome::WizardOutcome(LinkSession &link, const ClassZentrova &zentrova) : zentrova_(zentrova) {
    connect(&link.Mbaxp1(), &Mbaxp::TransactionDone, this, [this, &link](LinkTransaction transaction) {
        if (transaction == LinkTransaction::Poll && link.State() == ValueState::Live) {
            Update([this] { values_.Judge(zentrova_); });
        }
    });
    connect(&link, &LinkSession::WriteEnded, this, [this](std::int16_t tag, LinkStatus status) {
        if (status == LinkStatus::NoError) {
            Update([this, tag] { values_.Written(tag, zentrova_.SentValue(tag)); });
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
    Update([&] { values_.Ask(values); });
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
