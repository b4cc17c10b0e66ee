#include "bench/HexImport.h"

#include "bench/Measure.h"
#include "bench/StartedProgram.h"
#include "firmware/HexFileAccess.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <stdexcept>

namespace ztv {

namespace {

constexpr int flashBytes = 47104;
constexpr int mebibyte = 1024 * 1024;
constexpr double limit = 1; // times objcopy
constexpr int flashStart = 0x800;
constexpr int rounds = 40;

QByteArray Record(const QByteArray &bytes) {
    int sum = 0;
    for (const char byte : bytes) {
        sum += byte;
    }
    return ':' + (bytes + static_cast<char>(-sum)).toHex().toUpper() + "\r\n";
}

QByteArray Bytes(std::initializer_list<int> values) {
    QByteArray bytes;
    for (const int value : values) {
        bytes.append(static_cast<char>(value));
    }
    return bytes;
}

// Records of 16 bytes, as tools for the sensor's processor write them.
QByteArray HexFile(int size) {
    QByteArray content;
    for (int address = flashStart; address < flashStart + size; address += 16) {
        if (address == flashStart || address % 0x10000 == 0) {
            content += Record(Bytes({2, 0, 0, 4, 0, address >> 16}));
        }
        QByteArray record = Bytes({16, address >> 8, address, 0});
        for (int index = 0; index < 16; ++index) {
            record.append(static_cast<char>((address >> 4) * 7 + index * 31));
        }
        content += Record(record);
    }
    return content + Record(Bytes({0, 0, 0, 1}));
}

class HexFolder {
public:
    explicit HexFolder(int size) {
        settings_.ProgramFile = folder_.filePath(QStringLiteral("PROGMEM.MCP"));
        settings_.EepromFile = folder_.filePath(QStringLiteral("EEDATA.MCP"));
        settings_.UserIdFile = folder_.filePath(QStringLiteral("USERID.MCP"));
        settings_.ConfigFile = folder_.filePath(QStringLiteral("CONFIG.MCP"));
        QFile file(hexFile_);
        if (!file.open(QIODevice::WriteOnly) || file.write(HexFile(size)) <= 0) {
            throw std::runtime_error("no room for a hex file");
        }
    }
    ~HexFolder() { QDir::setCurrent(current_); }
    HexFolder(const HexFolder &) = delete;
    HexFolder &operator=(const HexFolder &) = delete;

    double MsToImport() const {
        QFile::remove(settings_.ProgramFile); // frees the last round's blocks before the time starts
        const double start = Measure::NowMs();
        if (HexFileAccess::ImportHexFile(settings_, hexFile_) != HexFileAccess::goodFile) {
            throw std::runtime_error("a good hex file isn't taken");
        }
        return Measure::NowMs() - start;
    }

    double MsToConvertBy(const QString &program, QStringList arguments) const {
        arguments.replaceInStrings(QStringLiteral("IN"), hexFile_);
        const QString output = folder_.filePath(QStringLiteral("image.bin"));
        arguments.replaceInStrings(QStringLiteral("OUT"), output);
        QFile::remove(output);
        StartedProgram started(program, arguments);
        return started.WaitForEnd() - started.StartMs();
    }

private:
    QString current_ = QDir::currentPath(); // restored later, because an import changes it
    QTemporaryDir folder_;
    QString hexFile_ = folder_.filePath(QStringLiteral("image.hex"));
    BootSettings settings_;
};

struct Contender {
    QString name;
    QStringList arguments;
};

std::vector<Contender> Peers() {
    return {{.name = QStringLiteral("srec_cat"),
             .arguments = {QStringLiteral("IN"), QStringLiteral("-Intel"), QStringLiteral("-Output"),
                           QStringLiteral("OUT"), QStringLiteral("-Binary")}},
            {.name = QStringLiteral("objcopy"),
             .arguments = {QStringLiteral("-I"), QStringLiteral("ihex"), QStringLiteral("-O"),
                           QStringLiteral("binary"), QStringLiteral("IN"), QStringLiteral("OUT")}}};
}

template <typename Call>
double MedianOf(Call call) {
    call();
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(call());
    }
    return Measure::Median(times);
}

void MeasureImportOf(Figures &figures, int size) {
    const HexFolder folder(size);
    Figure figure{.name = QStringLiteral("check and import of a hex file of %1 bytes").arg(size),
                  .value = MedianOf([&folder] { return folder.MsToImport(); }),
                  .unit = QStringLiteral("ms"),
                  .limit = limit,
                  .peers = {},
                  .against = QStringLiteral("objcopy")};
    for (const Contender &peer : Peers()) {
        const QString program = QStandardPaths::findExecutable(peer.name);
        if (program.isEmpty()) {
            std::printf("%s isn't installed: not measured\n", qPrintable(peer.name));
            continue;
        }
        figure.peers.push_back({.name = peer.name, .value = MedianOf([&] {
                                                       return folder.MsToConvertBy(program, peer.arguments);
                                                   })});
    }
    figures.Add(figure);
}

} // namespace

void MeasureHexImport(Figures &figures) {
    MeasureImportOf(figures, flashBytes);
    MeasureImportOf(figures, mebibyte);
}

} // namespace ztv
