#pragma once

#include "model/ClassZentrova.h"

#include <QAbstractTableModel>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The rows of the Advanced list. Names and presets come from the table; Refresh copies the values, so that
// only changed cells are painted.
class ParameterListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Tag, Name, Value, Preset, Columns };
    enum Role { ReadOnlyRole = Qt::UserRole, MeasuredRole, KeyRole, FailedRole };
    enum class View {
        All,
        Changed, // writable parameters whose value differed from its preset at Fill
    };

    explicit ParameterListModel(const ClassZentrova &zentrova, QObject *parent = nullptr);

    // Rebuilds the rows in the order of the last sort. The values are empty until Refresh.
    void Fill(View view);

    // Copies the values. Emits dataChanged for exactly the cells whose text changes. Keeps the order of the
    // rows.
    void Refresh();

    // Marks the rows whose last write failed, and no others. Refresh does so, too.
    void RefreshFailures();

    // Handles a click on a column's header: sorts by the column's texts. A second click on the same column
    // reverses the direction; a click on another column keeps it.
    void SortBy(int column);
    std::optional<int> SortColumn() const { return sortColumn_; }
    Qt::SortOrder SortOrder() const { return sortOrder_; }

    std::int16_t TagOf(int row) const { return rows_[static_cast<std::size_t>(row)].tag; }
    std::optional<int> RowOf(std::int16_t tag) const;
    const QString &Text(int row, Column column) const;

    // Shows `text` as the value of a row until the next Refresh.
    void ShowValue(int row, const QString &text);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row {
        std::int16_t tag;
        bool readOnly;
        QString texts[Columns];
        bool failed = false;
        std::optional<std::int32_t> shown; // the raw value of the text; none if Refresh didn't set the text
    };

    void SetValue(std::size_t row, const QString &text);
    std::vector<std::size_t> SortedOrder() const;

    const ClassZentrova &zentrova_;
    std::vector<Row> rows_;
    std::optional<int> sortColumn_;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace ztv
