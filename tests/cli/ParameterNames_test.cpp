#include "cli/ParameterNames.h"

#include "cli/Failure.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class ParameterNamesTest : public testing::Test {
protected:
    std::int16_t Tag(const char *text) const { return TagOf(QString::fromUtf8(text), zentrova_); }

    void ExpectFailure(const char *text, const char *line) const {
        try {
            Tag(text);
            ADD_FAILURE() << text;
        } catch (const Failure &failure) {
            EXPECT_EQ(failure.Status(), ExitStatus::WrongUse);
            EXPECT_EQ(failure.Text(), QString::fromUtf8(line));
        }
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(ParameterNamesTest, AreFoundByNumberAndByName) {
    EXPECT_EQ(Tag("28"), 28);
    EXPECT_EQ(Tag("Near Distance"), 28);
    EXPECT_EQ(Tag("near distance"), 28);
    EXPECT_EQ(Tag("  near   distance "), 28);
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        EXPECT_EQ(TagOf(zentrova_.ParamName(tag), zentrova_), tag) << tag;
        EXPECT_EQ(TagOf(QString::number(tag), zentrova_), tag);
    }
}

TEST_F(ParameterNamesTest, AreFoundByTheirUniqueBeginnings) {
    EXPECT_EQ(Tag("near d"), 28);
    EXPECT_EQ(Tag("serial"), 2);
    ExpectFailure("near", "\"near\" may be \"Near Distance\" or \"Near Voltage\"");
}

TEST_F(ParameterNamesTest, AreGuessedFromASlip) {
    ExpectFailure("Near Distanze",
                  "There is no parameter \"Near Distanze\": did you mean \"Near Distance\"?");
    ExpectFailure("fra distance", "There is no parameter \"fra distance\": did you mean \"Far Distance\"?");
}

TEST_F(ParameterNamesTest, AreNotGuessedFromNothingLikeThem) {
    ExpectFailure("zzz", "There is no parameter \"zzz\"; \"ztv-ctl parameters\" lists them");
    ExpectFailure("", "There is no parameter \"\"; \"ztv-ctl parameters\" lists them");
    ExpectFailure("%1 %2", "There is no parameter \"%1 %2\"; \"ztv-ctl parameters\" lists them");
}

TEST_F(ParameterNamesTest, HaveNumbersThatExist) {
    ExpectFailure("0", "There is no parameter 0; they are 1 to 95");
    ExpectFailure("96", "There is no parameter 96; they are 1 to 95");
    ExpectFailure("-28", "There is no parameter -28; they are 1 to 95");
}

} // namespace ztv
