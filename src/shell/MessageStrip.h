#pragma once

#include "shell/StripMessage.h"

#include <QFont>
#include <QFrame>
#include <optional>
#include <utility>
#include <vector>

class QLabel;
class QPushButton;

namespace ztv {

// The strip between the pages and the status bar: shows the worst of what is wrong, with buttons for the ways
// out, and is hidden while all is well. It takes no focus and moves nothing.
class MessageStrip : public QFrame {
    Q_OBJECT

public:
    explicit MessageStrip(QWidget *parent);

    // Shows a message, or hides the strip. A message of another kind is announced to assistive clients; a new
    // text of the same kind, such as a time that goes on, isn't.
    void Show(const std::optional<StripMessage> &message);

    // Lies in the free band; with large fonts also over what is between it and `lowest`.
    void PlaceIn(const QRect &band, int lowest);

    // Takes the colours anew from the palette around it.
    void Colour();

Q_SIGNALS:
    void Pressed(StripAction action);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void ShowTexts();
    void ChooseFont();
    void FitUsualFonts();
    void ShowButtons();

    std::optional<StripMessage> shown_;
    QFont bold_;  // of the headline above the detail
    QFont large_; // of the whole message in one line; the same where there is no room for it
    QLabel *symbol_;
    QLabel *headline_;
    QLabel *detail_;
    std::vector<std::pair<StripAction, QPushButton *>> buttons_;
};

} // namespace ztv
