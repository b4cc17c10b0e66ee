#pragma once

#include <QObject>

namespace ztv {

// Restricts the mouse wheel to scrolling, so that it never changes a value that the user only wants to scroll
// past. A closed combo box, a spin box, a slider and a tab bar pass it to their parent; lists and pages
// scroll, also the list of an open combo box.
class QuietWheel : public QObject {
    Q_OBJECT

public:
    // Filters the events of all windows and becomes a child of the application. REQUIRES: the application
    // exists.
    QuietWheel();

    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace ztv
