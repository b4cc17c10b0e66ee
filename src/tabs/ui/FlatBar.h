#pragma once

#include <QProgressBar>

// A progress bar without the gradients of the styles, which cost more than all else on a page that is
// refreshed with every poll.
class FlatBar : public QProgressBar {
    Q_OBJECT

public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent *event) override;
};
