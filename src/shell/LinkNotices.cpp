#include "shell/LinkNotices.h"

#include "link/FailureText.h"
#include "model/ParamDefines.h"

namespace ztv {

LinkNotices::LinkNotices(LinkSession &link, UserDialogs &dialogs) : link_(link), dialogs_(dialogs) {
    connect(&link, &LinkSession::WriteEnded, this, &LinkNotices::OnWriteEnded);
    connect(&link, &LinkSession::DownloadEnded, this, &LinkNotices::OnDownloadEnded);
    connect(&link, &LinkSession::PortRefused, this, &LinkNotices::OnPortRefused);
}

// Deliberate: a good outcome of a write or download has the icon of a warning, too.
void LinkNotices::OnWriteEnded(std::int16_t tag, LinkStatus status) {
    if (status != LinkStatus::NoError) {
        WarnInDetail(dialogs_, QStringLiteral("Error writing parameter"),
                     FailureText::OfWrite(link_.Table(), link_.Sensor(), tag, status));
    } else if (tag == ParamDefines::SaveCommand) {
        Warn(dialogs_, QStringLiteral("Parameters saved successfully!"));
    }
}

void LinkNotices::OnDownloadEnded(LinkStatus status) {
    if (status == LinkStatus::NoError) {
        Warn(dialogs_, QStringLiteral("Parameters downloaded successfully!"));
        return;
    }
    const auto values = static_cast<std::int16_t>(link_.Table().ParamCount() - 1);
    WarnInDetail(dialogs_, QStringLiteral("Error downloading Parameters"),
                 FailureText::OfDownload(values, status));
}

void LinkNotices::OnPortRefused() {
    WarnInDetail(dialogs_, link_.OpenFailureText(), link_.OpenFailureDetail());
}

} // namespace ztv
