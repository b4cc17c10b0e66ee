#include "shell/AboutContents.h"

#include "model/ParamDefines.h"
#include "shell/MakerAddress.h"
#include "support/ProgramVersion.h"

namespace ztv {

FormAbout::Contents AboutContents(const ClassZentrova &zentrova, const SettingsStore &settings) {
    const auto shown = [&zentrova](std::int16_t tag) {
        return zentrova.FormatRaw(zentrova.ParamValue(tag), tag);
    };
    return {.softwareVersion = ProgramVersion(),
            .firmwareVersion = shown(ParamDefines::FirmwareVersion),
            .bootVersion = shown(ParamDefines::BootVersion),
            .processorId = shown(ParamDefines::ProcessorId),
            .processorRevision = shown(ParamDefines::ProcessorRevision),
            .boardRevision = shown(ParamDefines::BoardRevision),
            .makersAddress = MakersAddressBlock(settings),
            .makersLogo = MakersLogo(settings)};
}

} // namespace ztv
