#include "link/ui/ResultsList.h"

#include <QKeyEvent>
#include <QPainter>

namespace ztv {

namespace {

constexpr int textMargin = 12;

bool MovesTheRow(int key) {
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

} // namespace

ResultsList::ResultsList(QWidget *parent) : QTreeWidget(parent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
}

void ResultsList::EmptyText(const QString &text) {
    emptyText_ = text;
    setAccessibleDescription(text);
    viewport()->update();
}

void ResultsList::paintEvent(QPaintEvent *event) {
    QTreeWidget::paintEvent(event);
    if (topLevelItemCount() == 0) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(viewport()->rect().adjusted(textMargin, 0, -textMargin, 0),
                         Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
    }
}

void ResultsList::keyPressEvent(QKeyEvent *event) {
    QTreeWidget::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept(); // or it would press the dialog's default button, which starts a new search
    }
    if (MovesTheRow(event->key()) && currentItem() != nullptr) {
        currentItem()->setSelected(true);
    }
}

} // namespace ztv
