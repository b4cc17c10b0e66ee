#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace ztv {

// Runs the test as user "nobody" while it exists, if root runs the tests: root ignores permissions.
class AsNobody {
public:
    AsNobody() : root_(geteuid() == 0) {
        if (root_) {
            EXPECT_EQ(setresgid(nobody, nobody, 0), 0);
            EXPECT_EQ(setresuid(nobody, nobody, 0), 0);
        }
    }
    ~AsNobody() {
        if (root_) {
            EXPECT_EQ(setresuid(0, 0, 0), 0);
            EXPECT_EQ(setresgid(0, 0, 0), 0);
            prctl(PR_SET_DUMPABLE, 1); // required by the leak sanitizer
        }
    }
    AsNobody(const AsNobody &) = delete;
    AsNobody &operator=(const AsNobody &) = delete;

private:
    static constexpr unsigned nobody = 65534;
    bool root_;
};

} // namespace ztv
