#pragma once

#include "link/LinkSession.h"
#include "support/UserDialogs.h"

#include <QObject>

// Shows the boxes for the outcomes of a link, while they are being reported: what follows an outcome comes
// after its box.
class LinkNotices : public QObject {
    Q_OBJECT

public:
    // Both outlive it.
    LinkNotices(LinkSession &link, UserDialogs &dialogs);

private:
    void OnWriteEnded(std::int16_t tag, std::int16_t status);
    void OnDownloadEnded(std::int16_t status);
    void OnPortRefused();
    void Show(const QString &text);

    LinkSession &link_;
    UserDialogs &dialogs_;
};
