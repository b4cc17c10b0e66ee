#include "link/ui/FormSearch.h"
#include "link/ui/ResultsList.h"
#include "shell/LinkNotices.h"
#include "sim/SimulatedSensor.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/SharedLine.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QCheckBox>
#include <QRadioButton>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace ztv {

// Runs the search dialog on a line with several simulated sensors, each with its own address and line
// settings. A pseudo terminal distinguishes odd parity, but not even from none: a sensor with either answers
// at both.
class SearchTest : public testing::Test {
protected:
    struct SensorAt {
        int address, baud, parity;
    };
    using Found = std::vector<std::string>;

    sim::SimulatedSensor &Put(const SensorAt &place) {
        sim::SensorOptions options;
        options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
        options.address = place.address;
        options.baud = place.baud;
        options.parity = place.parity;
        sensors_.push_back(std::make_unique<sim::SimulatedSensor>(options));
        EXPECT_EQ(sensors_.back()->Start(), QString());
        line_.Join(*sensors_.back());
        return *sensors_.back();
    }

    void Open(SearchStart start, const char *from, const char *to, bool vary = false) {
        form_ = std::make_unique<FormSearch>(session_, zentrova_, dialogs_, help_, start);
        form_->show();
        const Form ui(*form_);
        ui.Get<QRadioButton>("OptionAddressRange(1)").click();
        ui.Get<QLineEdit>("TextAddressRange(0)").setText(QString::fromLatin1(from));
        ui.Get<QLineEdit>("TextAddressRange(1)").setText(QString::fromLatin1(to));
        ui.Get<QCheckBox>("CheckVaryCommSettings").setChecked(vary);
        ui.Get<QPushButton>("CommandStart").click();
    }

    Found Search(SearchStart start, const char *from, const char *to, bool vary = false) {
        Open(start, from, to, vary);
        EXPECT_TRUE(WaitUntil([this] { return !session_.PortIsOpen(); }, 60000));
        return Results();
    }

    Found Results() const {
        const auto &list = Form(*form_).Get<ResultsList>("ListViewResults");
        Found found;
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            const QTreeWidgetItem &item = *list.topLevelItem(row);
            found.push_back((item.text(0) + u' ' + item.text(1) + u' ' + item.text(2)).toStdString());
        }
        return found;
    }

    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    std::vector<std::unique_ptr<sim::SimulatedSensor>> sensors_;
    SharedLine line_;
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    LinkSession session_{zentrova_,
                         {.deviceOfPort = [this](std::int16_t) { return line_.Path(); },
                          .askDirection = [] { return ConnectChoice::Cancel; }}};
    LinkNotices notices_{session_, dialogs_};
    std::unique_ptr<FormSearch> form_;
};

TEST_F(SearchTest, FindsEachSensorOnTheLineAtItsAddress) {
    Put({.address = 12, .baud = 4, .parity = 1});
    Put({.address = 3, .baud = 4, .parity = 1});
    Put({.address = 7, .baud = 4, .parity = 1});
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "3", "12"),
              (Found{"3 38400 N2", "7 38400 N2", "12 38400 N2"}));
}

TEST_F(SearchTest, FindsOnlyWhatHasTheSettingsOfTheLine) {
    Put({.address = 3, .baud = 4, .parity = 1});
    Put({.address = 4, .baud = 3, .parity = 1});
    Put({.address = 5, .baud = 4, .parity = 0});
    Put({.address = 6, .baud = 4, .parity = 3});
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "2", "7"), (Found{"3 38400 N2"}));
    EXPECT_EQ(Search({.port = 1, .baud = 3, .parityStop = 1}, "2", "7"), (Found{"4 19200 N2"}));
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 0}, "2", "7"), (Found{"5 38400 N1"}));
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 3}, "2", "7"), (Found{"6 38400 O1"}));
}

TEST_F(SearchTest, FindsASensorInEitherAddressingMode) {
    for (const int addressing : {0, 1}) {
        Put({.address = 20 + addressing, .baud = 4, .parity = 1}).SetRegister(68, addressing);
    }
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "20", "21"),
              (Found{"20 38400 N2", "21 38400 N2"}));
}

TEST_F(SearchTest, DoesNotFindASensorThatRefusesOrIsMute) {
    Put({.address = 3, .baud = 4, .parity = 1}).Faults().exception = 2;
    Put({.address = 4, .baud = 4, .parity = 1}).Faults().mute = true;
    sim::SimulatedSensor &damaged = Put({.address = 5, .baud = 4, .parity = 1});
    damaged.Faults().corrupt = 1;
    Put({.address = 6, .baud = 4, .parity = 1});
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "3", "6"), (Found{"6 38400 N2"}));
    EXPECT_EQ(sensors_.front()->Stats().exceptions, 1);
}

TEST_F(SearchTest, FindsSensorsWhateverTheirSettingsByTryingThemAll) {
    Put({.address = 5, .baud = 2, .parity = 3});
    Put({.address = 6, .baud = 0, .parity = 1});
    Put({.address = 5, .baud = 4, .parity = 2}); // even, which a pseudo terminal can't distinguish from none
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "5", "6", true),
              (Found{"5 38400 E1", "5 38400 N1", "5 9600 O1", "6 2400 N2"}));
    // Each sensor received a probe of both addresses at each of the 20 settings.
    for (const auto &sensor : sensors_) {
        EXPECT_EQ(sensor->Requests().size(), 40U);
    }
}

TEST_F(SearchTest, HandsOutTheSettingsOfTheSensorThatWasPicked) {
    Put({.address = 6, .baud = 3, .parity = 3});
    EXPECT_EQ(Search({.port = 1, .baud = 4, .parityStop = 1}, "6", "6", true), (Found{"6 19200 O1"}));
    auto &list = Form(*form_).Get<ResultsList>("ListViewResults");
    list.setCurrentItem(list.topLevelItem(0));
    Form(*form_).Press("CommandClose");
    ASSERT_TRUE(form_->Used().has_value());
    EXPECT_EQ(form_->Used()->address, QStringLiteral("6"));
    EXPECT_EQ(form_->Used()->baud, 3);
    EXPECT_EQ(form_->Used()->parityStop, 3);
}

TEST_F(SearchTest, StopsInTheMiddleWithWhatItHasFound) {
    Put({.address = 2, .baud = 4, .parity = 1});
    Put({.address = 200, .baud = 4, .parity = 1});
    Open({.port = 1, .baud = 4, .parityStop = 1}, "1", "247");
    EXPECT_TRUE(WaitUntil([this] { return !Results().empty(); }));
    Form(*form_).Press("CommandStop");
    EXPECT_TRUE(WaitUntil([this] { return !session_.PortIsOpen(); }));
    EXPECT_EQ(Results(), (Found{"2 38400 N2"}));
    EXPECT_LT(sensors_.front()->Requests().size(), 20U);
}

} // namespace ztv
