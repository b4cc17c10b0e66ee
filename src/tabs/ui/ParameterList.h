#pragma once

#include "tabs/ParameterListModel.h"

#include <QTreeView>

// ListView1: the rows of the parameters under four headers that sort them. It edits nothing itself, it says
// what the user wants to edit.
class ParameterList : public QTreeView {
    Q_OBJECT

public:
    ParameterList(ParameterListModel &model, QWidget *parent);

    // The row of the top, and the selected one; -1: none.
    int FirstVisibleRow() const { return indexAt(QPoint(0, 0)).row(); }
    int SelectedRow() const { return currentIndex().row(); }
    void SelectRow(int row);

    // A cell's place in the coordinates of `widget`, which the list stands in.
    QRect PlaceOf(int row, ParameterListModel::Column column, const QWidget &widget) const;

    // A press on a scroll bar leaves the focus with this editor.
    void ScrollUnder(QWidget &editor);

Q_SIGNALS:
    // A double click on the Value cell of the row, or Enter or F2 on the row.
    void EditWanted(int row);

    // The rows aren't where they were, or the columns.
    void Moved();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void SetUpHeader();
    void SortBy(int column);
    void ChooseReadOnlyColour();

    ParameterListModel &model_;
};
