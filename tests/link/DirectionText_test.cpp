#include "link/DirectionText.h"

#include <gtest/gtest.h>

namespace ztv {

class DirectionTextTest : public testing::Test {
protected:
    DirectionTextTest() { facts_.values = 95; }

    DirectionFacts facts_;
};

TEST_F(DirectionTextTest, SaysWhatReadAndWriteEachDo) {
    const DirectionText text = TextOf(facts_);
    EXPECT_EQ(text.question, QStringLiteral("Which values count?"));
    EXPECT_EQ(text.read, QStringLiteral("Sensor to program: 95 values are read. The sensor isn't changed."));
    EXPECT_EQ(text.write,
              QStringLiteral("Program (factory values) to sensor: all 95 values are written, also "
                             "address and line setting."));
    EXPECT_EQ(text.lostOnRead, QString());
}

TEST_F(DirectionTextTest, NamesTheOriginOfTheValuesAndTheirChanges) {
    facts_.file = QStringLiteral("/home/me/%1 machine7.ztv");
    EXPECT_TRUE(
        TextOf(facts_).write.startsWith(QStringLiteral("Program (%1 machine7.ztv) to sensor: all 95")));
    facts_.edits = {QStringLiteral("Far Distance")};
    EXPECT_TRUE(
        TextOf(facts_).write.startsWith(QStringLiteral("Program (%1 machine7.ztv, 1 change) to sensor")));
    facts_.sensor = QStringLiteral("10427");
    facts_.edits << QStringLiteral("Near Distance");
    EXPECT_TRUE(TextOf(facts_).write.startsWith(
        QStringLiteral("Program (values read from sensor 10427, 2 changes) to sensor")));
}

TEST_F(DirectionTextTest, NamesTheEditsThatReadLoses) {
    facts_.edits = {QStringLiteral("Far Distance")};
    EXPECT_EQ(TextOf(facts_).lostOnRead,
              QStringLiteral("1 change that isn't in a file would be lost: Far Distance."));
    facts_.edits = {QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("D")};
    EXPECT_EQ(TextOf(facts_).lostOnRead,
              QStringLiteral("4 changes that aren't in a file would be lost: A, B, C, D."));
    facts_.edits << QStringLiteral("E") << QStringLiteral("F");
    EXPECT_EQ(TextOf(facts_).lostOnRead,
              QStringLiteral("6 changes that aren't in a file would be lost: A, B, C, D and 2 more."));
}

TEST_F(DirectionTextTest, SaysWhetherTheSensorsValuesAreKept) {
    EXPECT_EQ(
        TextOf(facts_).lostOnWrite,
        QStringLiteral("The sensor's own values would be lost: no sensor was read yet, so that there is "
                       "nothing to back up. Read first to keep them."));
    facts_.backupFor = QStringLiteral("10427");
    EXPECT_EQ(
        TextOf(facts_).lostOnWrite,
        QStringLiteral("The sensor's own values would be replaced. Those last read from sensor 10427 go "
                       "to a backup first."));
}

} // namespace ztv
