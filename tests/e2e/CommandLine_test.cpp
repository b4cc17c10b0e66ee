#include "model/ClassZentrova.h"
#include "support/ProgramVersion.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace ztv {

namespace {

// Reports when a file is opened.
class OpenedFile {
public:
    explicit OpenedFile(const QString &path) : watch_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        EXPECT_GE(inotify_add_watch(watch_, QFile::encodeName(path).constData(), IN_OPEN), 0);
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { opened_ = true; });
    }
    ~OpenedFile() { close(watch_); }
    OpenedFile(const OpenedFile &) = delete;
    OpenedFile &operator=(const OpenedFile &) = delete;

    bool IsOpened() const { return opened_; }

private:
    int watch_;
    QSocketNotifier notifier_{watch_, QSocketNotifier::Read};
    bool opened_ = false;
};

} // namespace

// Starts the program itself with arguments, as a double click does.
TEST(CommandLineOfTheProgramTest, LoadsTheFileThatIsNamedWhateverItsName) {
    for (const char *name : {"plain.ztv", "Roll 12\".ztv", "12\"", "\"quoted\".ztv", "two  blanks.ztv"}) {
        SCOPED_TRACE(name);
        const QTemporaryDir folder;
        const QString file = folder.filePath(QString::fromUtf8(name));
        ClassZentrova(ShippedPresetsFolder()).SaveFile(file);
        const OpenedFile opened(file);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "HOME"}) {
            environment.insert(QString::fromLatin1(variable), folder.path());
        }
        // Without the desktop's tools the file type isn't published, which would outlast the test.
        environment.insert(QStringLiteral("PATH"), folder.path());
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(folder.path());
        program.start(QStringLiteral(ZTV_BIN_DIR "/ZtvLink"),
                      {QString::fromUtf8(name), QStringLiteral("/CHECKOUT")});
        EXPECT_TRUE(WaitUntil([&opened] { return opened.IsOpened(); }, 20000));
        program.kill();
        program.waitForFinished();
    }
}

namespace {

// The program as a terminal without a display starts it.
class ProgramWithoutDisplay {
public:
    ProgramWithoutDisplay() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(QString::fromLatin1(variable));
        }
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "HOME"}) {
            environment.insert(QString::fromLatin1(variable), home_.path());
        }
        environment.insert(QStringLiteral("QT_DEBUG_PLUGINS"), QStringLiteral("1"));
        program_.setProcessEnvironment(environment);
        program_.setWorkingDirectory(home_.path());
    }

    // Returns the exit status.
    int Run(const QStringList &arguments) {
        program_.start(QStringLiteral(ZTV_BIN_DIR "/ZtvLink"), arguments);
        EXPECT_TRUE(program_.waitForFinished(20000));
        EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
        return program_.exitCode();
    }
    QByteArray Output() { return program_.readAllStandardOutput(); }
    QByteArray Errors() { return program_.readAllStandardError(); }
    QStringList FilesLeft() const {
        return QDir(home_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QProcess &Process() { return program_; }

private:
    QTemporaryDir home_;
    QProcess program_;
};

const QByteArray versionText = "ZTV Link " + ProgramVersion().toLatin1() + '\n';

} // namespace

TEST(CommandLineOfTheProgramTest, PrintsItsHelpWithoutADisplay) {
    ProgramWithoutDisplay program;
    EXPECT_EQ(program.Run({QStringLiteral("--help")}), 0);
    EXPECT_EQ(program.Output(), "Usage: \n\nZtvLink.exe [filename.ztv] [/options] where options are:\n\n"
                                " /HELP\t\tDisplay this help window\n"
                                " /CLEARREG\tClear and recreate all registry settings\n"
                                " --help\t\tPrint this help and exit\n"
                                " --version\tPrint the version and exit\n");
    EXPECT_EQ(program.Errors(), "") << "a plug-in was looked for";
    EXPECT_EQ(program.FilesLeft(), QStringList());
}

TEST(CommandLineOfTheProgramTest, PrintsItsVersionWithoutADisplay) {
    ProgramWithoutDisplay program;
    EXPECT_EQ(program.Run({QStringLiteral("--version")}), 0);
    EXPECT_EQ(program.Output(), versionText);
    EXPECT_EQ(program.Errors(), "") << "a plug-in was looked for";
    EXPECT_EQ(program.FilesLeft(), QStringList());
}

TEST(CommandLineOfTheProgramTest, PrintsWhateverElseIsGiven) {
    ProgramWithoutDisplay program;
    EXPECT_EQ(
        program.Run({QStringLiteral("/CLEARREG"), QStringLiteral("none.ztv"), QStringLiteral("--version")}),
        0);
    EXPECT_EQ(program.Output(), versionText);
}

TEST(CommandLineOfTheProgramTest, FailsWhereItCantPrint) {
    ProgramWithoutDisplay program;
    program.Process().setStandardOutputFile(QStringLiteral("/dev/full"));
    EXPECT_EQ(program.Run({QStringLiteral("--help")}), 1);
}

} // namespace ztv
