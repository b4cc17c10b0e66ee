#include "sim/OptionsParser.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

ParsedOptions Parse(QStringList arguments) {
    arguments.prepend("ztv-sim");
    return ParseOptions(arguments);
}

TEST(SimOptions, LeaveToThePresetsWhatIsNotGiven) {
    const ParsedOptions parsed = Parse({});
    EXPECT_EQ(parsed.error.toStdString(), "");
    EXPECT_TRUE(parsed.options.presets.endsWith("/Presets.fil"));
    EXPECT_FALSE(parsed.options.address || parsed.options.baud || parsed.options.parity ||
                 parsed.options.addressing);
    EXPECT_FALSE(parsed.options.faults.pace);
    EXPECT_FALSE(parsed.options.faults.echo);
    EXPECT_FALSE(parsed.options.boot);
    EXPECT_EQ(parsed.options.flash, "");
    EXPECT_EQ(parsed.firmware, "");
}

TEST(SimOptions, ChooseTheLoaderAndTheFlash) {
    const ParsedOptions parsed = Parse({"--boot", "--flash", "some/flash", "--make-firmware", "some/hex"});
    EXPECT_EQ(parsed.error.toStdString(), "");
    EXPECT_TRUE(parsed.options.boot);
    EXPECT_EQ(parsed.options.flash, "some/flash");
    EXPECT_EQ(parsed.firmware, "some/hex");
}

TEST(SimOptions, AreReadFromTheCommandLine) {
    const ParsedOptions parsed =
        Parse({"--link",    "some/port", "--presets", "x.fil",        "--address", "7",      "--baud",
               "9600",      "--parity",  "O1",        "--addressing", "0",         "--pace", "--echo",
               "--latency", "12",        "--drop",    "0.5",          "--corrupt", "0.25",   "--exception",
               "4",         "--seed",    "9",         "--log",        "-"});
    ASSERT_EQ(parsed.error.toStdString(), "");
    const SensorOptions &options = parsed.options;
    EXPECT_EQ(options.link, "some/port");
    EXPECT_EQ(options.presets, "x.fil");
    EXPECT_EQ(options.log, "-");
    EXPECT_EQ(options.address, 7);
    EXPECT_EQ(options.baud, 2);
    EXPECT_EQ(options.parity, 3);
    EXPECT_EQ(options.addressing, 0);
    EXPECT_TRUE(options.faults.pace);
    EXPECT_TRUE(options.faults.echo);
    EXPECT_EQ(options.faults.latencyMs, 12);
    EXPECT_EQ(options.faults.drop, 0.5);
    EXPECT_EQ(options.faults.corrupt, 0.25);
    EXPECT_EQ(options.faults.exception, 4);
    EXPECT_EQ(options.seed, 9u);
}

TEST(SimOptions, WithAWrongValueAreRefused) {
    const std::pair<const char *, const char *> wrong[] = {
        {"--address", "0"},      {"--address", "248"}, {"--baud", "300"}, {"--parity", "E2"},
        {"--addressing", "2"},   {"--latency", "-1"},  {"--drop", "1.5"}, {"--corrupt", "x"},
        {"--exception", "256"},  {"--seed", "-1"},     {"--link", ""},    {"--flash", ""},
        {"--make-firmware", ""}, {"--nothing", "1"}};
    for (const auto &[option, value] : wrong) {
        EXPECT_TRUE(Parse({option, value}).error.contains(QString(option).sliced(2))) << option << value;
    }
    EXPECT_TRUE(Parse({"stray"}).error.contains("stray"));
}

TEST(SimOptions, AskForHelpAndVersion) {
    for (const char *option : {"--pace", "--echo", "--boot", "--flash <file>", "--make-firmware <file>"}) {
        EXPECT_TRUE(Parse({"--help"}).text.contains(option)) << option;
    }
    EXPECT_TRUE(Parse({"--version"}).text.startsWith("ztv-sim"));
}

} // namespace
} // namespace sim
