#include "shell/LinkNotices.h"

#include "model/ParamDefines.h"

namespace ztv {

LinkNotices::LinkNotices(LinkSession &link, UserDialogs &dialogs) : link_(link), dialogs_(dialogs) {
    connect(&link, &LinkSession::WriteEnded, this, &LinkNotices::OnWriteEnded);
    connect(&link, &LinkSession::DownloadEnded, this, &LinkNotices::OnDownloadEnded);
    connect(&link, &LinkSession::PortRefused, this, &LinkNotices::OnPortRefused);
}

// Deliberate: a good outcome of a write or download has the icon of a warning, too.
void LinkNotices::OnWriteEnded(std::int16_t tag, std::int16_t status) {
    if (status != LinkStatus::NoError) {
        Warn(dialogs_, QStringLiteral("Error writing parameter"));
    } else if (tag == ParamDefines::SaveCommand) {
        Warn(dialogs_, QStringLiteral("Parameters saved successfully!"));
    }
}

void LinkNotices::OnDownloadEnded(std::int16_t status) {
    Warn(dialogs_, status == LinkStatus::NoError ? QStringLiteral("Parameters downloaded successfully!")
                                                 : QStringLiteral("Error downloading Parameters"));
}

void LinkNotices::OnPortRefused() {
    Warn(dialogs_, link_.OpenFailureText());
}

} // namespace ztv
