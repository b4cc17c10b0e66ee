#include "link/DeviceSearch.h"

#include "support/Fault.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QEventLoop>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace ztv {

namespace {

// A sensor's good answer to the probe.
QByteArray GoodReply(int address) {
    return WithCrc(QByteArray(1, static_cast<char>(address)) + Hex("03 02 00 00"));
}

} // namespace

// Runs the search on a scripted line. Records each probe with its address and line settings.
class DeviceSearchTest : public testing::Test {
protected:
    DeviceSearchTest() { Begin({.port = 1, .baud = 4, .parityStop = 1}); }

    void Begin(SearchStart start) {
        search_ = std::make_unique<DeviceSearch>(
            session_, start,
            DeviceSearch::Choices{.addressRange = [this] { return range_; },
                                  .varyCommSettings = [this] { return vary_; }});
        QObject::connect(search_.get(), &DeviceSearch::Started, [this] { told_.emplace_back("started"); });
        QObject::connect(search_.get(), &DeviceSearch::Ended, [this] { told_.emplace_back("ended"); });
        QObject::connect(search_.get(), &DeviceSearch::ProbeRefused,
                         [this](int code) { told_.push_back("refused " + std::to_string(code)); });
        QObject::connect(search_.get(), &DeviceSearch::BrokenOff, [this](int status) {
            told_.push_back("broken off at " + std::to_string(search_->SearchAddress()) + " at " + Setting() +
                            " by " + std::to_string(status));
        });
        QObject::connect(search_.get(), &DeviceSearch::Probing, [this] {
            told_.push_back(std::to_string(search_->SearchAddress()) + " at " + Setting());
            if (whenProbing_) {
                whenProbing_();
            }
        });
        QObject::connect(search_.get(), &DeviceSearch::DeviceFound, [this](const SearchPlace &place) {
            found_.push_back(std::to_string(place.address) + " at " + std::to_string(place.baud) + "/" +
                             std::to_string(place.parityStop));
        });
    }

    std::string Setting() const {
        return std::to_string(search_->SearchBaud()) + "/" + std::to_string(search_->SearchParityStop());
    }

    void RunToTheEnd() {
        EXPECT_TRUE(search_->Start());
        EXPECT_TRUE(WaitUntil([this] { return !search_->IsSearching(); }));
        EXPECT_FALSE(session_.PortIsOpen());
    }

    using Told = std::vector<std::string>;

    DeviceSearch::AddressRange range_{.bottom = 3, .top = 5};
    bool vary_ = false;
    std::function<void()> whenProbing_;
    Told told_;
    Told found_;
    ScriptedLine line_;
    QString device_ = line_.Path();
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession session_{zentrova_,
                         {.deviceOfPort = [this](std::int16_t) { return device_; },
                          .askDirection = [] { return ConnectChoice::Cancel; }}};
    std::unique_ptr<DeviceSearch> search_;
};

TEST_F(DeviceSearchTest, SetsTheLineToItsStartWithAShortTimeout) {
    const int timeouts[] = {120, 60, 30, 30, 30};
    const int baudCodes[] = {3, 4, 5, 7, 8};
    for (std::int16_t baud = 0; baud < 5; ++baud) {
        Begin({.port = 7, .baud = baud, .parityStop = 3});
        EXPECT_EQ(session_.Mbaxp1().PortNumber(), 7);
        EXPECT_EQ(session_.Mbaxp1().BaudCode(), baudCodes[baud]);
        EXPECT_EQ(session_.Mbaxp1().ParityCode(), 1);
        EXPECT_EQ(session_.Mbaxp1().ResponseTimeout(), timeouts[baud]);
        EXPECT_EQ(search_->SearchPort(), 7);
        EXPECT_EQ(search_->SearchBaud(), baud);
        EXPECT_EQ(search_->SearchParityStop(), 3);
    }
    EXPECT_THROW(Begin({.port = 1, .baud = -1, .parityStop = 0}), Fault);
}

TEST_F(DeviceSearchTest, ReadsOneRegisterOfEachAddressInRisingOrder) {
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "3 at 4/1", "4 at 4/1", "5 at 4/1", "ended"}));
    EXPECT_EQ(line_.Requests(),
              (std::vector<QByteArray>{WithCrc("03 03 00 01 00 01"), WithCrc("04 03 00 01 00 01"),
                                       WithCrc("05 03 00 01 00 01")}));
    EXPECT_EQ(search_->DevicesFound(), 0);
    EXPECT_EQ(search_->ProbesDone(), 3);
}

TEST_F(DeviceSearchTest, TriesTwentySettingsEachWithAllAddresses) {
    range_ = {.bottom = 8, .top = 9};
    vary_ = true;
    Told expected{"started"};
    for (int baud = 4; baud >= 0; --baud) {
        for (int parityStop = 3; parityStop >= 0; --parityStop) {
            for (int address = 8; address <= 9; ++address) {
                expected.push_back(std::to_string(address) + " at " + std::to_string(baud) + "/" +
                                   std::to_string(parityStop));
            }
        }
    }
    expected.emplace_back("ended");
    Begin({.port = 1, .baud = 2, .parityStop = 2}); // the settings at the start don't matter
    RunToTheEnd();
    EXPECT_EQ(told_, expected);
    EXPECT_EQ(line_.Requests().size(), 40U);
    EXPECT_TRUE(search_->StopRequested());
    // The last settings stay.
    EXPECT_EQ(Setting(), "0/0");
    EXPECT_EQ(session_.Mbaxp1().BaudCode(), 3);
    EXPECT_EQ(session_.Mbaxp1().ResponseTimeout(), 120);
}

TEST_F(DeviceSearchTest, PutsEachSettingOnTheLineBeforeItsFirstProbe) {
    range_ = {.bottom = 1, .top = 1};
    vary_ = true;
    std::vector<std::vector<int>> codes;
    whenProbing_ = [&] {
        const Mbaxp &master = session_.Mbaxp1();
        EXPECT_TRUE(master.PortIsOpen());
        codes.push_back(
            {master.BaudCode(), master.ParityCode(), master.StopBitsCode(), master.ResponseTimeout()});
        if (codes.size() == 6) {
            search_->Stop();
        }
    };
    RunToTheEnd();
    EXPECT_EQ(codes,
              (std::vector<std::vector<int>>{
                  {8, 1, 0, 30}, {8, 2, 0, 30}, {8, 0, 1, 30}, {8, 0, 0, 30}, {7, 1, 0, 30}, {7, 2, 0, 30}}));
}

TEST_F(DeviceSearchTest, SearchesAgainAfterTheSettingsWereExhausted) {
    range_ = {.bottom = 1, .top = 1};
    vary_ = true;
    RunToTheEnd();
    vary_ = false;
    told_.clear();
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "1 at 0/0", "ended"}));
    vary_ = true;
    told_.clear();
    whenProbing_ = [this] { search_->Stop(); };
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "1 at 4/3", "ended"}));
}

TEST_F(DeviceSearchTest, FindsWhatGivesAGoodReply) {
    line_.AnswerNothing();
    line_.Answer(GoodReply(4));
    RunToTheEnd();
    EXPECT_EQ(found_, (Told{"4 at 4/1"}));
    EXPECT_EQ(search_->DevicesFound(), 1);
}

TEST_F(DeviceSearchTest, FindsADeviceOncePerSettingThatItAnswersOn) {
    range_ = {.bottom = 4, .top = 4};
    vary_ = true;
    line_.Answer(GoodReply(4));
    line_.AnswerNothing();
    line_.Answer(GoodReply(4));
    RunToTheEnd();
    EXPECT_EQ(found_, (Told{"4 at 4/3", "4 at 4/1"}));
    EXPECT_EQ(search_->DevicesFound(), 2);
}

TEST_F(DeviceSearchTest, DoesNotCountABadReply) {
    line_.Answer(WithCrc("03 83 02"));
    line_.Answer(Hex("04 03 02 00 00 12 34"));
    line_.Answer(GoodReply(9)); // another sensor's
    RunToTheEnd();
    EXPECT_EQ(found_, Told{});
    EXPECT_EQ(told_.size(), 5U);
}

TEST_F(DeviceSearchTest, StopsAtTheAnswerThatIsDue) {
    EXPECT_TRUE(search_->Start());
    EXPECT_FALSE(search_->StopRequested());
    line_.Answer(GoodReply(3));
    search_->Stop();
    EXPECT_TRUE(search_->StopRequested());
    EXPECT_TRUE(search_->IsSearching());
    EXPECT_TRUE(session_.PortIsOpen());
    EXPECT_TRUE(WaitUntil([this] { return !search_->IsSearching(); }));
    EXPECT_EQ(told_, (Told{"started", "3 at 4/1", "ended"}));
    EXPECT_EQ(found_, (Told{"3 at 4/1"}));
    told_.clear();
    RunToTheEnd();
    EXPECT_EQ(told_.size(), 5U);
}

TEST_F(DeviceSearchTest, ReadsTheRangeAgainAtEachAnswer) {
    whenProbing_ = [this] {
        if (search_->SearchAddress() == 4) {
            range_ = {.bottom = 1, .top = 6};
        } else if (search_->SearchAddress() == 6) {
            range_.top = 2;
        }
    };
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "3 at 4/1", "4 at 4/1", "5 at 4/1", "6 at 4/1", "ended"}));
}

TEST_F(DeviceSearchTest, WrapsToTheBottomThatStandsThen) {
    vary_ = true;
    whenProbing_ = [this] {
        if (told_.size() == 2) {
            range_ = {.bottom = 1, .top = 2};
        } else if (told_.size() == 4) {
            vary_ = false;
        }
    };
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "3 at 4/3", "1 at 4/2", "2 at 4/2", "ended"}));
}

TEST_F(DeviceSearchTest, EndsWhereTheRangeIsEmpty) {
    vary_ = true;
    whenProbing_ = [this] { range_ = {.bottom = 9, .top = 2}; };
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "3 at 4/3", "ended"}));
}

TEST_F(DeviceSearchTest, DoesNotStartOnAPortThatCannotBeOpened) {
    device_ = QStringLiteral("/nowhere");
    EXPECT_FALSE(search_->Start());
    EXPECT_EQ(session_.Mbaxp1().LastError(), LinkStatus::OpenFailed);
    EXPECT_FALSE(search_->IsSearching());
    EXPECT_EQ(told_, Told{});
}

TEST_F(DeviceSearchTest, StandsStillWhereAProbeIsRefusedUntilItIsStopped) {
    range_ = {.bottom = 247, .top = 300};
    EXPECT_TRUE(search_->Start());
    EXPECT_TRUE(WaitUntil([this] { return told_.back() == "refused 22"; }));
    EXPECT_TRUE(search_->IsSearching());
    EXPECT_TRUE(session_.PortIsOpen());
    search_->Stop();
    EXPECT_FALSE(search_->IsSearching());
    EXPECT_FALSE(session_.PortIsOpen());
    EXPECT_EQ(told_, (Told{"started", "247 at 4/1", "248 at 4/1", "refused 22", "ended"}));
}

TEST_F(DeviceSearchTest, BreaksOffAtTheSettingThatCannotBeOpened) {
    range_ = {.bottom = 3, .top = 4};
    vary_ = true;
    whenProbing_ = [this] {
        if (search_->SearchAddress() == 4 && search_->SearchParityStop() == 2) {
            device_ = QStringLiteral("/nowhere");
        }
    };
    RunToTheEnd();
    EXPECT_EQ(told_, (Told{"started", "3 at 4/3", "4 at 4/3", "3 at 4/2", "4 at 4/2",
                           "broken off at 3 at 4/1 by 47"}));
}

TEST_F(DeviceSearchTest, BreaksOffWhereItsAdapterIsLostInMidProbe) {
    for (const bool vary : {false, true}) {
        SCOPED_TRACE(vary);
        vary_ = vary;
        ScriptedLine line;
        device_ = line.Path();
        Begin({.port = 1, .baud = 2, .parityStop = 1});
        told_.clear();
        EXPECT_TRUE(search_->Start());
        EXPECT_TRUE(WaitUntil([&line] { return line.Requests().size() == 2; }));
        device_ = QStringLiteral("/nowhere"); // it can't be opened again either
        line.HangUp();
        EXPECT_TRUE(WaitUntil([this] { return !search_->IsSearching(); }));
        EXPECT_FALSE(session_.PortIsOpen());
        const std::string setting = vary ? "4/3" : "2/1";
        EXPECT_EQ(told_, (Told{"started", "3 at " + setting, "4 at " + setting,
                               "broken off at 4 at " + setting + " by 15"}));
    }
}

TEST_F(DeviceSearchTest, BreaksOffAtEitherStatusOfALostAdapter) {
    for (const std::int16_t status : {LinkStatus::WriteError, LinkStatus::ReadError}) {
        told_.clear();
        EXPECT_TRUE(search_->Start());
        session_.TransactionFailed(LinkTransaction::SearchProbe, status);
        EXPECT_FALSE(session_.PortIsOpen());
        EXPECT_EQ(told_,
                  (Told{"started", "3 at 4/1", "broken off at 3 at 4/1 by " + std::to_string(status)}));
    }
    told_.clear();
    RunToTheEnd(); // with the adapter plugged in again
    EXPECT_EQ(told_.back(), "ended");
}

TEST_F(DeviceSearchTest, EndsCleanWhenOnlyTheOpeningBehindTheLastSettingFails) {
    range_ = {.bottom = 1, .top = 1};
    vary_ = true;
    whenProbing_ = [this] {
        if (search_->SearchBaud() == 0 && search_->SearchParityStop() == 0) {
            device_ = QStringLiteral("/nowhere");
        }
    };
    RunToTheEnd();
    EXPECT_EQ(told_.back(), "ended");
    EXPECT_EQ(told_.size(), 22U);
}

TEST_F(DeviceSearchTest, LeavesNothingBehindWhenItIsAbandoned) {
    EXPECT_TRUE(search_->Start());
    EXPECT_TRUE(WaitUntil([this] { return line_.Requests().size() == 1; }));
    line_.Send(GoodReply(3));
    search_->Abandon();
    EXPECT_FALSE(session_.PortIsOpen());
    EXPECT_TRUE(search_->StopRequested());
    session_.TransactionDone(LinkTransaction::SearchProbe); // too late
    told_.clear();
    // By now the answer would have come, or its timeout.
    EXPECT_FALSE(WaitUntil([this] { return !told_.empty() || !found_.empty(); }, 100));
}

TEST_F(DeviceSearchTest, ClosesThePortAsItIsDestroyed) {
    EXPECT_TRUE(search_->Start());
    search_.reset();
    EXPECT_FALSE(session_.PortIsOpen());
}

// The remaining work. -------------------------------------------------------------------------------

TEST(SearchWorkTest, CountsTheLineTimeAndTheTimeoutOfEachProbe) {
    const SearchWork one =
        WorkLeft({.baud = 4, .parityStop = 1, .probes = 1, .addresses = 247, .varies = false});
    EXPECT_EQ(one.probes, 1);
    EXPECT_NEAR(one.milliseconds, 30 + 8 * 11 / 38.4, 0.01);
    const SearchWork n1 =
        WorkLeft({.baud = 0, .parityStop = 0, .probes = 2, .addresses = 247, .varies = false});
    EXPECT_NEAR(n1.milliseconds, 2 * (120 + 8 * 10 / 2.4), 0.01);
    const SearchWork none =
        WorkLeft({.baud = 0, .parityStop = 0, .probes = 0, .addresses = 9, .varies = true});
    EXPECT_EQ(none.probes, 0);
    EXPECT_EQ(none.milliseconds, 0);
}

TEST(SearchWorkTest, AddsTheSettingsThatFollow) {
    const SearchWork all =
        WorkLeft({.baud = 4, .parityStop = 3, .probes = 247, .addresses = 247, .varies = true});
    EXPECT_EQ(all.probes, 247 * 20);
    const double bitsOfASetting = 8 * (3 * 11 + 10);
    const double timeouts = 4 * (120 + 60 + 30 + 30 + 30);
    const double frames = bitsOfASetting * (1 / 2.4 + 1 / 4.8 + 1 / 9.6 + 1 / 19.2 + 1 / 38.4);
    EXPECT_NEAR(all.milliseconds, 247 * (timeouts + frames), 5);
    const SearchWork rest =
        WorkLeft({.baud = 0, .parityStop = 1, .probes = 3, .addresses = 10, .varies = true});
    EXPECT_EQ(rest.probes, 13);
    EXPECT_NEAR(rest.milliseconds, 13 * 120 + 3 * 88 / 2.4 + 10 * 80 / 2.4, 0.01);
}

// As a program without a screen uses it: its signals alone say all, even to a receiver that is behind.
TEST_F(DeviceSearchTest, TellsAReceiverThatIsBehindWhatItFindsAndHowFarItIs) {
    range_ = {.bottom = 8, .top = 9};
    line_.AnswerNothing();
    line_.Answer(GoodReply(9));
    Told report;
    QEventLoop program;
    QObject::connect(
        search_.get(), &DeviceSearch::DeviceFound, &program,
        [&](const SearchPlace &place) {
            report.push_back("found " + std::to_string(place.address) + " at " + std::to_string(place.baud) +
                             "/" + std::to_string(place.parityStop));
        },
        Qt::QueuedConnection);
    QObject::connect(
        search_.get(), &DeviceSearch::Progressed, &program,
        [&](int done, const SearchWork &left) {
            report.push_back(std::to_string(done) + " done, " + std::to_string(left.probes) + " left");
        },
        Qt::QueuedConnection);
    QObject::connect(search_.get(), &DeviceSearch::Ended, &program, &QEventLoop::quit, Qt::QueuedConnection);
    QObject::connect(search_.get(), &DeviceSearch::BrokenOff, &program, &QEventLoop::quit,
                     Qt::QueuedConnection);
    EXPECT_TRUE(search_->Start());
    program.exec();
    EXPECT_EQ(report, (Told{"0 done, 2 left", "1 done, 1 left", "found 9 at 4/1"}));
}

TEST_F(DeviceSearchTest, TellsHowFarItIs) {
    std::vector<std::pair<int, int>> steps;
    whenProbing_ = [&] { steps.emplace_back(search_->ProbesDone(), WorkLeft(search_->Remaining()).probes); };
    RunToTheEnd();
    EXPECT_EQ(steps, (std::vector<std::pair<int, int>>{{0, 3}, {1, 2}, {2, 1}}));
    EXPECT_EQ(WorkLeft(search_->Remaining()).probes, 0);
    vary_ = true;
    whenProbing_ = [&] { search_->Stop(); };
    EXPECT_TRUE(search_->Start());
    EXPECT_EQ(WorkLeft(search_->Remaining()).probes, 60);
}

} // namespace ztv
