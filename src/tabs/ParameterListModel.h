#pragma once

#include "model/ClassZentrova.h"

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

// The rows of the Advanced list. Names and presets are those of the table; values are copied by Refresh, so
// that only what has changed is painted.
class ParameterListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Tag, Name, Value, Preset, Columns };
    enum Role { ReadOnlyRole = Qt::UserRole, KeyRole };
    enum class View {
        All,
        Changed, // what the user may change and differs from its preset, as of Fill
    };

    explicit ParameterListModel(const ClassZentrova &zentrova, QObject *parent = nullptr);

    // Builds the rows anew, in the order of the last sort. The values are empty until Refresh.
    void Fill(View view);

    // Copies the values; says dataChanged for each cell whose text is another, and for no other. Keeps the
    // order of the rows.
    void Refresh();

    // A click on a column's header: sorts by its texts. A second one in a row turns the direction round,
    // another column keeps it.
    void SortBy(int column);
    std::optional<int> SortColumn() const { return sortColumn_; }
    Qt::SortOrder SortOrder() const { return sortOrder_; }

    std::int16_t TagOf(int row) const { return rows_[static_cast<std::size_t>(row)].tag; }
    std::optional<int> RowOf(std::int16_t tag) const;
    const QString &Text(int row, Column column) const;

    // Shows a text as the value of a row, until the next Refresh.
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
        std::optional<std::int32_t> shown; // the raw value behind the text; nothing if it isn't that of one
    };

    void SetValue(std::size_t row, const QString &text);
    std::vector<std::size_t> SortedOrder() const;

    const ClassZentrova &zentrova_;
    std::vector<Row> rows_;
    std::optional<int> sortColumn_;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};
