#include "shell/MainStrip.h"

#include "shell/MessageStrip.h"
#include "shell/TabFrames.h"

namespace ztv {

MainStrip::MainStrip(QWidget &area, const TabFrames &tabs, const Dependencies &watched)
    : link_(watched.link),
      wizard_(watched.link, watched.zentrova),
      watch_({.link = watched.link,
              .zentrova = watched.zentrova,
              .files = watched.files,
              .deviceOfPort = watched.deviceOfPort,
              .wizard = wizard_,
              .backup = &watched.backup}),
      strip_(new MessageStrip(&area)) {
    connect(&watch_, &StripWatch::Changed, strip_, &MessageStrip::Show);
    connect(strip_, &MessageStrip::Pressed, this, &MainStrip::Obey);
    connect(&tabs, &TabFrames::LaidOut, strip_,
            [this, &tabs] { strip_->PlaceIn(tabs.Band(), tabs.CurrentPage().geometry().bottom()); });
    strip_->Show(watch_.Message());
}

void MainStrip::Colour() {
    strip_->Colour();
}

void MainStrip::Obey(StripAction action) {
    switch (action) {
    case StripAction::ResetCounters:
        link_.TimeoutCount(0);
        link_.CrcErrorCount(0);
        Update();
        break;
    case StripAction::Dismiss:
        wizard_.Forget();
        break;
    default:
        Q_EMIT Pressed(action);
        break;
    }
}

} // namespace ztv
