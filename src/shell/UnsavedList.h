#pragma once

#include "link/UnsavedWrites.h"
#include "model/ClassZentrova.h"

#include <QFrame>
#include <vector>

class QLabel;
class QListWidget;
class QPushButton;

namespace ztv {

// A popup that names the settings that the sensor forgets, and can have them saved. Escape or a click
// elsewhere closes it.
class UnsavedList : public QFrame {
    Q_OBJECT

public:
    // REQUIRES: `zentrova` outlives this.
    UnsavedList(const ClassZentrova &zentrova, QWidget *parent);

    // Shows the rows. Closes the list when there are none.
    void Show(const std::vector<UnsavedWrites::Row> &rows, bool canSave);

    // Opens the list above the widget.
    void OpenAbove(const QWidget &widget);

Q_SIGNALS:
    void SaveWanted();

private:
    QString TextOf(const UnsavedWrites::Row &row) const;
    void SizeToRows();

    const ClassZentrova &zentrova_;
    QLabel *title_;
    QListWidget *list_;
    QPushButton *save_;
};

} // namespace ztv
