#include "shell/LinkNotices.h"

#include "model/ParamDefines.h"
#include "support/ApplicationTitle.h"

namespace ztv {

LinkNotices::LinkNotices(LinkSession &link, UserDialogs &dialogs) : link_(link), dialogs_(dialogs) {
    connect(&link, &LinkSession::WriteEnded, this, &LinkNotices::OnWriteEnded);
    connect(&link, &LinkSession::DownloadEnded, this, &LinkNotices::OnDownloadEnded);
    connect(&link, &LinkSession::PortRefused, this, &LinkNotices::OnPortRefused);
}

void LinkNotices::OnWriteEnded(std::int16_t tag, LinkStatus status) {
    if (status != LinkStatus::NoError) {
        Show(QStringLiteral("Error writing parameter"));
    } else if (tag == ParamDefines::SaveCommand) {
        Show(QStringLiteral("Parameters saved successfully!"));
    }
}

void LinkNotices::OnDownloadEnded(LinkStatus status) {
    Show(status == LinkStatus::NoError ? QStringLiteral("Parameters downloaded successfully!")
                                       : QStringLiteral("Error downloading Parameters"));
}

void LinkNotices::OnPortRefused() {
    Show(link_.OpenFailureText());
}

// Deliberate: success has the icon of a warning, too.
void LinkNotices::Show(const QString &text) {
    dialogs_.OwnedMessageBox(text, {.icon = BoxIcon::Exclamation, .buttons = BoxButtons::Ok},
                             ApplicationTitle());
}

} // namespace ztv
