#include "cli/AddressList.h"

#include "cli/Failure.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

using Addresses = std::vector<std::int16_t>;

TEST(AddressListTest, TakesNumbersListsAndRanges) {
    EXPECT_EQ(AddressesOf(QStringLiteral("17")), (Addresses{17}));
    EXPECT_EQ(AddressesOf(QStringLiteral("9,1,5")), (Addresses{9, 1, 5}));
    EXPECT_EQ(AddressesOf(QStringLiteral("1-4")), (Addresses{1, 2, 3, 4}));
    EXPECT_EQ(AddressesOf(QStringLiteral("3-3, 245-247")), (Addresses{3, 245, 246, 247}));
}

TEST(AddressListTest, HasEachAddressOnce) {
    EXPECT_EQ(AddressesOf(QStringLiteral("2,1-3,2")), (Addresses{2, 1, 3}));
}

TEST(AddressListTest, RejectsAllElseInALineThatSaysWhatIsRight) {
    for (const char *text :
         {"", "0", "248", "-1", "1-", "5-3", "1,,2", "1;2", "one", "1.5", "99999999999", "1-248"}) {
        try {
            AddressesOf(QString::fromLatin1(text));
            ADD_FAILURE() << text;
        } catch (const Failure &failure) {
            EXPECT_EQ(failure.Status(), ExitStatus::WrongUse) << text;
            EXPECT_EQ(failure.Text(),
                      QStringLiteral("\"%1\" is no address; use a number from 1 to 247, a list (1,5,9) or "
                                     "a range (1-10)")
                          .arg(QString::fromLatin1(text)));
        }
    }
}

} // namespace ztv
