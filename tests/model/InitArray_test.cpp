#include "model/InitArray.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(InitArrayTest, CopiesAListWithItsBounds) {
    EXPECT_EQ(InitArray::Integers({1200, 600, 350}), (std::vector<std::int16_t>{1200, 600, 350}));
    EXPECT_EQ(InitArray::Texts({"N1", "N2"}),
              (std::vector<QString>{QStringLiteral("N1"), QStringLiteral("N2")}));
}

} // namespace ztv
