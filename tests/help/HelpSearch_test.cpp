#include "help/HelpSearch.h"

#include <gtest/gtest.h>

namespace ztv {

using Places = std::vector<std::size_t>;

namespace {

const std::vector<HelpSearch::Page> pages = {
    {QStringLiteral("Ports"), QStringLiteral("A serial port, and no parity.")},
    {QStringLiteral("Parity"), QStringLiteral("Even, odd or none.")},
    {QStringLiteral("Line"), QStringLiteral("Parity, parity and again parity of a port.")},
};

Places Find(const char *query) {
    return HelpSearch::Find(pages, QString::fromLatin1(query));
}

} // namespace

TEST(HelpSearchTest, PutsTitlesFirstAndThenWhatHoldsTheWordOftenest) {
    EXPECT_EQ(Find("parity"), Places({1, 2, 0}));
    EXPECT_EQ(Find("port"), Places({0, 2}));
}

TEST(HelpSearchTest, WantsAllWordsInEitherCaseOfLetters) {
    EXPECT_EQ(Find("PARITY Port"), Places({0, 2}));
    EXPECT_EQ(Find("serial"), Places({0}));
    EXPECT_EQ(Find("parity nowhere"), Places());
}

TEST(HelpSearchTest, FindsPartsOfWords) {
    EXPECT_EQ(Find("eri"), Places({0}));
}

TEST(HelpSearchTest, FindsNothingForNothing) {
    EXPECT_EQ(Find(""), Places());
    EXPECT_EQ(Find("   "), Places());
    EXPECT_EQ(HelpSearch::Words(QStringLiteral("  a  b ")),
              QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

} // namespace ztv
