#include "shell/StatusWatch.h"

#include "model/ParamDefines.h"

#include <chrono>
#include <utility>

namespace ztv {

namespace {

using std::chrono::milliseconds;

int ToTenths(milliseconds time) {
    constexpr int perTenth = 100;
    return static_cast<int>((time.count() + perTenth / 2) / perTenth);
}

} // namespace

StatusWatch::StatusWatch(Dependencies dependencies) : dependencies_(std::move(dependencies)) {
    LinkSession &link = dependencies_.link;
    connect(&link, &LinkSession::OnlineChanged, this, [this](bool online) {
        isOnline_ = online;
        Update();
    });
    connect(&link, &LinkSession::ValueStateChanged, this, &StatusWatch::Refresh);
    connect(&link, &LinkSession::TableRefreshed, this, &StatusWatch::Refresh);
    connect(&link, &LinkSession::UnsavedChanged, this, &StatusWatch::Refresh);
    connect(&link.Mbaxp1(), &Mbaxp::TransactionFailed, this, &StatusWatch::Refresh);
    dependencies_.zentrova.OnFileChangesTurned([this] {
        Refresh();
        Q_EMIT FileChangesTurned();
    });
    nextSecond_.setSingleShot(true);
    nextSecond_.setTimerType(Qt::PreciseTimer);
    connect(&nextSecond_, &QTimer::timeout, this, &StatusWatch::Refresh);
    Update();
}

StatusWatch::~StatusWatch() {
    dependencies_.zentrova.OnFileChangesTurned({});
}

// Apart from Refresh, because it asks the settings store, which is too dear for each poll.
void StatusWatch::Update() {
    device_ = dependencies_.deviceOfPort(dependencies_.link.CommPort());
    Refresh();
}

void StatusWatch::Refresh() {
    TakeSensor();
    StatusFacts facts = Facts();
    StartTimer();
    if (facts == facts_ && !cells_.empty()) {
        return;
    }
    facts_ = std::move(facts);
    cells_ = CellsOf(facts_);
    Q_EMIT Changed(cells_);
}

// While the values are live alone: later the table may have changes that the sensor doesn't have.
void StatusWatch::TakeSensor() {
    const LinkSession &link = dependencies_.link;
    const ClassZentrova &zentrova = dependencies_.zentrova;
    if (!link.AgeOfValues()) {
        sensor_.reset();
    } else if (link.State() == ValueState::Live) {
        const auto value = [&zentrova](std::int16_t tag) { return zentrova.SentValue(tag); };
        sensor_ = {.serialNumber = value(ParamDefines::SerialNumber),
                   .firmware = zentrova.FormatRaw(value(ParamDefines::FirmwareVersion),
                                                  ParamDefines::FirmwareVersion),
                   .echoStrength = value(ParamDefines::EchoStrength),
                   .echoIsReceived = value(ParamDefines::EchoReceived) != 0,
                   .outputIsForced = value(ParamDefines::AnalogOutputMode) == ParamDefines::ManualMode};
    }
}

StatusFacts StatusWatch::Facts() const {
    const LinkSession &link = dependencies_.link;
    StatusFacts facts;
    facts.isOnline = isOnline_;
    facts.state = link.State();
    if (const auto between = link.TimeBetweenPolls()) {
        facts.tenthsBetweenPolls = ToTenths(*between);
    }
    if (const auto age = link.AgeOfValues(); age && isOnline_ && link.State() == ValueState::Stale) {
        facts.age = std::chrono::duration_cast<std::chrono::seconds>(*age);
    }
    facts.comm = link.Comm();
    facts.device = device_;
    facts.sensor = sensor_;
    facts.lineQuality = link.Quality().Percent();
    facts.exchanges = link.Quality().Count();
    facts.unsaved = link.Unsaved().Count();
    facts.openFile = dependencies_.files.CurrentFileName();
    facts.fileChangesNeedSaving = dependencies_.zentrova.FileChangesNeedSaving();
    return facts;
}

// Until the age has its next whole second.
void StatusWatch::StartTimer() {
    const LinkSession &link = dependencies_.link;
    const auto age = link.AgeOfValues();
    if (!age || !isOnline_ || link.State() != ValueState::Stale) {
        nextSecond_.stop();
        return;
    }
    constexpr milliseconds second{1000};
    nextSecond_.start(second - *age % second);
}

} // namespace ztv
