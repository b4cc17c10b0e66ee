#pragma once

#include "link/LinkSession.h"
#include "support/UserDialogs.h"

#include <QObject>
#include <cstdint>

namespace ztv {

// Shows the boxes for the outcomes of a link while the link reports them, so that the effects of an outcome
// follow its box.
class LinkNotices : public QObject {
    Q_OBJECT

public:
    // REQUIRES: both outlive this.
    LinkNotices(LinkSession &link, UserDialogs &dialogs);

private:
    void OnWriteEnded(std::int16_t tag, LinkStatus status);
    void OnDownloadEnded(LinkStatus status);
    void OnPortRefused();

    LinkSession &link_;
    UserDialogs &dialogs_;
};

} // namespace ztv
