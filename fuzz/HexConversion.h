#pragma once

#include "firmware/BootSettings.h"
#include "fuzz/Harness.h"

#include <array>

namespace ztv {

// The memory images in the order program, EEPROM, ids, configuration.
using Images = std::array<QByteArray, 4>;

// A program folder with memory images, and one device family's two conversions.
class HexConversion {
public:
    explicit HexConversion(std::uint8_t deviceFamily);

    std::size_t ImageCount() const { return settings_.DeviceFamily == 1 ? 4 : 2; }
    void SetImages(const Images &images);
    Images ReadImages() const; // images that the family doesn't have are empty

    std::int16_t Check(const QByteArray &hexFile);
    std::int16_t Import(const QByteArray &hexFile);
    QByteArray Export();

    // Requires that import and export repeat the same images and the same file. REQUIRES: the images consist
    // of aligned, whole lines, each within its region, as an import leaves them.
    void RequireStable();

private:
    Fuzz::Folder folder_;
    BootSettings settings_;
    QString hexPath_;
};

} // namespace ztv
