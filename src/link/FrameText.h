#pragma once

#include "link/LinkStatus.h"
#include "link/ModbusPdu.h"
#include "model/ClassZentrova.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// Frames of the Modbus line in words. Pure. Accepts any bytes.
namespace FrameText {

struct Names {
    const ClassZentrova &table;
    std::optional<int> addressingMode;                  // of the sensor; without it no register has a name
    qsizetype mostWords = ModbusPdu::MostReadRegisters; // that are listed
};

// Returns the request of a whole frame, with a good CRC; none for any other bytes.
std::optional<ModbusPdu::Request> RequestOf(QByteArrayView frame);

// Returns how the sensor numbers its registers if a good reply shows that: it has the word of register 69.
std::optional<int> AddressingModeIn(const ModbusPdu::Request &request, QByteArrayView received);

QString OfRequest(const ModbusPdu::Request &request, const Names &names);

// `received` is all that came for the request, `status` the master's verdict.
QString OfReply(const ModbusPdu::Request &request, QByteArrayView received, LinkStatus status,
                const Names &names);

QString NotUnderstood();

} // namespace FrameText

} // namespace ztv
