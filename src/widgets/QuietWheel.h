#pragma once

#include <QObject>

// Keeps the mouse's wheel to scrolling: it never changes a value that the user only wants to scroll past. A
// closed combination box, a number box, a slider or a strip of tabs leaves it to what it stands in; lists and
// pages scroll, also the list of a combination box that is open.
class QuietWheel : public QObject {
    Q_OBJECT

public:
    // For all windows of the application, which must exist and which this becomes a child of.
    QuietWheel();

    bool eventFilter(QObject *watched, QEvent *event) override;
};
