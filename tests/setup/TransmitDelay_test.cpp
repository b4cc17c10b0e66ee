#include "setup/TransmitDelay.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

struct Case {
    const char *ranges;
    const char *delays;
    const char *actualDelay;
    const char *low;
    const char *high;
};

void ExpectResults(const Case &expected) {
    SCOPED_TRACE(testing::Message() << expected.ranges << " and " << expected.delays);
    const auto results =
        TransmitDelay::Calculate(QString::fromLatin1(expected.ranges), QString::fromLatin1(expected.delays));
    ASSERT_TRUE(results);
    EXPECT_EQ(results->actualDelay, QString::fromLatin1(expected.actualDelay));
    EXPECT_EQ(results->low, QString::fromLatin1(expected.low));
    EXPECT_EQ(results->high, QString::fromLatin1(expected.high));
}

std::optional<std::int32_t> RawOf(const char *result, std::int16_t tag, const char *presetsSql = "") {
    const ChangedPresets presets(presetsSql);
    return TransmitDelay::RawValue(ClassZentrova(presets.Folder()), QString::fromLatin1(result), tag);
}

} // namespace

TEST(TransmitDelayTest, AddsRangesDelaysAndTheOverheadOfOneCycle) {
    const Case cases[] = {
        {"0.00", "0", "3.54 ms", "3536", "0"},    {"420.00", "0", "65.54 ms", "0", "1"},
        {"420", "1000", "66.54 ms", "1000", "1"}, {"840.00", "2000", "129.54 ms", "64000", "1"},
        {"1.00", "0", "3.68 ms", "3684", "0"}, // 3683.62
        {"0", "61999", "65.54 ms", "65535", "0"}, {"0", "62000", "65.54 ms", "0", "1"},
        {"0", "-3536", "0.00 ms", "0", "0"},      {"1e2", " +5 ", "18.30 ms", "18303", "0"},
        {".5", "1.", "3.61 ms", "3611", "0"}, // 3610.81
    };
    for (const Case &each : cases) {
        ExpectResults(each);
    }
}

TEST(TransmitDelayTest, RoundsTheTimeOfATieAwayFromZero) {
    ExpectResults({"0", "9", "3.55 ms", "3545", "0"});       // 3.545
    ExpectResults({"0", "-8081", "-4.55 ms", "-4545", "0"}); // -4.545
}

TEST(TransmitDelayTest, TakesTheHighWordFromTheTotalRoundedToEven) {
    ExpectResults({"0", "61999.4", "65.54 ms", "65535", "0"});
    ExpectResults({"0", "61999.5", "65.54 ms", "-1", "1"});      // 65535.5, to 65536
    ExpectResults({"0", "61999.6", "65.54 ms", "0", "1"});       // 65535.6
    ExpectResults({"0", "62000.5", "65.54 ms", "1", "1"});       // 65536.5, to 65536
    ExpectResults({"0", "127534.5", "131.07 ms", "65535", "1"}); // 131070.5, to 131070
    ExpectResults({"0", "127535.5", "131.07 ms", "-1", "2"});    // 131071.5, to 131072
}

TEST(TransmitDelayTest, RoundsTheLowWordAwayFromZero) {
    ExpectResults({"0", "0.5", "3.54 ms", "3537", "0"}); // 3536.5
    ExpectResults({"0", "0.4", "3.54 ms", "3536", "0"});
    ExpectResults({"0", "-0.5", "3.54 ms", "3536", "0"}); // 3535.5
}

TEST(TransmitDelayTest, TruncatesANegativeQuotientTowardsZero) {
    ExpectResults({"0", "-3541", "-0.01 ms", "-5", "0"});
    ExpectResults({"0", "-73536", "-70.00 ms", "-4464", "-1"});
}

TEST(TransmitDelayTest, HasNoResultForWhatIsNoNumber) {
    for (const char *text : {"", " ", "abc", "1,5", "1.2.3", "12x", "-", "1e", "0x10", "inf", "nan", "1 2"}) {
        EXPECT_FALSE(TransmitDelay::Calculate(QString::fromLatin1(text), QStringLiteral("0"))) << text;
        EXPECT_FALSE(TransmitDelay::Calculate(QStringLiteral("0.00"), QString::fromLatin1(text))) << text;
    }
}

TEST(TransmitDelayTest, HasNoResultBeyond32Bits) {
    ExpectResults({"0", "2147480111", "2147483.65 ms", "65535", "32767"});
    ExpectResults({"0", "-2147487184", "-2147483.65 ms", "0", "-32768"});
    for (const char *text : {"2147480112", "-2147487185", "1e300", "-1e300"}) {
        EXPECT_FALSE(TransmitDelay::Calculate(QStringLiteral("0"), QString::fromLatin1(text))) << text;
    }
    for (const char *text : {"14547512", "1e308", "-1e308"}) {
        EXPECT_FALSE(TransmitDelay::Calculate(QString::fromLatin1(text), QStringLiteral("0"))) << text;
    }
    EXPECT_FALSE(TransmitDelay::Calculate(QStringLiteral("1e308"), QStringLiteral("-1e308")));
}

TEST(TransmitDelayTest, WritesWhatFitsAParameter) {
    using namespace ParamDefines;
    EXPECT_EQ(RawOf("3536", TransmitDelayLow), 3536);
    EXPECT_EQ(RawOf("0", TransmitDelayHigh), 0);
    EXPECT_EQ(RawOf("65535", TransmitDelayLow), 65535);
    EXPECT_EQ(RawOf("32767", TransmitDelayHigh), 32767);
    for (const char *result : {"", "-1", "65536", "-32768"}) {
        EXPECT_FALSE(RawOf(result, TransmitDelayLow)) << result;
    }
}

TEST(TransmitDelayTest, FollowsTheRowsDecimalPlaces) {
    const char *const oneDecimal = "UPDATE Parameters SET DecimalPlaces = 1 WHERE rowid = 1 + 21";
    EXPECT_EQ(RawOf("6553", ParamDefines::TransmitDelayLow, oneDecimal), 65530);
    EXPECT_FALSE(RawOf("6554", ParamDefines::TransmitDelayLow, oneDecimal));
    EXPECT_EQ(RawOf("6554", ParamDefines::TransmitDelayHigh, oneDecimal), 6554);
}

} // namespace ztv
