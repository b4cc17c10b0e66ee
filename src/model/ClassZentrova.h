#pragma once

#include "model/ParameterLink.h"
#include "model/PresetsFile.h"

#include <QString>
#include <cstdint>
#include <vector>

enum class FileOpened : std::int16_t {
    Whole = 0,
    InPart = 1, // not all items fitted
    Failed = 2
};

struct OpenOutcome {
    FileOpened result = FileOpened::Whole;
    QString fault = {}; // the description of a failure
};

// The table of the sensor's parameters: one row per 16-bit register, addressed by its number, the `Tag`.
// All reads and writes of parameters go through it. A Tag outside 0 to ParamCount() - 1 is a subscript
// fault. Values are raw: the number on display without its decimal point.
class ClassZentrova {
public:
    // Loads Presets.fil from `programFolder`. Fault when it can't be read: there is no built-in table.
    explicit ClassZentrova(const QString &programFolder);

    // The link that single writes go to while its port is open; it must outlive the table's use of it.
    void ConnectTo(ParameterLink *link) { link_ = link; }

    // A transfer of the whole table to the sensor is in flight.
    bool WriteAllPending() const { return writeAllPending_; }
    void WriteAllPending(bool pending) { writeAllPending_ = pending; }

    QString BaudRateString(std::int16_t Index) const;
    QString ParityStopString(std::int16_t Index) const;

    // A value was changed by ParamValue since the last save.
    bool FileChangesNeedSaving() const { return fileChanged_; }

    // Writes the table to a settings file, in one step. False: it is saved. It never returns true: a fault
    // (file, database) says what is wrong, and leaves an old file whole.
    bool SaveFile(const QString &FileName);

    // Loads the table from a settings file, each value limited to its row's range, and downloads it while the
    // port is open. A fault ends in Failed; the values loaded by then stay.
    OpenOutcome OpenFile(const QString &FileName);

    std::int32_t ParamMin(std::int16_t Tag) const;
    std::int32_t ParamMax(std::int16_t Tag) const;
    std::int32_t ParamPreset(std::int16_t Tag) const;
    std::int32_t ParamValue(std::int16_t Tag) const;

    // The value that a download sends for the row. 0 for a command row: a command still in the table or in a
    // file was meant for an earlier sensor.
    std::int32_t ValueToDownload(std::int16_t Tag) const;

    // The user's write: ignored for a read-only row and for the value that is there already; sent to the
    // sensor while the port is open, which turns the event loop until the write before it is through.
    // Limits are the caller's business.
    void ParamValue(std::int16_t Tag, std::int32_t NewValue);

    // The poll's write: dropped while a write of the row is in flight.
    void ParamUpdate(std::int16_t Tag, std::int32_t NewValue);

    bool ParamReadOnly(std::int16_t Tag) const;
    bool ParamSigned(std::int16_t Tag) const;

    // A single write of the row is in flight.
    bool ParamWritePending(std::int16_t Tag) const;
    void ParamWritePending(std::int16_t Tag, bool pending);

    // Clears the marks of every transfer to the sensor: of writes whose outcome can't come any more.
    void ForgetPendingWrites();

    // Travels from an opened settings file to the next save.
    QString FileNotes() const { return fileNotes_; }
    void FileNotes(const QString &notes) { fileNotes_ = notes; }

    QString ParamName(std::int16_t Tag) const;
    QString ParamGroup(std::int16_t Tag) const; // always empty
    std::int16_t ParamUnits(std::int16_t Tag) const;

    // The text of a unit code for a value; for a suffix unit the suffix is the text for 0.
    QString ParamLookUp(std::int16_t UnitCode, std::int32_t Value) const;

    std::int16_t ParamDecimalPlaces(std::int16_t Tag) const;
    std::int16_t ParamCount() const { return static_cast<std::int16_t>(rows_.size()); }

    // The display text of a raw value of the row: scaled, with its unit.
    QString FormatRaw(std::int32_t Value, std::int16_t Tag) const;

private:
    struct Row {
        PresetRow preset;
        std::int32_t value = 0;
        bool writePending = false;
        QString group;
        unsigned writesAsked = 0; // tells a write that has waited whether it is still the last one wanted
    };

    void InitParamsFromPresetsFile(const QString &programFolder);
    FileOpened LoadFile(const QString &fileName);
    bool PortIsOpen() const { return link_ != nullptr && link_->PortIsOpen(); }
    const Row &RowOf(std::int16_t Tag) const;
    Row &RowOf(std::int16_t Tag);

    std::vector<Row> rows_;
    std::vector<UnitTexts> units_;
    std::vector<QString> baudRates_;
    std::vector<QString> parityStops_;
    QString fileNotes_;
    ParameterLink *link_ = nullptr;
    bool fileChanged_ = false;
    bool writeAllPending_ = false;
};
