#include "shell/StripWatch.h"

#include "model/ParamDefines.h"

#include <utility>

namespace ztv {

namespace {

using namespace std::chrono_literals;

// A sensor that is there answers well within this time.
constexpr auto timeToAnswer = 2s;

} // namespace

StripWatch::StripWatch(Dependencies dependencies) : dependencies_(std::move(dependencies)) {
    LinkSession &link = dependencies_.link;
    connect(&link, &LinkSession::OnlineChanged, this, [this](bool online) {
        isOnline_ = online;
        OnAnswer(); // a new link has its time to answer
    });
    connect(&link, &LinkSession::ValueStateChanged, this, &StripWatch::Update);
    connect(&link, &LinkSession::TableRefreshed, this, &StripWatch::OnAnswer);
    connect(&link.Mbaxp1(), &Mbaxp::TransactionFailed, this, &StripWatch::OnPollFailed);
    connect(&dependencies_.wizard, &WizardOutcome::Changed, this, &StripWatch::Update);
    connect(&second_, &QTimer::timeout, this, &StripWatch::Update);
    second_.setInterval(1s);
    Update();
}

void StripWatch::OnAnswer() {
    portIsGone_ = false;
    repliesAreDamaged_ = false;
    sinceAnswer_.start();
    Update();
}

void StripWatch::OnPollFailed(LinkTransaction transaction, LinkStatus status) {
    if (transaction == LinkTransaction::Poll || transaction == LinkTransaction::AddressingProbe) {
        portIsGone_ = status == LinkStatus::ReadError || status == LinkStatus::WriteError;
        repliesAreDamaged_ = repliesAreDamaged_ || status == LinkStatus::CrcError;
        Update();
    }
}

void StripWatch::Update() {
    const StripFacts facts = Facts();
    std::optional<StripMessage> message = WorstMessage(facts);
    const bool isWaiting = facts.isOnline && dependencies_.link.State() != ValueState::Live;
    const bool hasTime = message && (message->kind == StripMessage::Kind::NoAnswer || facts.age);
    if (isWaiting || hasTime) {
        if (!second_.isActive()) {
            second_.start();
        }
    } else {
        second_.stop();
    }
    if (message != message_) {
        message_ = std::move(message);
        Q_EMIT Changed(message_);
    }
}

StripFacts StripWatch::Facts() const {
    const LinkSession &link = dependencies_.link;
    const auto toSeconds = [](std::chrono::milliseconds time) {
        return std::chrono::duration_cast<std::chrono::seconds>(time);
    };
    StripFacts facts;
    facts.isOnline = isOnline_;
    facts.portIsGone = portIsGone_;
    facts.anotherSensorAnswers = link.AnotherSensorAnswers();
    facts.repliesAreDamaged = repliesAreDamaged_;
    facts.valuesAreHeld = link.State() == ValueState::Held;
    facts.echoIsReceived = link.State() != ValueState::Live ||
                           dependencies_.zentrova.ParamValue(ParamDefines::EchoReceived) != 0;
    if (const auto age = link.AgeOfValues(); age && link.State() != ValueState::Live) {
        facts.age = toSeconds(*age);
    }
    const bool isSilent = link.State() == ValueState::Stale || link.State() == ValueState::NeverRead;
    if (facts.isOnline && isSilent) {
        const std::chrono::milliseconds silence(sinceAnswer_.elapsed());
        if (silence >= timeToAnswer) {
            facts.silence = toSeconds(silence);
        }
    }
    facts.comm = link.Comm();
    facts.timeouts = link.TimeoutCount();
    facts.crcErrors = link.CrcErrorCount();
    facts.openFile = dependencies_.files.CurrentFileName();
    if (const auto &failure = dependencies_.files.SilentFailure()) {
        (failure->isSave ? facts.notSaved : facts.notOpened) = {.name = failure->name,
                                                                .reason = failure->reason};
    }
    for (const auto &[asked, held, isTaken] : dependencies_.wizard.Values()) {
        const ClassZentrova &zentrova = dependencies_.zentrova;
        facts.wizardValues.push_back({.name = zentrova.ParamName(asked.tag),
                                      .tag = asked.tag,
                                      .asked = zentrova.FormatRaw(asked.value, asked.tag),
                                      .held = zentrova.FormatRaw(held, asked.tag),
                                      .isTaken = isTaken});
    }
    if (facts.isOnline && (facts.portIsGone || facts.silence)) {
        facts.device = dependencies_.deviceOfPort(facts.comm.port);
    }
    return facts;
}

} // namespace ztv
