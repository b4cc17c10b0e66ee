#include "cli/Commands.h"
#include "cli/LocalTime.h"
#include "cli/Rounds.h"
#include "model/ParamDefines.h"
#include "model/UnitClass.h"

#include <algorithm>
#include <array>

namespace ztv {

namespace {

constexpr qsizetype timeWidth = 29;

constexpr std::array usualTags = {ParamDefines::ActualDistance, ParamDefines::EchoReceived,
                                  ParamDefines::OutputVoltage, ParamDefines::Relay1State,
                                  ParamDefines::Relay2State};

std::vector<std::int16_t> WithoutRepeats(const std::vector<std::int16_t> &tags) {
    std::vector<std::int16_t> once;
    for (const std::int16_t tag : tags) {
        if (std::ranges::find(once, tag) == once.end()) {
            once.push_back(tag);
        }
    }
    return once;
}

// Makes the cells of a table of readings.
class WatchedRows {
public:
    WatchedRows(CommandRun &run, const std::vector<std::int16_t> &tags)
        : zentrova_(run.Zentrova()),
          tags_(tags),
          raw_(run.Given().raw),
          units_(run.Format(ReportFormat::Csv) == ReportFormat::Text) {}

    std::vector<Report::Column> Columns(const Report::Column &address) const {
        std::vector<Report::Column> columns = {{.key = QStringLiteral("time"), .width = timeWidth}, address};
        for (const std::int16_t tag : tags_) {
            const qsizetype width = std::max(CellOfValue(tag, zentrova_.ParamMin(tag)).text.size(),
                                             CellOfValue(tag, zentrova_.ParamMax(tag)).text.size());
            columns.push_back({.key = zentrova_.ParamName(tag), .width = width});
        }
        columns.push_back({.key = QStringLiteral("lost")});
        return columns;
    }

    Report::Row RowOf(const PolledSensor &sensor, const PolledSensor::Reading &reading) const {
        Report::Row row = {CellOf(IsoTime(reading.time)), CellOf(sensor.Address())};
        for (const std::int16_t tag : tags_) {
            const auto found = reading.values.find(tag);
            row.push_back(found == reading.values.end() ? Report::Cell() : CellOfValue(tag, found->second));
        }
        const std::int64_t lost = sensor.Counts().lost;
        row.push_back({.text = QString::number(lost), .value = QJsonValue(static_cast<qint64>(lost))});
        return row;
    }

private:
    // A plotter takes numbers only, without units.
    Report::Cell CellOfValue(std::int16_t tag, std::int32_t value) const {
        if (raw_) {
            return CellOf(value);
        }
        const QString text = zentrova_.FormatRaw(value, tag);
        if (ClassOfUnit(zentrova_.ParamUnits(tag)) == UnitClass::TextValued) {
            return CellOf(text);
        }
        const QString number = ValueFormat::Scaled(value, zentrova_.ParamDecimalPlaces(tag));
        return {.text = units_ ? text : number, .value = number.toDouble()};
    }

    const ClassZentrova &zentrova_;
    const std::vector<std::int16_t> &tags_;
    bool raw_;
    bool units_;
};

} // namespace

ExitStatus Watch(CommandRun &run) {
    const std::vector<std::int16_t> tags =
        WithoutRepeats(run.WantedTags({usualTags.begin(), usualTags.end()}));
    Rounds rounds(run, tags);
    const WatchedRows rows(run, tags);
    std::optional<Report> report; // begins when the port is open
    const auto begin = [&] {
        report.emplace(run.Format(ReportFormat::Csv), rows.Columns(run.AddressColumn()), run.Results(),
                       Report::JsonLayout::Lines);
        report->NameColumns();
    };
    return rounds.Run([&](const PolledSensor &sensor, const PolledSensor::Reading &reading) {
        if (!report) {
            begin();
        }
        report->Add(rows.RowOf(sensor, reading));
    });
}

} // namespace ztv
