#include "link/LinkStatus.h"

#include <algorithm>
#include <array>

namespace ztv {

namespace {

struct StatusText {
    std::int16_t code;
    const char *text;
};

constexpr std::array statusTexts = {
    StatusText{0, "No Error"},
    StatusText{1, "Illegal Function"},
    StatusText{2, "Illegal Data Address"},
    StatusText{3, "Slave Device Failure"},
    StatusText{4, "Acknowledge"},
    StatusText{5, "Slave Device Busy"},
    StatusText{6, "Negative Acknowledge"},
    StatusText{7, "Memory Parity Error"},
    StatusText{10, "Timeout"},
    StatusText{11, "CRC Error"},
    StatusText{12, "Not the expected response received"},
    StatusText{13, "Expected amount of bytes not received"},
    StatusText{14, "Write error"},
    StatusText{15, "Read Error"},
    StatusText{20, "Handle Error"},
    StatusText{21, "Reserved"},
    StatusText{22, "Index Error"},
    StatusText{23, "Data Not initialized"},
    StatusText{30, "WSA Startup error"},
    StatusText{31, "TCP/IP Conection failed"}, // Deliberate: spelled so
    StatusText{32, "Set IP Address error"},
    StatusText{40, "Set timeout error"},
    StatusText{41, "Set connection error"},
    StatusText{42, "Set baud rate error"},
    StatusText{43, "Set parity error"},
    StatusText{44, "Set stop bits error"},
    StatusText{45, "Set data bits error"},
    StatusText{46, "Set protocol mode error"},
    StatusText{47, "The com port could not be opened.  The port does not exist or is in use by another "
                   "application."},
    StatusText{48, "Connection already open"},
};

} // namespace

QString MbaxpErrorDesc(std::int16_t code) {
    const auto found = std::find_if(statusTexts.begin(), statusTexts.end(),
                                    [code](const StatusText &row) { return row.code == code; });
    return found == statusTexts.end() ? QString() : QString::fromLatin1(found->text);
}

} // namespace ztv
