#include "tabs/ParameterListModel.h"

#include "tabs/ParameterEditors.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace ztv {

namespace {

constexpr std::array headers = {"Tag", "Name", "Value", "Preset"};
constexpr int tagWidth = 3; // characters: padded numbers sort as numbers

} // namespace

ParameterListModel::ParameterListModel(const ClassZentrova &zentrova, QObject *parent)
    : QAbstractTableModel(parent),
      zentrova_(zentrova) {}

void ParameterListModel::Fill(View view) {
    beginResetModel();
    rows_.clear();
    rows_.reserve(static_cast<std::size_t>(zentrova_.ParamCount()));
    for (std::int16_t tag = 1; tag < zentrova_.ParamCount(); ++tag) {
        const bool readOnly = zentrova_.ParamReadOnly(tag);
        const std::int32_t preset = zentrova_.ParamPreset(tag);
        if (view == View::Changed && (readOnly || zentrova_.ParamValue(tag) == preset)) {
            continue;
        }
        rows_.push_back({.tag = tag,
                         .readOnly = readOnly,
                         .texts = {QString::number(tag).rightJustified(tagWidth), zentrova_.ParamName(tag),
                                   QString(), zentrova_.FormatRaw(preset, tag)},
                         .failed = zentrova_.ParamWriteFailed(tag),
                         .shown = {}});
    }
    if (sortColumn_) {
        if (*sortColumn_ == Value) { // sorts by the values that the next Refresh shows
            for (Row &row : rows_) {
                row.texts[Value] = zentrova_.FormatRaw(zentrova_.ParamValue(row.tag), row.tag);
            }
        }
        std::vector<Row> sorted;
        sorted.reserve(rows_.size());
        for (const std::size_t from : SortedOrder()) {
            sorted.push_back(std::move(rows_[from]));
        }
        rows_ = std::move(sorted);
    }
    endResetModel();
}

void ParameterListModel::RefreshFailures() {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const bool failed = zentrova_.ParamWriteFailed(rows_[row].tag);
        if (rows_[row].failed != failed) {
            rows_[row].failed = failed;
            const QModelIndex cell = index(static_cast<int>(row), Value);
            Q_EMIT dataChanged(cell, cell, {FailedRole, Qt::AccessibleDescriptionRole});
        }
    }
}

void ParameterListModel::Refresh() {
    RefreshFailures();
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::int16_t tag = rows_[row].tag;
        const std::int32_t raw = zentrova_.ParamValue(tag);
        if (rows_[row].shown != raw) {
            SetValue(row, zentrova_.FormatRaw(raw, tag));
            rows_[row].shown = raw;
        }
    }
}

void ParameterListModel::ShowValue(int row, const QString &text) {
    SetValue(static_cast<std::size_t>(row), text);
}

void ParameterListModel::SetValue(std::size_t row, const QString &text) {
    rows_[row].shown.reset();
    if (rows_[row].texts[Value] != text) {
        rows_[row].texts[Value] = text;
        const QModelIndex cell = index(static_cast<int>(row), Value);
        Q_EMIT dataChanged(cell, cell, {Qt::DisplayRole});
    }
}

void ParameterListModel::SortBy(int column) {
    if (sortColumn_ == column) {
        sortOrder_ = sortOrder_ == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    sortColumn_ = column;

    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const std::vector<std::size_t> order = SortedOrder();
    std::vector<Row> sorted;
    sorted.reserve(rows_.size());
    std::vector<int> newRowOf(rows_.size());
    for (const std::size_t from : order) {
        newRowOf[from] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(rows_[from]));
    }
    rows_ = std::move(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &cell : before) {
        after.push_back(index(newRowOf[static_cast<std::size_t>(cell.row())], cell.column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

// Compares character by character in any locale, so that the blanks before a number count.
std::vector<std::size_t> ParameterListModel::SortedOrder() const {
    std::vector<std::size_t> order(rows_.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto text = [this](std::size_t row) -> const QString & { return rows_[row].texts[*sortColumn_]; };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        const int difference = text(left).compare(text(right), Qt::CaseInsensitive);
        return sortOrder_ == Qt::AscendingOrder ? difference < 0 : difference > 0;
    });
    return order;
}

std::optional<int> ParameterListModel::RowOf(std::int16_t tag) const {
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [tag](const Row &row) { return row.tag == tag; });
    if (found == rows_.end()) {
        return std::nullopt;
    }
    return static_cast<int>(found - rows_.begin());
}

const QString &ParameterListModel::Text(int row, Column column) const {
    return rows_[static_cast<std::size_t>(row)].texts[column];
}

int ParameterListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ParameterListModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : Columns;
}

QVariant ParameterListModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row &row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return row.texts[index.column()];
    case Qt::AccessibleDescriptionRole:
        if (row.failed) {
            return QStringLiteral("The sensor hasn't confirmed this value");
        }
        return row.readOnly ? QStringLiteral("Read only") : QString();
    case Qt::ToolTipRole:
        return ParameterEditors::NoteOf(zentrova_, row.tag, index.row());
    case ReadOnlyRole:
        return row.readOnly;
    case MeasuredRole:
        return zentrova_.ParamMeasured(row.tag);
    case FailedRole:
        return row.failed;
    case KeyRole:
        return QStringLiteral("Key%1").arg(row.tag);
    default:
        return {};
    }
}

QVariant ParameterListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= Columns) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromLatin1(headers[static_cast<std::size_t>(section)]);
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

} // namespace ztv
