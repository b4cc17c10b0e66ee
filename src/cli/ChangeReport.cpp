#include "cli/ChangeReport.h"

#include <algorithm>

namespace ztv {

namespace {

constexpr qsizetype valueWidth = 10;

std::vector<Report::Column> ColumnsOf(CommandRun &run, const std::vector<std::int16_t> &tags) {
    qsizetype widest = 0;
    for (const std::int16_t tag : tags) {
        widest = std::max(widest, run.Zentrova().ParamName(tag).size());
    }
    return {run.AddressColumn(),
            {.key = QStringLiteral("parameter")},
            {.key = QStringLiteral("name"), .width = widest},
            {.key = QStringLiteral("before"), .width = valueWidth},
            {.key = QStringLiteral("value"), .width = valueWidth},
            {.key = QStringLiteral("raw"), .isForText = false},
            {.key = QStringLiteral("outcome")}};
}

} // namespace

ChangeReport::ChangeReport(CommandRun &run, const std::vector<std::int16_t> &tags)
    : zentrova_(run.Zentrova()),
      report_(run.Format(), ColumnsOf(run, tags), run.Results()) {
    report_.NameColumns();
}

void ChangeReport::Add(std::int16_t address, const Change &change) {
    const std::int16_t tag = change.tag;
    report_.Add({CellOf(address), CellOf(tag), CellOf(zentrova_.ParamName(tag)),
                 CellOf(zentrova_.FormatRaw(change.before, tag)),
                 CellOf(zentrova_.FormatRaw(change.value, tag)), CellOf(change.value),
                 CellOf(change.outcome)});
}

} // namespace ztv
