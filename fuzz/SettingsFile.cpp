// Fuzzes the reading of settings files. An input is a .ztv file.

#include "fuzz/DatabaseMutator.h"
#include "fuzz/Harness.h"
#include "model/ClassZentrova.h"

#include <array>

namespace ztv {

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most)
    __attribute__((weak));
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most,
                                               unsigned seed);

namespace {

const ClassZentrova &Shipped() {
    static const ClassZentrova zentrova(QStringLiteral(ZTV_BIN_DIR));
    return zentrova;
}

// Each value must be the old one or within the row's limits.
void CheckTable(const ClassZentrova &zentrova) {
    for (std::int16_t tag = 0; tag < zentrova.ParamCount(); ++tag) {
        const std::int32_t value = zentrova.ParamValue(tag);
        REQUIRE(value == Shipped().ParamValue(tag) ||
                (value >= zentrova.ParamMin(tag) && value <= zentrova.ParamMax(tag)));
    }
    REQUIRE(zentrova.ParamValue(0) == Shipped().ParamValue(0));
    REQUIRE(!zentrova.FileChangesNeedSaving());
    REQUIRE(!zentrova.WriteAllPending());
}

// A save must keep what was read.
void CheckSaved(ClassZentrova zentrova, const QString &path) {
    REQUIRE(!zentrova.SaveFile(path));
    ClassZentrova again = Shipped();
    REQUIRE(again.OpenFile(path).result == FileOpened::Whole);
    REQUIRE(again.FileNotes() == zentrova.FileNotes());
    for (std::int16_t tag = 0; tag < zentrova.ParamCount(); ++tag) {
        const std::int32_t value = zentrova.ParamValue(tag);
        REQUIRE(again.ParamValue(tag) == std::clamp(value, zentrova.ParamMin(tag), zentrova.ParamMax(tag)));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Fuzz::Folder folder;
    const QString path = folder.Path("settings.ztv");
    const QString saved = folder.Path("saved.ztv");
    const QByteArray content = Fuzz::Bytes(data, size);
    Fuzz::WriteFile(path, content);

    ClassZentrova zentrova = Shipped();
    const auto [result, fault] = zentrova.OpenFile(path);
    REQUIRE(result == FileOpened::Whole || result == FileOpened::Failed);
    REQUIRE(fault.isEmpty() == (result == FileOpened::Whole));
    REQUIRE(fault.isEmpty() || fault.startsWith(path));
    CheckTable(zentrova);
    REQUIRE(Fuzz::ReadFile(path) == content);
    if (result == FileOpened::Whole) {
        CheckSaved(zentrova, saved);
        QFile::remove(saved);
    }
    REQUIRE(folder.FileCount() == 1);
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most, unsigned seed) {
    static constexpr std::array columns = {
        TableColumn{"Settings", "Value"},       TableColumn{"Settings", "Value"},
        TableColumn{"Settings", "Tag"},         TableColumn{"Properties", "Notes"},
        TableColumn{"Properties", "SWVersion"},
    };
    const bool byTheFormat = seed % 2 == 0 && MutateDatabase(data, size, most, seed / 2, columns);
    return byTheFormat ? size : LLVMFuzzerMutate(data, size, most);
}

} // namespace ztv
