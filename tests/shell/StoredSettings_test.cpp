#include "shell/StoredSettings.h"

#include "link/StoredComm.h"
#include "support/Fault.h"
#include "tests/helpers/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class StoredSettingsTest : public testing::Test {
protected:
    StoredSettingsTest() : previous_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit());
    }
    ~StoredSettingsTest() override { qputenv("XDG_CONFIG_HOME", previous_); }

    std::int16_t Stored(const char *text) {
        store_.Write(QStringLiteral("Options"), QStringLiteral("CommPort"), QString::fromLatin1(text));
        return ReadCommSettings(store_).port;
    }

    QTemporaryDir folder_;
    QByteArray previous_;
    SettingsStore store_{QStringLiteral("ZTV Link")};
};

TEST_F(StoredSettingsTest, HaveTheDefaultsOfAFreshInstallation) {
    const CommSettings settings = ReadCommSettings(store_);
    EXPECT_EQ(settings.port, 1);
    EXPECT_EQ(settings.baud, 4);
    EXPECT_EQ(settings.parityStop, 1);
    EXPECT_EQ(settings.address, 1);
    const WindowPlace place = ReadWindowPlace(store_);
    EXPECT_EQ(place.top, 0);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.height, 8940);
    EXPECT_EQ(place.width, 10200);
    EXPECT_EQ(ReadWindowState(store_), WindowState::Normal);
}

TEST_F(StoredSettingsTest, AreClampedToTheirRanges) {
    struct Row {
        const char *key;
        std::int16_t CommSettings::*member;
        int lowest, highest;
    };
    for (const Row &row :
         {Row{"CommPort", &CommSettings::port, 1, 255}, Row{"BaudRate", &CommSettings::baud, 0, 4},
          Row{"ParityStop", &CommSettings::parityStop, 0, 3},
          Row{"NetworkAddress", &CommSettings::address, 1, 247}}) {
        const auto read = [&](int value) {
            store_.Write(QStringLiteral("Options"), QString::fromLatin1(row.key), QString::number(value));
            return ReadCommSettings(store_).*row.member;
        };
        EXPECT_EQ(read(row.lowest - 1), row.lowest) << row.key;
        EXPECT_EQ(read(row.lowest), row.lowest) << row.key;
        EXPECT_EQ(read(row.highest), row.highest) << row.key;
        EXPECT_EQ(read(row.highest + 1), row.highest) << row.key;
    }
}

TEST_F(StoredSettingsTest, FallBackForTextsThatAreNoNumbers) {
    EXPECT_EQ(Stored("COM3"), 1);
    EXPECT_EQ(Stored(""), 1);
    EXPECT_EQ(Stored("3 4"), 1);
    EXPECT_EQ(Stored(" 3 "), 3);
    EXPECT_EQ(Stored("2.5"), 2); // a half goes to the even neighbour
    EXPECT_EQ(Stored("3.5"), 4);
}

TEST_F(StoredSettingsTest, FaultOnANumberThatDoesNotFit) {
    EXPECT_THROW(Stored("32768"), Fault);
    EXPECT_THROW(Stored("-1e9"), Fault);
}

TEST_F(StoredSettingsTest, NameTheOneThatDoesNotFitItsPlaceAndTheWayOut) {
    for (const char *key : {"CommPort", "BaudRate", "ParityStop", "NetworkAddress"}) {
        store_.Write(QStringLiteral("Options"), QString::fromLatin1(key), QStringLiteral("70000"));
        try {
            ReadCommSettings(store_);
            ADD_FAILURE() << "it fits";
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::Overflow);
            for (const QString &part :
                 {QStringLiteral("setting \"%1\" of section \"Options\" holds 70000").arg(QLatin1String(key)),
                  folder_.filePath(QStringLiteral("ZTV Link.conf")), QStringLiteral("/CLEARREG")}) {
                EXPECT_TRUE(fault.Description().contains(part)) << fault.what();
            }
        }
        store_.Remove(QStringLiteral("Options"), QString::fromLatin1(key));
    }
}

TEST_F(StoredSettingsTest, SurviveAWindowPlaceThatMakesNoSense) {
    for (const char *text : {"somewhere", "1e300", "-99999999"}) {
        store_.Write(QStringLiteral("Startup"), QStringLiteral("Top"), QString::fromLatin1(text));
        const double top = ReadWindowPlace(store_).top;
        EXPECT_GE(top, -1e6);
        EXPECT_LE(top, 1e6);
    }
    store_.Write(QStringLiteral("Startup"), QStringLiteral("WindowState"), QStringLiteral("17"));
    EXPECT_EQ(ReadWindowState(store_), WindowState::Normal);
}

TEST_F(StoredSettingsTest, KnowThreeStatesOfTheWindow) {
    for (const WindowState state : {WindowState::Minimised, WindowState::Maximised, WindowState::Normal}) {
        WriteWindowState(store_, state);
        EXPECT_EQ(ReadWindowState(store_), state);
    }
}

TEST_F(StoredSettingsTest, ComeBackAsTheyWereWritten) {
    WriteCommSettings(store_, {.port = 12, .baud = 2, .parityStop = 3, .address = 200});
    WriteWindowPlace(store_, {.top = 149.6, .left = -45, .height = 9000, .width = 57600});
    WriteWindowState(store_, WindowState::Maximised);
    const CommSettings settings = ReadCommSettings(store_);
    EXPECT_EQ(settings.port, 12);
    EXPECT_EQ(settings.baud, 2);
    EXPECT_EQ(settings.parityStop, 3);
    EXPECT_EQ(settings.address, 200);
    const WindowPlace place = ReadWindowPlace(store_);
    EXPECT_EQ(place.top, 150);
    EXPECT_EQ(place.left, -45);
    EXPECT_EQ(place.height, 9000);
    EXPECT_EQ(place.width, 57600);
    EXPECT_EQ(ReadWindowState(store_), WindowState::Maximised);
    EXPECT_EQ(store_.Read(QStringLiteral("Startup"), QStringLiteral("Top"), {}), QStringLiteral("150"));
}

} // namespace ztv
