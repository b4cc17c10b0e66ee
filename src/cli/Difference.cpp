#include "cli/Difference.h"

#include "link/ListText.h"

#include <algorithm>

namespace ztv {

namespace {

std::vector<Report::Column> ColumnsOf(const CommandRun &run, const QString &first, const QString &second,
                                      bool isOfSensors) {
    constexpr qsizetype valueWidth = 10;
    const ClassZentrova &zentrova = run.Zentrova();
    qsizetype widest = 0;
    for (const std::int16_t tag : run.AllTags()) {
        widest = std::max(widest, zentrova.ParamName(tag).size());
    }
    std::vector<Report::Column> columns;
    if (isOfSensors) {
        columns.push_back(run.AddressColumn());
    }
    columns.push_back({.key = QStringLiteral("parameter")});
    columns.push_back({.key = QStringLiteral("name"), .width = widest});
    columns.push_back({.key = first, .width = valueWidth});
    columns.push_back({.key = second, .width = valueWidth});
    columns.push_back({.key = first + QStringLiteral("_raw"), .isForText = false});
    columns.push_back({.key = second + QStringLiteral("_raw"), .isForText = false});
    return columns;
}

} // namespace

std::vector<Difference> DifferencesOf(const SensorLine::Values &first, const SensorLine::Values &second) {
    std::vector<Difference> differences;
    for (const auto &[tag, value] : first) {
        if (const auto other = second.find(tag); other != second.end() && other->second != value) {
            differences.push_back({.tag = tag, .first = value, .second = other->second});
        }
    }
    return differences;
}

QString NamesOf(const std::vector<Difference> &differences, const ClassZentrova &zentrova) {
    constexpr qsizetype most = 3;
    QStringList names;
    for (const Difference &difference : differences) {
        names.append(QStringLiteral("%1 (%2)").arg(zentrova.ParamName(difference.tag),
                                                   QString::number(difference.tag)));
    }
    return ListText(names, most);
}

DifferenceReport::DifferenceReport(CommandRun &run, const QString &first, const QString &second,
                                   bool isOfSensors)
    : zentrova_(run.Zentrova()),
      isOfSensors_(isOfSensors),
      report_(run.Format(), ColumnsOf(run, first, second, isOfSensors), run.Results()) {
    report_.NameColumns();
}

void DifferenceReport::Add(const std::vector<Difference> &differences, std::int16_t address) {
    for (const Difference &difference : differences) {
        Report::Row row = RowOf(difference);
        if (isOfSensors_) {
            row.insert(row.begin(), CellOf(address));
        }
        report_.Add(row);
    }
}

// A text stands for all values beyond the range, so that two of them may have the same one.
Report::Row DifferenceReport::RowOf(const Difference &difference) const {
    QString first = zentrova_.FormatRaw(difference.first, difference.tag);
    QString second = zentrova_.FormatRaw(difference.second, difference.tag);
    if (first == second) {
        first += QStringLiteral(" (%1)").arg(difference.first);
        second += QStringLiteral(" (%1)").arg(difference.second);
    }
    return {CellOf(difference.tag),
            CellOf(zentrova_.ParamName(difference.tag)),
            CellOf(first),
            CellOf(second),
            CellOf(difference.first),
            CellOf(difference.second)};
}

} // namespace ztv
