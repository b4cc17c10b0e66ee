#include "support/ProgramFolder.h"

#include "tests/support/Printers.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

TEST(ProgramFolderTest, IsTheExecutablesUnlessTheEnvironmentNamesAnother) {
    qunsetenv("ZTVLINK_HOME");
    EXPECT_EQ(ProgramFolder(), QCoreApplication::applicationDirPath());
    qputenv("ZTVLINK_HOME", "/somewhere/else");
    EXPECT_EQ(ProgramFolder(), QStringLiteral("/somewhere/else"));
    qunsetenv("ZTVLINK_HOME");
}
