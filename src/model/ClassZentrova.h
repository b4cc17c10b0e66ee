#pragma once

#include "model/ParameterLink.h"
#include "model/PresetsFile.h"
#include "model/UnitTable.h"
#include "model/ValueFormat.h"
#include "model/WriteQueue.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace ztv {

enum class FileOpened : std::int16_t {
    Whole = 0,
    InPart = 1, // the file has more rows than the table
    Failed = 2
};

struct OpenOutcome {
    FileOpened result = FileOpened::Whole;
    QString fault = {}; // the description of a failure
};

// The table of the sensor's parameters: one row per 16-bit register, addressed by its number, the `Tag`. All
// reads and writes of parameters go through it. A Tag outside 0 to ParamCount() - 1 is a subscript fault.
// Values are raw: the displayed number without its decimal point.
class ClassZentrova {
public:
    // Loads Presets.fil from `programFolder`. Fault when it can't be read: there is no built-in table.
    explicit ClassZentrova(const QString &programFolder);

    // Sets the link that writes are sent to while its port is open; null for none. The link must outlive its
    // use by the table.
    void ConnectTo(ParameterLink *link) { link_ = link; }

    // True while a transfer of the whole table to the sensor is in flight.
    bool WriteAllPending() const { return writeAllPending_; }
    void WriteAllPending(bool pending) { writeAllPending_ = pending; }

    QString BaudRateString(std::int16_t Index) const;
    QString ParityStopString(std::int16_t Index) const;

    // True when ParamValue has changed a value since the last save.
    bool FileChangesNeedSaving() const { return fileChanged_; }

    // Calls `work` whenever FileChangesNeedSaving turns; none for an empty one.
    void OnFileChangesTurned(std::function<void()> work) { fileChangesTurned_ = std::move(work); }

    // Writes the table to a settings file, in one step. Always returns false, which means saved. A failure is
    // a fault (file, database) that describes it and leaves an old file whole.
    bool SaveFile(const QString &FileName);

    // Writes a settings file with the value that `valueOf` gives for each row. Leaves the table's notes and
    // FileChangesNeedSaving as they are. Fault as above.
    void SaveCopy(const QString &fileName, const std::function<std::int32_t(std::int16_t)> &valueOf) const;

    // Loads the table from a settings file, limits each value to its row's range, and downloads the values
    // while the port is open. A fault ends in Failed; the values loaded before it stay.
    OpenOutcome OpenFile(const QString &FileName);

    std::int32_t ParamMin(std::int16_t Tag) const;
    std::int32_t ParamMax(std::int16_t Tag) const;
    std::int32_t ParamPreset(std::int16_t Tag) const;

    // Returns the value, or the limit of the row's range that it is beyond.
    std::int32_t Limited(std::int16_t Tag, std::int32_t value) const;

    std::int32_t ParamValue(std::int16_t Tag) const; // the last one asked for, also if its write still waits

    // Returns the value that was sent or polled last: ParamValue without the writes that wait.
    std::int32_t SentValue(std::int16_t Tag) const;

    // Moves the values that wait for their turn into the table, for a download that carries them. Commands
    // still wait.
    void TakeWaitingValues();

    // Returns the value that a download sends for the row: SentValue. Deliberate: a read-only row is sent,
    // too. Returns 0 for a command row: a command still in the table or in a file was meant for an earlier
    // sensor.
    std::int32_t ValueToDownload(std::int16_t Tag) const;

    // The user's write. Ignores a read-only row and the value that is there already, but not a command that
    // waits with other writes behind it, which it doesn't act on. Stores the value and, while the port is
    // open, sends it to the sensor: at once, or in its turn after the writes that were asked for before. A
    // value that still waits for its turn is replaced by a later one of its row. Returns without turning the
    // event loop. The caller checks the row's limits.
    void ParamValue(std::int16_t Tag, std::int32_t NewValue);

    // As the write above, but replaces no value that waits: the sensor receives each, in the order asked for.
    void WriteEach(std::int16_t Tag, std::int32_t NewValue);

    // True while a write waits for its turn.
    bool WritesWait() const { return !queue_.IsEmpty(); }

    // Calls `work` as soon as no write waits for its turn: at once, or from the event loop.
    void WhenWritesAreSent(std::function<void()> work) { queue_.WhenEmpty(std::move(work)); }

    // Sends the next waiting write if the link is free. The link calls it after each write. Once the port is
    // closed, the values that wait go into the table alone, as any offline change.
    void SendWaitingWrites();

    // The poll's write. Ignored while a write of the row is in flight.
    void ParamUpdate(std::int16_t Tag, std::int32_t NewValue);

    bool ParamReadOnly(std::int16_t Tag) const;
    bool ParamSigned(std::int16_t Tag) const;

    // True for the rows by which the sensor is told to act. It stores no value for them.
    static bool IsCommand(std::int16_t tag);

    // True for a row that the sensor measures or counts: read-only and without a preset.
    bool ParamMeasured(std::int16_t Tag) const;

    // True while a single write of the row is in flight.
    bool ParamWritePending(std::int16_t Tag) const;
    void ParamWritePending(std::int16_t Tag, bool pending);

    // True from a failed write of the row until a poll, a file or another write replaces the value.
    bool ParamWriteFailed(std::int16_t Tag) const;
    void MarkWriteFailed(std::int16_t Tag);

    // Takes the row's value for the sensor's, which has confirmed it.
    void MarkWriteTaken(std::int16_t Tag);

    // As above, for all rows but those whose write is in flight: the sensor has confirmed a download.
    void MarkDownloadTaken();

    // Lists the rows whose value differs from the one that was polled, confirmed, loaded or saved last: edits
    // that no sensor and no file has. Leaves out commands.
    std::vector<std::int16_t> EditedRows() const;

    // True from a save of edits until a poll or a file: the values are the saved file's, not a sensor's.
    bool HoldsSavedEdits() const { return savedEdits_; }

    // Clears the pending marks of all writes and of a download, for use when their outcomes can't arrive any
    // more.
    void ForgetPendingWrites();

    // The notes of the settings file opened last. The next save writes them.
    QString FileNotes() const { return fileNotes_; }
    void FileNotes(const QString &notes) { fileNotes_ = notes; }

    QString ParamName(std::int16_t Tag) const;
    QString ParamGroup(std::int16_t Tag) const; // always empty
    std::int16_t ParamUnits(std::int16_t Tag) const;

    // Returns the text of a unit code for a value; for a suffix unit, the suffix is the text for 0.
    QString ParamLookUp(std::int16_t UnitCode, std::int32_t Value) const;

    std::int16_t ParamDecimalPlaces(std::int16_t Tag) const;
    std::int16_t ParamCount() const { return static_cast<std::int16_t>(rows_.size()); }

    // Returns the displayed text of a raw value of the row: scaled, with its unit.
    QString FormatRaw(std::int32_t Value, std::int16_t Tag) const;

    // Formats and parses the values of a row. Must not outlive the table.
    ValueFormat FormatOf(std::int16_t Tag) const;

    const UnitTable &Units() const { return units_; }

private:
    struct Row {
        PresetRow preset;
        std::int32_t value = 0;
        bool writePending = false;
        QString group;
        std::int32_t unedited = 0; // the value that was polled, confirmed, loaded or saved last
        bool writeFailed = false;
    };
    using Enqueue = void (WriteQueue::*)(const WriteQueue::Write &);

    void InitParamsFromPresetsFile(const QString &programFolder);
    FileOpened LoadFile(const QString &fileName);
    void WriteFile(const QString &fileName, const QString &notes,
                   const std::function<std::int32_t(std::int16_t)> &valueOf) const;
    void Write(std::int16_t tag, std::int32_t value, Enqueue enqueue);
    void FileChanged(bool changed);
    bool IsThere(std::int16_t tag, std::int32_t value) const;
    bool PortIsOpen() const { return link_ != nullptr && link_->PortIsOpen(); }
    const Row &RowOf(std::int16_t Tag) const;
    Row &RowOf(std::int16_t Tag);

    std::vector<Row> rows_;
    UnitTable units_;
    QString fileNotes_;
    WriteQueue queue_;
    ParameterLink *link_ = nullptr;
    bool fileChanged_ = false;
    bool savedEdits_ = false;
    std::function<void()> fileChangesTurned_;
    bool writeAllPending_ = false;
};

} // namespace ztv
