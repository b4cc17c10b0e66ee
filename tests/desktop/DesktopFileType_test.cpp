#include "desktop/DesktopFileType.h"

#include "desktop/FileType.h"
#include "support/SettingsFileType.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QProcess>
#include <QTemporaryDir>
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

namespace ztv {

// Runs a desktop's real tools for a user without settings, on a system that knows only the common types.
class DesktopFileTypeTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        system_ = std::make_unique<QTemporaryDir>();
        const QString mime = system_->filePath(QStringLiteral("mime"));
        WriteFile(mime + QStringLiteral("/packages/freedesktop.org.xml"),
                  ReadFile(QStringLiteral("/usr/share/mime/packages/freedesktop.org.xml")));
        Run(QStringLiteral("update-mime-database"), {mime});
    }
    static void TearDownTestSuite() { system_.reset(); }

    static QString Run(const QString &program, const QStringList &arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished()) << program.toStdString();
        EXPECT_EQ(process.exitCode(), 0)
            << process.readAllStandardError().toStdString() << process.readAllStandardOutput().toStdString();
        return QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    }

    QString Path(const QString &name) const { return folder_.filePath(name); }

    void Register() {
        WriteFile(Path(QStringLiteral("icon.svg")), "<svg xmlns='http://www.w3.org/2000/svg'/>");
        WriteScript(application_, "printf %s \"$1\" > '" + opened_.toLocal8Bit() + "'\n");
        FileType::Register(application_, Path(QStringLiteral("icon.svg")));
        // The file that the tools write last.
        ASSERT_TRUE(WaitUntil([this] {
            return QFileInfo::exists(Path(QStringLiteral("home/mime/version"))) &&
                   QFileInfo::exists(Path(QStringLiteral("home/applications/mimeinfo.cache")));
        }));
    }

    // Makes a database like that of a settings file.
    QString MakeDatabase(const QString &name, std::int32_t applicationId) const {
        SQLite::Database database(Path(name).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec("PRAGMA application_id = " + std::to_string(applicationId));
        database.exec("CREATE TABLE Parameters (Value INTEGER)");
        return Path(name);
    }

    static QString TypeOf(const QString &file) {
        const QString type =
            Run(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("filetype"), file});
        const QString info = Run(QStringLiteral("gio"), {QStringLiteral("info"), QStringLiteral("-a"),
                                                         QStringLiteral("standard::content-type"), file});
        EXPECT_TRUE(info.endsWith(QStringLiteral("standard::content-type: ") + type)) << info.toStdString();
        return type;
    }

    static inline std::unique_ptr<QTemporaryDir> system_;
    QTemporaryDir folder_;
    QString application_ = Path(QStringLiteral("my program/ZtvLink"));
    QString opened_ = Path(QStringLiteral("opened"));
    EnvironmentVariable home_{"XDG_DATA_HOME", Path(QStringLiteral("home"))};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", Path(QStringLiteral("configuration"))};
    EnvironmentVariable dirs_{"XDG_DATA_DIRS", system_->path()};
    EnvironmentVariable desktop_{"XDG_CURRENT_DESKTOP", QStringLiteral("GNOME")};
};

TEST_F(DesktopFileTypeTest, IsRecognisedByTheName) {
    Register();
    WriteFile(Path(QStringLiteral("a.ztv")), "anything");
    EXPECT_EQ(TypeOf(Path(QStringLiteral("a.ztv"))), SettingsFileType::MimeType());
    EXPECT_EQ(TypeOf(MakeDatabase(QStringLiteral("B.ZTV"), 0)), SettingsFileType::MimeType());
}

TEST_F(DesktopFileTypeTest, IsRecognisedByTheContentUnderAnyName) {
    Register();
    EXPECT_EQ(TypeOf(MakeDatabase(QStringLiteral("renamed"), SettingsFileType::ApplicationId)),
              SettingsFileType::MimeType());
    EXPECT_EQ(TypeOf(MakeDatabase(QStringLiteral("another"), 7)), QStringLiteral("application/vnd.sqlite3"));
}

TEST_F(DesktopFileTypeTest, MakesTheProgramTheDefaultByAnEntryThatIsValid) {
    Register();
    EXPECT_EQ(Run(QStringLiteral("xdg-mime"),
                  {QStringLiteral("query"), QStringLiteral("default"), SettingsFileType::MimeType()}),
              QStringLiteral("ztv-link.desktop"));
    EXPECT_EQ(Run(QStringLiteral("desktop-file-validate"),
                  {Path(QStringLiteral("home/applications/ztv-link.desktop"))}),
              QString());
}

TEST_F(DesktopFileTypeTest, StartsTheProgramWithTheFile) {
    for (const char *name : {"ZtvLink", "a b", "a\"b", "a'b", "a`b", "a$HOME", "a\\b", "100%f", "a;b&c"}) {
        QDir(Path(QStringLiteral("home"))).removeRecursively();
        QFile::remove(opened_);
        application_ = Path(QStringLiteral("my program/")) + QString::fromLatin1(name);
        Register();
        const QString file =
            MakeDatabase(QStringLiteral("it's 100% $HOME.ztv"), SettingsFileType::ApplicationId);
        Run(QStringLiteral("gio"), {QStringLiteral("open"), file});
        EXPECT_TRUE(WaitUntil([&] { return ReadFile(opened_) == file.toLocal8Bit(); })) << name;
        QFile::remove(file);
    }
}

TEST_F(DesktopFileTypeTest, LeavesABindingOfTheSystemAlone) {
    const QTemporaryDir other;
    WriteFile(other.filePath(QStringLiteral("mime/packages/other.xml")),
              "<mime-info xmlns='http://www.freedesktop.org/standards/shared-mime-info'>"
              "<mime-type type='video/x-ztv'><glob pattern='*.ztv'/></mime-type></mime-info>");
    Run(QStringLiteral("update-mime-database"), {other.filePath(QStringLiteral("mime"))});
    dirs_.Set(other.path() + u':' + system_->path());
    FileType::Register(application_, QString());
    EXPECT_FALSE(QFileInfo::exists(Path(QStringLiteral("home"))));
    WriteFile(Path(QStringLiteral("a.ztv")), "anything");
    EXPECT_EQ(TypeOf(Path(QStringLiteral("a.ztv"))), QStringLiteral("video/x-ztv"));
}

} // namespace ztv
