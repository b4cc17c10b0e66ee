#pragma once

#include "shell/StatusCells.h"

#include <QAbstractButton>
#include <QWidget>
#include <cstddef>
#include <vector>

namespace ztv {

// One cell of the status bar.
class StatusCellButton : public QAbstractButton {
    Q_OBJECT

public:
    StatusCellButton(StatusCell::Kind kind, QWidget *parent);

    const StatusCell &Cell() const { return cell_; }
    void Show(const StatusCell &cell);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    bool IsChip() const { return cell_.kind == StatusCell::Kind::State; }
    QFont CellFont() const;
    int ShapeWidth() const;
    void Measure();

    StatusCell cell_;
    QSize size_;
};

// The cells of the status bar, right of its text. Shows as many as there is room for and changes only what
// differs.
class StatusBarCells : public QWidget {
    Q_OBJECT

public:
    explicit StatusBarCells(QWidget *parent);

    void Show(const std::vector<StatusCell> &cells);

    StatusCellButton &Button(StatusCell::Kind kind) const {
        return *buttons_.at(static_cast<std::size_t>(kind));
    }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void Pressed(StatusCell::Kind kind);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    void LayOut();

    std::vector<StatusCellButton *> buttons_; // by kind
    std::vector<StatusCell::Kind> shown_;
};

} // namespace ztv
