#include "sim/LineReader.h"
#include "tests/helpers/Wait.h"

#include <gtest/gtest.h>

#include <vector>

#include <unistd.h>

namespace sim {

using ztv::WaitUntil;
namespace {

TEST(SimLineReader, GivesWholeLinesAndTheLastOneAtTheEnd) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::vector<QByteArray> lines;
    const LineReader reader(ends[0], [&](const QByteArray &line) { lines.push_back(line); });
    const auto say = [&](const QByteArray &text) {
        return write(ends[1], text.constData(), static_cast<std::size_t>(text.size())) == text.size();
    };
    ASSERT_TRUE(say("one\ntwo\nth"));
    ASSERT_TRUE(WaitUntil([&] { return lines.size() == 2; }));
    ASSERT_TRUE(say("ree\nlast"));
    ASSERT_TRUE(WaitUntil([&] { return lines.size() == 3; }));
    close(ends[1]);
    ASSERT_TRUE(WaitUntil([&] { return lines.size() == 4; }));
    EXPECT_EQ(lines, (std::vector<QByteArray>{"one", "two", "three", "last"}));
    close(ends[0]);
}

} // namespace
} // namespace sim
