#pragma once

#include "support/SettingsStore.h"
#include "widgets/Picture.h"

#include <QPixmap>
#include <QString>
#include <QUrl>

namespace ztv {

// The maker as the program shows it: the settings of the section "Maker", which the distributor sets.

// "WebAddress", the maker's address on the web.
inline QUrl MakerAddress(const SettingsStore &settings) {
    return QUrl::fromUserInput(settings.Read(QStringLiteral("Maker"), QStringLiteral("WebAddress"),
                                             QStringLiteral("https://www.halvern.example/")));
}

// Returns the address as a menu entry shows it: without the scheme, and with no "&" as a mnemonic.
inline QString MakerCaption(const SettingsStore &settings) {
    QString caption = MakerAddress(settings).toString(QUrl::RemoveScheme | QUrl::StripTrailingSlash);
    if (caption.startsWith(QStringLiteral("//"))) {
        caption.remove(0, 2);
    }
    return caption.replace(u'&', QStringLiteral("&&"));
}

// "Address": street, town, voice and fax numbers, web site and e-mail, one to a line.
inline QString MakersAddressBlock(const SettingsStore &settings) {
    return settings.Read(QStringLiteral("Maker"), QStringLiteral("Address"),
                         QStringLiteral("1 Example Street\nExampletown\nVoice: 555-0100\nFax: 555-0101\n"
                                        "www.halvern.example\ninfo@halvern.example"));
}

// "Logo": the file of a picture. If it can't be read, returns the program's own picture.
inline QPixmap MakersLogo(const SettingsStore &settings) {
    constexpr QSize most(160, 120);
    const Picture own(QStringLiteral(":/icons/maker"));
    const QPixmap logo(settings.Read(QStringLiteral("Maker"), QStringLiteral("Logo"), QString()));
    return logo.isNull()
               ? own.OfHeight(own.Size().height())
               : logo.scaled(logo.size().boundedTo(most), Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace ztv
