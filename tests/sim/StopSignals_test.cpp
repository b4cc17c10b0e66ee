#include "sim/StopSignals.h"
#include "tests/helpers/Wait.h"

#include <gtest/gtest.h>

#include <csignal>

namespace sim {

using ztv::WaitUntil;
namespace {

TEST(SimStopSignals, CallFromTheEventLoopOnce) {
    int calls = 0;
    {
        const StopSignals stop([&] { ++calls; });
        std::raise(SIGTERM);
        std::raise(SIGINT);
        EXPECT_EQ(calls, 0);
        EXPECT_TRUE(WaitUntil([&] { return calls > 0; }));
        EXPECT_EQ(calls, 1);
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGTTIN}) {
        std::signal(signal, SIG_DFL);
    }
}

} // namespace
} // namespace sim
