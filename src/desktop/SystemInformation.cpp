#include "desktop/SystemInformation.h"

#include "support/ApplicationTitle.h"
#include "support/Fault.h"
#include "support/FileFunctions.h"

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <vector>

namespace ztv {

namespace SystemInformation {

namespace {

struct Tool {
    const char *program;
    QStringList arguments;
};

// Ordered by how much they show, most first.
const std::vector<Tool> &KnownTools() {
    static const std::vector<Tool> tools = {
        {"hardinfo2", {}},   {"hardinfo", {}},
        {"kinfocenter", {}}, {"gnome-control-center", {QStringLiteral("info-overview")}},
        {"lshw-gtk", {}},    {"open", {QStringLiteral("-a"), QStringLiteral("System Information")}},
    };
    return tools;
}

void TellUnavailable(UserDialogs &dialogs) {
    dialogs.OwnedMessageBox(QStringLiteral("System Information Is Unavailable At This Time"),
                            {.icon = BoxIcon::None, .buttons = BoxButtons::Ok}, ApplicationTitle());
}

// Returns the program that the registry names; empty if there is none.
QString ToolOfRegistry(RegistryReader &registry) {
    QString path;
    if (GetKeyValue(registry, RootKey::LocalMachine,
                    QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"), QStringLiteral("PATH"),
                    path)) {
        return path;
    }
    if (GetKeyValue(registry, RootKey::LocalMachine,
                    QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"), QStringLiteral("MSINFO"),
                    path)) {
        path += QStringLiteral("\\MSINFO32.EXE");
        return FileFunctions::FileExists(path) ? path : QString();
    }
    return {};
}

} // namespace

bool StartDetached(const QString &program, const QStringList &arguments) {
    const QString found = QStandardPaths::findExecutable(program);
    return !found.isEmpty() && QProcess::startDetached(found, arguments);
}

bool GetKeyValue(RegistryReader &registry, RootKey KeyRoot, const QString &KeyName, const QString &SubKeyRef,
                 QString &KeyVal) {
    const std::optional<RegistryValue> value = registry.Query(KeyRoot, KeyName, SubKeyRef);
    if (!value) {
        KeyVal.clear();
        return false;
    }
    QByteArray bytes = value->bytes;
    if (bytes.endsWith('\0')) {
        bytes.chop(1);
    }
    if (value->type == static_cast<std::uint32_t>(ValueType::Sz)) {
        KeyVal = QString::fromLocal8Bit(bytes);
    } else if (value->type == static_cast<std::uint32_t>(ValueType::Dword)) {
        // The bytes are little-endian; leading zeros don't change the number.
        std::reverse(bytes.begin(), bytes.end());
        KeyVal = QString::number(static_cast<std::int32_t>(bytes.toHex().toUInt(nullptr, 16)));
    }
    return true;
}

void StartSysInfo(RegistryReader &registry, const Starter &start, UserDialogs &dialogs) {
    try {
        const QString tool = ToolOfRegistry(registry);
        if (!tool.isEmpty() && start(tool, {})) {
            return;
        }
    } catch (const Fault &) {
        // reported below, like any other failure
    }
    TellUnavailable(dialogs);
}

void StartSysInfo(const Starter &start, UserDialogs &dialogs) {
    const std::vector<Tool> &tools = KnownTools();
    const bool started = std::any_of(tools.begin(), tools.end(), [&start](const Tool &tool) {
        return start(QString::fromLatin1(tool.program), tool.arguments);
    });
    if (!started) {
        TellUnavailable(dialogs);
    }
}

} // namespace SystemInformation

} // namespace ztv
