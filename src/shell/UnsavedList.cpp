#include "shell/UnsavedList.h"

#include "shell/StatusCells.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace ztv {

namespace {

constexpr int mostRowsInView = 12;
constexpr int edge = 2; // beside the widest row

} // namespace

UnsavedList::UnsavedList(const ClassZentrova &zentrova, QWidget *parent)
    : QFrame(parent, Qt::Popup),
      zentrova_(zentrova),
      title_(Controls::Named(new QLabel(this), "UnsavedTitle")),
      list_(Controls::Named(new QListWidget(this), "UnsavedRows")),
      save_(Controls::Captioned<QPushButton>("UnsavedSave", "Save in Sensor", this)) {
    Controls::Named(this, "UnsavedList");
    setFrameShape(QFrame::StyledPanel);
    list_->setAccessibleName(QStringLiteral("Changes not saved in the sensor"));
    list_->setSelectionMode(QAbstractItemView::SingleSelection); // by which a client reads the rows
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    save_->setAutoDefault(true); // Enter presses it
    DeferredWork::OnPress(*save_, [this] {
        close();
        Q_EMIT SaveWanted();
    });
    auto *column = new QVBoxLayout(this);
    column->addWidget(title_);
    column->addWidget(list_);
    column->addWidget(save_);
}

QString UnsavedList::TextOf(const UnsavedWrites::Row &row) const {
    const auto shown = [&](std::int32_t value) { return zentrova_.FormatRaw(value, row.tag); };
    const QString name = QStringLiteral("%1 %2  ").arg(row.tag).arg(zentrova_.ParamName(row.tag));
    return row.before ? name + shown(*row.before) + QStringLiteral(" -> ") + shown(row.value)
                      : name + shown(row.value);
}

void UnsavedList::Show(const std::vector<UnsavedWrites::Row> &rows, bool canSave) {
    if (rows.empty()) {
        close();
        return;
    }
    const QString title = UnsavedWords(rows.size());
    title_->setText(title);
    setAccessibleName(title);
    const int current = std::max(list_->currentRow(), 0);
    list_->clear();
    for (const UnsavedWrites::Row &row : rows) {
        list_->addItem(TextOf(row));
    }
    list_->setCurrentRow(std::min(current, list_->count() - 1), QItemSelectionModel::NoUpdate);
    save_->setEnabled(canSave);
    save_->setToolTip(canSave ? QStringLiteral("Makes the sensor store its settings, as Save ZTV does")
                              : QStringLiteral("Go online first"));
    SizeToRows();
}

void UnsavedList::SizeToRows() {
    const int rows = std::min(list_->count(), mostRowsInView);
    const int frame = 2 * list_->frameWidth();
    const int scrollBar = list_->count() > rows ? list_->verticalScrollBar()->sizeHint().width() : 0;
    list_->setFixedSize(list_->sizeHintForColumn(0) + frame + scrollBar + edge,
                        rows * list_->sizeHintForRow(0) + frame + edge);
    adjustSize();
}

void UnsavedList::OpenAbove(const QWidget &widget) {
    const QRect screen = widget.screen()->availableGeometry();
    QPoint corner = widget.mapToGlobal(QPoint(0, -height()));
    corner.setX(std::max(screen.left(), std::min(corner.x(), screen.right() - width())));
    corner.setY(std::max(screen.top(), corner.y()));
    move(corner);
    show();
    (save_->isEnabled() ? static_cast<QWidget *>(save_) : list_)->setFocus(Qt::PopupFocusReason);
}

} // namespace ztv
