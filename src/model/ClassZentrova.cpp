#include "model/ClassZentrova.h"

#include "model/CheckedAt.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"
#include "model/SettingsFile.h"
#include "model/UnitClass.h"
#include "support/ProgramVersion.h"

#include <algorithm>
#include <utility>

namespace ztv {

namespace {

const QString noNotes = QStringLiteral(" "); // a settings file is never without notes

} // namespace

ClassZentrova::ClassZentrova(const QString &programFolder) {
    InitParamsFromPresetsFile(programFolder);
}

void ClassZentrova::InitParamsFromPresetsFile(const QString &programFolder) {
    Presets presets = ReadPresetsFile(programFolder + QStringLiteral("/Presets.fil"));
    rows_.reserve(presets.rows.size());
    for (PresetRow &preset : presets.rows) {
        const std::int32_t value = preset.value;
        rows_.push_back({.preset = std::move(preset),
                         .value = value,
                         .writePending = false,
                         .group = {},
                         .unedited = value,
                         .writeFailed = false});
    }
    units_ = UnitTable(std::move(presets.units));
}

const ClassZentrova::Row &ClassZentrova::RowOf(std::int16_t Tag) const {
    return CheckedAt(rows_, Tag, "parameter");
}
ClassZentrova::Row &ClassZentrova::RowOf(std::int16_t Tag) {
    return CheckedAt(rows_, Tag, "parameter");
}

QString ClassZentrova::BaudRateString(std::int16_t Index) const {
    return QString::fromLatin1(CheckedAt(BaudTable, Index, "BaudRateString").text);
}

QString ClassZentrova::ParityStopString(std::int16_t Index) const {
    return QString::fromLatin1(CheckedAt(ParityStopTable, Index, "ParityStopString").text);
}

std::int32_t ClassZentrova::ParamMin(std::int16_t Tag) const {
    return RowOf(Tag).preset.minimum;
}
std::int32_t ClassZentrova::ParamMax(std::int16_t Tag) const {
    return RowOf(Tag).preset.maximum;
}
std::int32_t ClassZentrova::ParamPreset(std::int16_t Tag) const {
    return RowOf(Tag).preset.preset;
}
std::int32_t ClassZentrova::Limited(std::int16_t Tag, std::int32_t value) const {
    return std::max(std::min(value, ParamMax(Tag)), ParamMin(Tag));
}
std::int32_t ClassZentrova::ParamValue(std::int16_t Tag) const {
    return queue_.ValueOf(Tag).value_or(SentValue(Tag));
}
std::int32_t ClassZentrova::SentValue(std::int16_t Tag) const {
    return RowOf(Tag).value;
}

std::int32_t ClassZentrova::ValueToDownload(std::int16_t Tag) const {
    return IsCommand(Tag) ? ParamDefines::NoCommand : SentValue(Tag);
}

bool ClassZentrova::IsCommand(std::int16_t tag) {
    return tag == ParamDefines::SaveCommand || tag == ParamDefines::ReinitCommand;
}

void ClassZentrova::FileChanged(bool changed) {
    if (std::exchange(fileChanged_, changed) != changed && fileChangesTurned_) {
        fileChangesTurned_();
    }
}

void ClassZentrova::TakeWaitingValues() {
    for (std::int16_t tag = 0; tag < ParamCount(); ++tag) {
        if (!IsCommand(tag)) {
            RowOf(tag).value = ParamValue(tag);
        }
    }
    queue_.DropValues(ParamCount());
}

void ClassZentrova::ParamValue(std::int16_t Tag, std::int32_t NewValue) {
    Write(Tag, NewValue, &WriteQueue::Replace);
}

void ClassZentrova::WriteEach(std::int16_t Tag, std::int32_t NewValue) {
    Write(Tag, NewValue, &WriteQueue::Append);
}

void ClassZentrova::Write(std::int16_t tag, std::int32_t value, Enqueue enqueue) {
    if (ParamReadOnly(tag) || IsThere(tag, value)) {
        return;
    }
    (queue_.*enqueue)({.tag = tag, .value = value, .isCommand = IsCommand(tag)});
    FileChanged(true); // its listener sees the value
    SendWaitingWrites();
}

bool ClassZentrova::IsThere(std::int16_t tag, std::int32_t value) const {
    return ParamValue(tag) == value && !(IsCommand(tag) && queue_.OthersFollow(tag));
}

void ClassZentrova::SendWaitingWrites() {
    while (!queue_.IsEmpty() && !(PortIsOpen() && link_->WriteIsUnderWay())) {
        const WriteQueue::Write write = *queue_.Next();
        Row &row = RowOf(write.tag);
        row.value = write.value;
        row.writeFailed = false;
        if (PortIsOpen()) {
            row.writePending = true; // first, so that a poll on its way can't overwrite the value
            link_->StartWrite(write.tag, write.value);
        }
    }
    if (queue_.IsEmpty()) {
        queue_.Emptied();
    }
}

void ClassZentrova::ParamUpdate(std::int16_t Tag, std::int32_t NewValue) {
    Row &row = RowOf(Tag);
    savedEdits_ = false;
    if (!row.writePending) {
        row.value = NewValue;
        row.unedited = NewValue;
        row.writeFailed = false;
    }
}

bool ClassZentrova::ParamReadOnly(std::int16_t Tag) const {
    return RowOf(Tag).preset.readOnly;
}
bool ClassZentrova::ParamSigned(std::int16_t Tag) const {
    return RowOf(Tag).preset.isSigned;
}
bool ClassZentrova::ParamMeasured(std::int16_t Tag) const {
    const PresetRow &row = RowOf(Tag).preset;
    return row.readOnly && row.preset == 0 && row.minimum != row.maximum;
}
bool ClassZentrova::ParamWritePending(std::int16_t Tag) const {
    return RowOf(Tag).writePending;
}
void ClassZentrova::ParamWritePending(std::int16_t Tag, bool pending) {
    RowOf(Tag).writePending = pending;
}
bool ClassZentrova::ParamWriteFailed(std::int16_t Tag) const {
    return RowOf(Tag).writeFailed;
}
void ClassZentrova::MarkWriteFailed(std::int16_t Tag) {
    RowOf(Tag).writeFailed = true;
}

void ClassZentrova::MarkWriteTaken(std::int16_t Tag) {
    Row &row = RowOf(Tag);
    row.unedited = row.value;
}

void ClassZentrova::MarkDownloadTaken() {
    for (Row &row : rows_) {
        if (!row.writePending) {
            row.unedited = row.value;
        }
    }
}

std::vector<std::int16_t> ClassZentrova::EditedRows() const {
    std::vector<std::int16_t> tags;
    for (std::int16_t tag = 1; tag < ParamCount(); ++tag) {
        if (!IsCommand(tag) && ParamValue(tag) != RowOf(tag).unedited) {
            tags.push_back(tag);
        }
    }
    return tags;
}

void ClassZentrova::ForgetPendingWrites() {
    writeAllPending_ = false;
    for (Row &row : rows_) {
        row.writePending = false;
    }
}
QString ClassZentrova::ParamName(std::int16_t Tag) const {
    return RowOf(Tag).preset.name;
}
QString ClassZentrova::ParamGroup(std::int16_t Tag) const {
    return RowOf(Tag).group;
}
std::int16_t ClassZentrova::ParamUnits(std::int16_t Tag) const {
    return RowOf(Tag).preset.units;
}

QString ClassZentrova::ParamLookUp(std::int16_t UnitCode, std::int32_t Value) const {
    return units_.Text(UnitCode, Value);
}

std::int16_t ClassZentrova::ParamDecimalPlaces(std::int16_t Tag) const {
    return RowOf(Tag).preset.decimalPlaces;
}

QString ClassZentrova::FormatRaw(std::int32_t Value, std::int16_t Tag) const {
    return FormatOf(Tag).Format(Value);
}

ValueFormat ClassZentrova::FormatOf(std::int16_t Tag) const {
    const PresetRow &row = RowOf(Tag).preset;
    return {{.decimalPlaces = row.decimalPlaces, .unitCode = row.units, .maximum = row.maximum}, units_};
}

bool ClassZentrova::SaveFile(const QString &FileName) {
    if (fileNotes_.isEmpty()) {
        fileNotes_ = noNotes;
    }
    WriteFile(FileName, fileNotes_, [this](std::int16_t tag) { return ParamValue(tag); });
    savedEdits_ = savedEdits_ || !EditedRows().empty();
    for (std::int16_t tag = 0; tag < ParamCount(); ++tag) {
        RowOf(tag).unedited = ParamValue(tag);
    }
    FileChanged(false);
    return false;
}

void ClassZentrova::SaveCopy(const QString &fileName,
                             const std::function<std::int32_t(std::int16_t)> &valueOf) const {
    WriteFile(fileName, noNotes, valueOf);
}

void ClassZentrova::WriteFile(const QString &fileName, const QString &notes,
                              const std::function<std::int32_t(std::int16_t)> &valueOf) const {
    std::vector<SettingsRow> rows;
    rows.reserve(rows_.size());
    for (std::int16_t tag = 0; tag < ParamCount(); ++tag) {
        rows.push_back({.tag = tag, .name = ParamName(tag), .value = valueOf(tag)});
    }
    WriteSettingsFile(
        fileName, rows,
        {.notes = notes, .swVersion = ProgramVersion(), .userUnits = ParamLookUp(displayUnit, 0)});
}

OpenOutcome ClassZentrova::OpenFile(const QString &FileName) {
    try {
        return {.result = LoadFile(FileName)};
    } catch (const Fault &fault) {
        return {.result = FileOpened::Failed, .fault = fault.Description()};
    }
}

FileOpened ClassZentrova::LoadFile(const QString &fileName) {
    SettingsFileReader file(fileName);
    const std::int16_t count = std::min(file.Count(), ParamCount());
    const bool download = PortIsOpen();
    if (download) {
        writeAllPending_ = true;
        link_->DefineDownload();
    }
    savedEdits_ = false;
    if (link_ != nullptr) {
        link_->TableLoaded();
    }
    // Writes to the table directly: loading a file isn't a change by the user, and it also sets read-only
    // rows.
    file.ForEachValue(count, [&](std::int16_t tag, std::int32_t value) {
        Row &row = RowOf(tag);
        row.value = Limited(tag, value);
        row.unedited = row.value;
        row.writeFailed = false;
        if (download) {
            link_->DownloadValue(tag, ValueToDownload(tag));
        }
    });
    fileNotes_ = file.Notes();
    if (download) {
        queue_.DropValues(count); // the download replaces them
        link_->StartDownload();
    }
    // Deliberate: never InPart. The count was limited before, so a file with more rows than the table counts
    // as whole.
    return count > ParamCount() ? FileOpened::InPart : FileOpened::Whole;
}

} // namespace ztv
