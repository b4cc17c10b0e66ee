#pragma once

#include <QProgressBar>

namespace ztv {

// A progress bar without the style's gradients, which cost more than the rest of a page that is refreshed at
// each poll.
class FlatBar : public QProgressBar {
    Q_OBJECT

public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ztv
