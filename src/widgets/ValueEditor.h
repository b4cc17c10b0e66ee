#pragma once

#include <QChar>
#include <QRect>
#include <QString>
#include <QWidget>

namespace ztv {

// The editor that a page opens where it shows a value.
class ValueEditor {
public:
    // Prepares to edit the parameter `tag` over the whole of `owner`, a box that shows its value.
    virtual void MoveOver(QWidget &owner, const QString &tag, const QString &text) = 0;

    // Prepares to edit the parameter `tag` at `place`, in the coordinates of `owner`, which shows no text and
    // isn't covered. The text is centred.
    virtual void MoveBeside(QWidget &owner, const QRect &place, const QString &tag, const QString &text) = 0;

    // Shows the editor where it is, with the focus and its whole text selected; `first`, the key that opened
    // it, replaces that text.
    virtual void Open(QChar first) = 0;

    // Follows the widget that the editor covers, also in its font; closes the editor when that widget is
    // hidden or disabled.
    virtual void StayOver() = 0;

    // Moves the editor if it is open beside `owner`, and takes the owner's font.
    virtual void StayBeside(QWidget &owner, const QRect &place) = 0;

protected:
    ~ValueEditor() = default;
};

} // namespace ztv
