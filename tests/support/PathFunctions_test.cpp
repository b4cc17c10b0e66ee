#include "support/PathFunctions.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(PathFunctionsTest, TakesWhatFollowsTheLastBackslash) {
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("C:\\Data\\a b.ztv")), QStringLiteral("a b.ztv"));
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("\\\\server\\share\\x")), QStringLiteral("x"));
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("\\x")), QStringLiteral("x"));
}

TEST(PathFunctionsTest, GivesAPathWithoutABackslashBackAsItIs) {
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("a.ztv")), QStringLiteral("a.ztv"));
    EXPECT_EQ(PathFunctions::FileNameOfPath(QString()), QString());
}

TEST(PathFunctionsTest, GivesTheEmptyTextForAPathEndingInABackslash) {
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("C:\\Data\\")), QString());
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("\\")), QString());
}

TEST(PathFunctionsTest, DoesntSplitAtAForwardSlash) {
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("/home/user/a.ztv")),
              QStringLiteral("/home/user/a.ztv"));
    EXPECT_EQ(PathFunctions::FileNameOfPath(QStringLiteral("C:\\Data/a.ztv")), QStringLiteral("Data/a.ztv"));
}

} // namespace ztv
