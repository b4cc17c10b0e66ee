#pragma once

#include <QComboBox>
#include <QPointer>
#include <QStringList>

namespace ztv {

// Combo1: the drop-down list that covers a value of the Advanced list while the user chooses a text.
class ChoiceOverlay : public QComboBox {
    Q_OBJECT

public:
    explicit ChoiceOverlay(QWidget *parent);

    // Shows the list at `corner` with that width, moves the focus to it and selects `choice`. The list
    // returns the focus to `owner`.
    void Open(QWidget &owner, const QPoint &corner, int width, const QStringList &texts, int choice);

    // Hides the list, if it is shown, without choosing.
    void Close();

    // Chooses the current text and hides the list, if it is shown, as when the user leaves it.
    void Leave();

Q_SIGNALS:
    // The user has left the list with this choice, by Enter or for another control. The focus is still
    // moving.
    void Chosen(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QPointer<QWidget> owner_;
    bool closing_ = false;
};

} // namespace ztv
