#pragma once

#include <QTreeWidget>

// A list of rows with columns that says in its middle why it is empty. Without a mouse, the keys that move
// the current row select the row that is current but not yet selected.
class ResultsList : public QTreeWidget {
    Q_OBJECT

public:
    explicit ResultsList(QWidget *parent = nullptr);

    void EmptyText(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString emptyText_;
};
