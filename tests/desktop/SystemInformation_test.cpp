#include "desktop/SystemInformation.h"

#include "support/Fault.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/Wait.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>

namespace ztv {

namespace {

constexpr std::uint32_t sz = 1;
constexpr std::uint32_t expandSz = 2;
constexpr std::uint32_t dword = 4;

const auto infoKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
const auto locationKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location");
const auto unavailable = QStringLiteral("System Information Is Unavailable At This Time");

class FakeRegistry : public RegistryReader {
public:
    std::optional<RegistryValue> Query(RootKey root, const QString &keyName,
                                       const QString &valueName) override {
        EXPECT_EQ(root, RootKey::LocalMachine);
        const auto found = values.find({keyName, valueName});
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void Give(const QString &key, const char *name, std::uint32_t type, const QByteArray &bytes) {
        values[{key, QString::fromLatin1(name)}] = {type, bytes};
    }

    std::map<std::pair<QString, QString>, RegistryValue> values;
};

} // namespace

class SystemInformationTest : public testing::Test {
protected:
    bool Read(std::uint32_t type, const QByteArray &bytes, QString &text) {
        registry_.Give(infoKey, "X", type, bytes);
        return SystemInformation::GetKeyValue(registry_, RootKey::LocalMachine, infoKey, QStringLiteral("X"),
                                              text);
    }

    void StartSysInfo() {
        SystemInformation::StartSysInfo(
            registry_,
            [this](const QString &program, const QStringList &arguments) {
                EXPECT_TRUE(arguments.isEmpty());
                started_.append(program);
                return starts_;
            },
            dialogs_);
    }

    FakeRegistry registry_;
    ScriptedDialogs dialogs_;
    QStringList started_;
    bool starts_ = true;
    QTemporaryDir folder_;
};

// GetKeyValue. --------------------------------------------------------------------------------------

TEST_F(SystemInformationTest, ReadsAStringWithOrWithoutItsZero) {
    for (const QByteArray &bytes : {QByteArray("C:\\x.exe"), QByteArray("C:\\x.exe\0", 9)}) {
        QString text = QStringLiteral("before");
        EXPECT_TRUE(Read(sz, bytes, text));
        EXPECT_EQ(text, QStringLiteral("C:\\x.exe"));
    }
    QString text = QStringLiteral("before");
    EXPECT_TRUE(Read(sz, QByteArray("\0", 1), text));
    EXPECT_EQ(text, QString());
}

TEST_F(SystemInformationTest, ReadsADoubleWordAsANumber) {
    const std::pair<const char *, const char *> rows[] = {
        {"10000000", "16"},         {"00000000", "0"},  {"00010000", "256"},        {"0a0b0c0d", "218893066"},
        {"ffffff7f", "2147483647"}, {"ffffffff", "-1"}, {"00000080", "-2147483648"}};
    for (const auto &[bytes, shown] : rows) {
        QString text;
        EXPECT_TRUE(Read(dword, QByteArray::fromHex(bytes), text));
        EXPECT_EQ(text, QString::fromLatin1(shown)) << bytes;
    }
}

TEST_F(SystemInformationTest, LeavesTheTextForAnotherType) {
    QString text = QStringLiteral("before");
    EXPECT_TRUE(Read(expandSz, "%windir%", text));
    EXPECT_EQ(text, QStringLiteral("before"));
}

TEST_F(SystemInformationTest, EmptiesTheTextWhenThereIsNoValue) {
    QString text = QStringLiteral("before");
    EXPECT_FALSE(SystemInformation::GetKeyValue(registry_, RootKey::LocalMachine, infoKey,
                                                QStringLiteral("PATH"), text));
    EXPECT_EQ(text, QString());
}

// StartSysInfo. -------------------------------------------------------------------------------------

TEST_F(SystemInformationTest, StartsTheProgramOfThePath) {
    registry_.Give(infoKey, "PATH", sz, QByteArray("C:\\MSINFO32.EXE\0", 16));
    registry_.Give(locationKey, "MSINFO", sz, "C:\\other");
    StartSysInfo();
    EXPECT_EQ(started_, QStringList{QStringLiteral("C:\\MSINFO32.EXE")});
}

TEST_F(SystemInformationTest, StartsTheProgramInTheFolderIfItIsThere) {
    const QString folder = folder_.filePath(QStringLiteral("tools"));
    registry_.Give(locationKey, "MSINFO", sz, folder.toLocal8Bit());
    dialogs_.ExpectNotice(unavailable, BoxIcon::None); // the folder without the program
    StartSysInfo();
    EXPECT_TRUE(started_.isEmpty());
    EXPECT_TRUE(dialogs_.AllCame());

    WriteFile(folder + QStringLiteral("\\MSINFO32.EXE"), "x");
    StartSysInfo();
    EXPECT_EQ(started_, QStringList{folder + QStringLiteral("\\MSINFO32.EXE")});
}

TEST_F(SystemInformationTest, TellsWhenTheRegistryNamesNothing) {
    dialogs_.ExpectNotice(unavailable, BoxIcon::None);
    StartSysInfo();
    EXPECT_TRUE(started_.isEmpty());
}

TEST_F(SystemInformationTest, TellsWhenTheProgramDoesNotStart) {
    registry_.Give(infoKey, "PATH", sz, "C:\\gone.exe");
    starts_ = false;
    dialogs_.ExpectNotice(unavailable, BoxIcon::None);
    StartSysInfo();
    EXPECT_EQ(started_.size(), 1);
}

TEST_F(SystemInformationTest, TellsOfAnyFault) {
    registry_.Give(infoKey, "PATH", sz, "C:\\x.exe");
    dialogs_.ExpectNotice(unavailable, BoxIcon::None);
    SystemInformation::StartSysInfo(
        registry_,
        [](const QString &, const QStringList &) -> bool { throw Fault::Overflow(QStringLiteral("x")); },
        dialogs_);
}

TEST_F(SystemInformationTest, StartsTheFirstKnownToolThatIsThere) {
    QStringList tried;
    const auto only = [&tried](const char *there) {
        return [&tried, there](const QString &program, const QStringList &arguments) {
            tried.append((QStringList(program) + arguments).join(u' '));
            return program == QLatin1String(there);
        };
    };
    SystemInformation::StartSysInfo(only("gnome-control-center"), dialogs_);
    EXPECT_EQ(tried, QStringList({QStringLiteral("hardinfo2"), QStringLiteral("hardinfo"),
                                  QStringLiteral("kinfocenter"),
                                  QStringLiteral("gnome-control-center info-overview")}));
    tried.clear();
    dialogs_.ExpectNotice(unavailable, BoxIcon::None);
    SystemInformation::StartSysInfo(only("none of them"), dialogs_);
    EXPECT_EQ(tried.size(), 6);
}

TEST_F(SystemInformationTest, StartsWhatIsOnThePath) {
    const QString trace = folder_.filePath(QStringLiteral("trace"));
    WriteScript(folder_.filePath(QStringLiteral("hardinfo2")),
                "echo started > '" + trace.toLocal8Bit() + "'\n");
    const EnvironmentVariable path("PATH", folder_.path() + QStringLiteral(":/bin:/usr/bin"));
    EXPECT_FALSE(SystemInformation::StartDetached(QStringLiteral("no-such-tool"), {}));
    SystemInformation::StartSysInfo(SystemInformation::StartDetached, dialogs_);
    EXPECT_TRUE(WaitUntil([&trace] { return ReadFile(trace) == "started\n"; }));
}

} // namespace ztv
