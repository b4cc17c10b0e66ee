#include "link/LinkStatus.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>
#include <map>

namespace ztv {

namespace {

const std::map<int, const char *> table = {
    {0, "No Error"},
    {1, "Illegal Function"},
    {2, "Illegal Data Address"},
    {3, "Slave Device Failure"},
    {4, "Acknowledge"},
    {5, "Slave Device Busy"},
    {6, "Negative Acknowledge"},
    {7, "Memory Parity Error"},
    {10, "Timeout"},
    {11, "CRC Error"},
    {12, "Not the expected response received"},
    {13, "Expected amount of bytes not received"},
    {14, "Write error"},
    {15, "Read Error"},
    {20, "Handle Error"},
    {21, "Reserved"},
    {22, "Index Error"},
    {23, "Data Not initialized"},
    {30, "WSA Startup error"},
    {31, "TCP/IP Conection failed"},
    {32, "Set IP Address error"},
    {40, "Set timeout error"},
    {41, "Set connection error"},
    {42, "Set baud rate error"},
    {43, "Set parity error"},
    {44, "Set stop bits error"},
    {45, "Set data bits error"},
    {46, "Set protocol mode error"},
    {47, "The com port could not be opened.  The port does not exist or is in use by another application."},
    {48, "Connection already open"},
};

} // namespace

TEST(LinkStatusTest, HasTheWordsOfEachCodeAndNoneForAnyOther) {
    for (int code = -10; code <= 300; ++code) {
        const auto row = table.find(code);
        EXPECT_EQ(MbaxpErrorDesc(static_cast<LinkStatus>(code)),
                  row == table.end() ? QString() : QString::fromLatin1(row->second))
            << code;
    }
    EXPECT_EQ(MbaxpErrorDesc(LinkStatus{-32768}), QString());
    EXPECT_EQ(MbaxpErrorDesc(LinkStatus{32767}), QString());
}

} // namespace ztv
