#include "help/HelpTopics.h"

#include "support/Fault.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class HelpTopicsTest : public testing::Test {
protected:
    HelpTopicsTest() {
        WriteFile(folder_.filePath(QStringLiteral("one.html")), "<html><title>The first</title></html>");
        WriteFile(folder_.filePath(QStringLiteral("two.html")), "<title>The second</title>");
        WriteFile(folder_.filePath(QStringLiteral("bare.html")), "<h1>No title</h1>");
    }

    HelpTopics Read(const QByteArray &table) {
        WriteFile(folder_.filePath(QStringLiteral("topics.txt")), table);
        return HelpTopics::Read(folder_.path());
    }

    void ExpectFault(const QByteArray &table, const char *message) {
        try {
            Read(table);
            ADD_FAILURE() << "no fault: " << message;
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(fault.Description().contains(QLatin1String(message))) << fault.what();
        }
    }

    QTemporaryDir folder_;
};

TEST_F(HelpTopicsTest, LieBesideTheCompiledFile) {
    EXPECT_EQ(HelpTopics::FolderBeside(QStringLiteral("/opt/ztv/ZTV.chm")), QStringLiteral("/opt/ztv/help"));
    EXPECT_EQ(HelpTopics::FolderBeside(QStringLiteral("C:\\ZTV Link\\ZTV.chm")),
              QStringLiteral("C:/ZTV Link/help"));
}

TEST_F(HelpTopicsTest, ComeInTheirOrderWithTheTitlesOfTheirPages) {
    const HelpTopics topics = Read("# words\n\n0 | 5 | two.html | a; b c ;\n1 | 7 | one.html |\n");
    ASSERT_EQ(topics.All().size(), 2U);
    EXPECT_EQ(topics.All()[0].title, QStringLiteral("The second"));
    EXPECT_EQ(topics.All()[0].keywords, QStringList({QStringLiteral("a"), QStringLiteral("b c")}));
    EXPECT_EQ(topics.All()[1].level, 1);
    EXPECT_TRUE(topics.All()[1].keywords.isEmpty());
    EXPECT_EQ(topics.OfNumber(7), &topics.All()[1]);
    EXPECT_EQ(topics.OfNumber(6), nullptr);
    EXPECT_EQ(topics.OfFile(QStringLiteral("two.html")), &topics.All()[0]);
    EXPECT_EQ(topics.OfFile(QStringLiteral("three.html")), nullptr);
    EXPECT_EQ(topics.Page(topics.All()[0]), QStringLiteral("<title>The second</title>"));
}

TEST_F(HelpTopicsTest, SayWhereTheirTableIsWrong) {
    ExpectFault("", "topics.txt: there are no topics");
    ExpectFault("#\n0 | 1 | one.html\n", "topics.txt:2: there must be four columns");
    ExpectFault("1 | 1 | one.html |", "topics.txt:1: the level must be 0 or 1, and first 0");
    ExpectFault("0 | 1 | one.html |\n2 | 2 | two.html |", "topics.txt:2: the level");
    ExpectFault("x | 1 | one.html |", "topics.txt:1: the level");
    ExpectFault("0 | 0 | one.html |", "topics.txt:1: the number");
    ExpectFault("0 | 1 | one.html |\n0 | 1 | two.html |", "topics.txt:2: the number");
    ExpectFault("0 | 1 | one.html |\n0 | 2 | one.html |", "topics.txt:2: the file");
    ExpectFault("0 | 1 | ../one.html |", "topics.txt:1: the file");
    ExpectFault("0 | 1 | bare.html |", "topics.txt:1: the page must have a title");
    ExpectFault("0 | 1 | gone.html |", "gone.html: No such file");
}

TEST_F(HelpTopicsTest, SayThatTheyAreMissing) {
    try {
        HelpTopics::Read(folder_.filePath(QStringLiteral("nowhere")));
        ADD_FAILURE();
    } catch (const Fault &fault) {
        EXPECT_TRUE(fault.Description().contains(QStringLiteral("nowhere/topics.txt"))) << fault.what();
    }
}

} // namespace ztv
