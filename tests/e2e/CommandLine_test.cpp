#include "model/ClassZentrova.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

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

} // namespace ztv
