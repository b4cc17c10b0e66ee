#include "widgets/TextBoxFunctions.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace ztv {

class TextBoxFunctionsTest : public testing::Test {
protected:
    bool Validate(const char *text, double minimum, double maximum, bool round) {
        box_.setText(QString::fromLatin1(text));
        return TextBoxFunctions::ValidateNumericEntry(box_, QStringLiteral("Port Number"), minimum, maximum,
                                                      round, dialogs_);
    }

    QLineEdit box_;
    ScriptedDialogs dialogs_;
};

TEST_F(TextBoxFunctionsTest, SelectsTheWholeText) {
    box_.setText(QStringLiteral("12.00\""));
    TextBoxFunctions::SelectAllText(box_);
    EXPECT_EQ(box_.selectionStart(), 0);
    EXPECT_EQ(box_.selectedText(), box_.text());
}

TEST_F(TextBoxFunctionsTest, TakesBothLimits) {
    EXPECT_TRUE(Validate("1", 1, 255, false));
    EXPECT_TRUE(Validate("255", 1, 255, false));
    EXPECT_TRUE(Validate("0.01", 0.01, 200, false));
    EXPECT_EQ(box_.text(), QStringLiteral("0.01"));
}

TEST_F(TextBoxFunctionsTest, TellsTheLimitsOfWhatItRefuses) {
    for (const char *text : {"0", "255.5", "", "COM1", "1,5", "1e999"}) {
        dialogs_.ExpectNotice(
            QStringLiteral("Please enter a numeric value between\n1 and 255 for Port Number."));
        EXPECT_FALSE(Validate(text, 1, 255, true)) << text;
        EXPECT_EQ(box_.text(), QString::fromLatin1(text));
    }
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0.01 and 200 for Port Number."));
    EXPECT_FALSE(Validate("0.009", 0.01, 200, false));
}

TEST_F(TextBoxFunctionsTest, RoundsToAWholeNumberWhenAsked) {
    const char *rows[][2] = {{"007", "7"}, {"1.5", "2"}, {"2.5", "2"}, {" 3 ", "3"}};
    for (const auto &row : rows) {
        EXPECT_TRUE(Validate(row[0], 1, 255, true));
        EXPECT_EQ(box_.text(), QString::fromLatin1(row[1]));
    }
    EXPECT_TRUE(Validate("007", 1, 255, false));
    EXPECT_EQ(box_.text(), QStringLiteral("007"));
}

} // namespace ztv
