#pragma once

#include "tabs/ParameterListModel.h"

#include <QTreeView>

namespace ztv {

// ListView1: the list of the parameters, with four headers that sort it. It edits nothing itself; it reports
// the row that the user wants to edit.
class ParameterList : public QTreeView {
    Q_OBJECT

public:
    ParameterList(ParameterListModel &model, QWidget *parent);

    // Shows the measured values in italics, or as the others. Read-only rows are grey as it is.
    void SlantMeasured(bool slanted);

    // Return the topmost visible row and the selected row; -1 if there is none.
    int FirstVisibleRow() const { return indexAt(QPoint(0, 0)).row(); }
    int SelectedRow() const { return currentIndex().row(); }
    void SelectRow(int row);

    // Returns a cell's rectangle in the coordinates of `widget`, which contains the list.
    QRect PlaceOf(int row, ParameterListModel::Column column, const QWidget &widget) const;

    // Makes a press on a scroll bar leave the focus with `editor`.
    void ScrollUnder(QWidget &editor);

Q_SIGNALS:
    // The user double-clicked the Value cell of the row, or pressed Enter or F2 on the row.
    void EditWanted(int row);

    // Rows or columns have moved.
    void Moved();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void SetUpHeader();
    template <typename Widths>
    void SetWidths(const Widths &widths);
    void ColumnResized();
    void SortBy(int column);
    void ChooseReadOnlyColour();

    ParameterListModel &model_;
    bool sharing_ = false;  // the columns get their widths from the list
    bool arranged_ = false; // the user has set a column's width: they stay
};

} // namespace ztv
