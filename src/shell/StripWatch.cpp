#include "shell/StripWatch.h"

#include "model/ParamDefines.h"

#include <algorithm>
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
    if (dependencies_.backup != nullptr) {
        connect(dependencies_.backup, &SensorBackup::Ended, this, &StripWatch::Update);
    }
    connect(&dependencies_.wizard, &WizardOutcome::Changed, this, &StripWatch::Update);
    connect(&nextSecond_, &QTimer::timeout, this, &StripWatch::Update);
    nextSecond_.setSingleShot(true);
    nextSecond_.setTimerType(Qt::PreciseTimer);
    Update();
}

void StripWatch::OnAnswer() {
    portIsGone_ = false;
    repliesAreDamaged_ = false;
    lastAnswer_ = SleepClock::now();
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
    std::optional<StripMessage> message = WorstMessage(Facts());
    WakeAtNextSecond();
    if (message != message_) {
        message_ = std::move(message);
        Q_EMIT Changed(message_);
    }
}

// Returns the time since the last answer while one is waited for.
std::optional<std::chrono::milliseconds> StripWatch::Silence() const {
    const ValueState state = dependencies_.link.State();
    const bool isSilent = state == ValueState::Stale || state == ValueState::NeverRead;
    if (!isOnline_ || !isSilent) {
        return std::nullopt;
    }
    return std::chrono::duration_cast<std::chrono::milliseconds>(SleepClock::now() - lastAnswer_);
}

// Returns the age of values that grow old. Those of a file don't.
std::optional<std::chrono::milliseconds> StripWatch::Age() const {
    const bool growOld =
        dependencies_.link.State() != ValueState::Live && !dependencies_.zentrova.HoldsSavedEdits();
    return growOld ? dependencies_.link.AgeOfValues() : std::nullopt;
}

void StripWatch::WakeAtNextSecond() {
    constexpr std::chrono::milliseconds second = 1s;
    std::optional<std::chrono::milliseconds> wait;
    for (const auto &time : {Silence(), Age()}) {
        if (time) {
            wait = std::min(wait.value_or(second), second - *time % second);
        }
    }
    if (wait) {
        nextSecond_.start(*wait);
    } else {
        nextSecond_.stop();
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
    if (const auto age = Age()) {
        facts.age = toSeconds(*age);
    }
    if (const auto silence = Silence(); silence >= timeToAnswer) {
        facts.silence = toSeconds(*silence);
    }
    facts.comm = link.Comm();
    facts.timeouts = link.TimeoutCount();
    facts.crcErrors = link.CrcErrorCount();
    facts.openFile = dependencies_.files.LoadedFileName();
    facts.hasEdits = !isOnline_ && !dependencies_.zentrova.EditedRows().empty();
    if (dependencies_.backup != nullptr) {
        facts.notBackedUp = dependencies_.backup->Failure();
    }
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
