#pragma once

#include <QComboBox>
#include <QPointer>
#include <QStringList>

// Combo1: the drop-down list that lies over a value of the Advanced list while one of its texts is chosen.
class ChoiceOverlay : public QComboBox {
    Q_OBJECT

public:
    explicit ChoiceOverlay(QWidget *parent);

    // Shows the list with its left upper corner and width, with the focus, and `choice` selected. `owner`
    // gets the focus back.
    void Open(QWidget &owner, const QPoint &corner, int width, const QStringList &texts, int choice);

    // Hides the list if it shows. Nothing is chosen.
    void Close();

    // As if the user left the list, if it shows.
    void Leave();

Q_SIGNALS:
    // The list is left with this choice, by Enter or for another control. The focus is on its way, so what
    // turns the event loop must wait.
    void Chosen(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QPointer<QWidget> owner_;
    bool closing_ = false;
};
