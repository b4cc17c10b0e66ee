#include "tabs/ui/ParameterList.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/FailedMark.h"
#include "widgets/PageScale.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <array>
#include <numeric>

namespace ztv {

namespace {

constexpr std::array columnWidths = {952, 4180, 1983, 2540}; // twips
constexpr int rowPadding = 6;                                // pixels: an editor's frame fits into a row

// The columns keep these widths in a list up to this many times as wide as they are.
constexpr double looseRoom = 1.5;

// The part of the further room that each column gets.
constexpr std::array shares = {0.1, 0.5, 0.2, 0.2};

// The width of the list in the smallest window, in pixels. The columns keep their widths there.
constexpr int leastWidth = PageScale::LeastPage.width() - 20;

// The columns that give in a narrower list, in this order, and what remains of each, in pixels.
struct Giver {
    std::size_t column;
    int least;
};
constexpr std::array givers = {Giver{ParameterListModel::Preset, 100}, Giver{ParameterListModel::Name, 150},
                               Giver{ParameterListModel::Value, 80}};

using Widths = std::array<int, ParameterListModel::Columns>;

Widths GivenWidths() {
    Widths widths{};
    int left = 0;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        widths[column] = Controls::FromTwips(left, 0, columnWidths[column], 0).width();
        left += columnWidths[column];
    }
    return widths;
}

int Sum(const Widths &widths) {
    return std::accumulate(widths.begin(), widths.end(), 0);
}

Widths WideWidths(int room) {
    Widths widths = GivenWidths();
    const int given = Sum(widths);
    for (std::size_t column = 0; room >= looseRoom * given && column < widths.size(); ++column) {
        widths[column] += static_cast<int>(shares[column] * (room - given)); // in all no wider than the room
    }
    return widths;
}

Widths NarrowWidths(int room) {
    Widths widths = GivenWidths();
    int missing = std::max(Sum(widths) - room, 0);
    for (const Giver &giver : givers) {
        const int gives = std::clamp(missing, 0, widths[giver.column] - giver.least);
        widths[giver.column] -= gives;
        missing -= gives;
    }
    return widths;
}

class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QColor readOnlyColour;
    bool slantsMeasured = false;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override {
        return {0, option.fontMetrics.height() + rowPadding};
    }

    // Draws an edge around the value that the sensor hasn't confirmed.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        if (index.column() == ParameterListModel::Value &&
            index.data(ParameterListModel::FailedRole).toBool()) {
            FailedMark::Paint(*painter, option.rect, option.palette);
        }
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() != ParameterListModel::Tag &&
            index.data(ParameterListModel::ReadOnlyRole).toBool()) {
            option->palette.setColor(QPalette::Text, readOnlyColour);
        }
        if (slantsMeasured && index.column() == ParameterListModel::Value &&
            index.data(ParameterListModel::MeasuredRole).toBool()) {
            option->font.setItalic(true);
        }
    }
};

} // namespace

ParameterList::ParameterList(ParameterListModel &model, QWidget *parent) : QTreeView(parent), model_(model) {
    Controls::Named(this, "ListView1");
    setAccessibleName(QStringLiteral("Parameters"));
    setItemDelegate(new CellDelegate(this));
    ChooseReadOnlyColour();
    setModel(&model);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    SetUpHeader();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ParameterList::Moved);
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &ParameterList::Moved);
}

template <typename Widths>
void ParameterList::SetWidths(const Widths &widths) {
    const QScopedValueRollback<bool> guard(sharing_, true);
    for (std::size_t column = 0; column < widths.size(); ++column) {
        header()->resizeSection(static_cast<int>(column), widths[column]);
    }
}

void ParameterList::SetUpHeader() {
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(true);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    connect(header(), &QHeaderView::sectionClicked, this, &ParameterList::SortBy);
    connect(header(), &QHeaderView::sectionResized, this, &ParameterList::ColumnResized);
    SetWidths(GivenWidths());
}

void ParameterList::ColumnResized() {
    if (!sharing_) {
        arranged_ = true;
        Q_EMIT Moved();
    }
}

void ParameterList::resizeEvent(QResizeEvent *event) {
    QTreeView::resizeEvent(event);
    if (!arranged_) {
        const bool narrow = width() < leastWidth;
        SetWidths(narrow ? NarrowWidths(viewport()->width()) : WideWidths(viewport()->width()));
    }
}

void ParameterList::SortBy(int column) {
    model_.SortBy(column);
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(column, model_.SortOrder());
    Q_EMIT Moved();
}

void ParameterList::SelectRow(int row) {
    setCurrentIndex(model_.index(row, ParameterListModel::Tag));
}

QRect ParameterList::PlaceOf(int row, ParameterListModel::Column column, const QWidget &widget) const {
    const QRect place = visualRect(model_.index(row, column));
    return {viewport()->mapTo(&widget, place.topLeft()), place.size()};
}

void ParameterList::ScrollUnder(QWidget &editor) {
    verticalScrollBar()->setFocusProxy(&editor);
    horizontalScrollBar()->setFocusProxy(&editor);
}

void ParameterList::mouseDoubleClickEvent(QMouseEvent *event) {
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex cell = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && cell.isValid() && cell.column() == ParameterListModel::Value) {
        scrollTo(cell); // or the click would scroll later, below the editor
        Q_EMIT EditWanted(cell.row());
    }
}

void ParameterList::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        if (currentIndex().isValid()) {
            scrollTo(model_.index(SelectedRow(), ParameterListModel::Value));
            Q_EMIT EditWanted(SelectedRow());
        }
        break;
    default:
        QTreeView::keyPressEvent(event);
        break;
    }
}

void ParameterList::changeEvent(QEvent *event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        ChooseReadOnlyColour();
    }
}

void ParameterList::SlantMeasured(bool slanted) {
    static_cast<CellDelegate *>(itemDelegate())->slantsMeasured = slanted;
    viewport()->update();
}

void ParameterList::ChooseReadOnlyColour() {
    static_cast<CellDelegate *>(itemDelegate())->readOnlyColour = Colours::LegibleDisabledText(palette());
    viewport()->update();
}

} // namespace ztv
