#pragma once

#include <QTreeWidget>

namespace ztv {

// A list with columns that shows in its middle why it is empty. A key that moves the current row also selects
// it, even if the row was current but not selected.
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

} // namespace ztv
