#pragma once

#include <QProgressBar>

namespace ztv {

// A progress bar without the style's gradients, which cost more than the rest of a page that is refreshed at
// each poll.
class FlatBar : public QProgressBar {
    Q_OBJECT

public:
    using QProgressBar::QProgressBar;

    // Fills the bar in the colour of disabled text, or in that of a selection.
    void Dim(bool dimmed);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool dimmed_ = false;
};

} // namespace ztv
