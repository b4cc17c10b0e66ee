#include "cli/Commands.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <csignal>
#include <cstddef>
#include <vector>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace ztv {

namespace {

const QString simulator = QStringLiteral("ztv-sim");

// A relative folder of PATH is left out: it would start a program of the current folder.
QString PathOfSimulator() {
    QStringList folders = qEnvironmentVariable("PATH").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    folders.removeIf([](const QString &folder) { return QDir::isRelativePath(folder); });
    folders.prepend(QCoreApplication::applicationDirPath());
    return QStandardPaths::findExecutable(simulator, folders);
}

#ifdef Q_OS_UNIX

// Makes the process the simulator, so that signals, streams and the status are its own. Returns only if that
// fails.
void Become(const QString &path, const QStringList &arguments) {
    std::vector<QByteArray> words;
    words.reserve(static_cast<std::size_t>(arguments.size()) + 1);
    words.push_back(QFile::encodeName(path));
    for (const QString &argument : arguments) {
        words.push_back(argument.toLocal8Bit());
    }
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray &word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    const auto previous = std::signal(SIGPIPE, SIG_DFL); // an ignored signal would stay so
    execv(pointers.front(), pointers.data());
    std::signal(SIGPIPE, previous);
}

#endif

} // namespace

ExitStatus Simulate(CommandRun &run) {
    const QString path = PathOfSimulator();
    if (path.isEmpty()) {
        throw Failure(ExitStatus::File,
                      QStringLiteral("There is no ztv-sim beside ztv-ctl, nor in the folders of PATH"));
    }
    run.Person().Remark(QStringLiteral(
        "In another terminal, give the device that follows \"port\" here to ztv-ctl, such as "
        "ztv-ctl --port /dev/pts/3 get. Type help for what the sensor can do, quit to end it"));
#ifdef Q_OS_UNIX
    Become(path, run.Given().simulatorArguments);
    throw Failure(ExitStatus::File, QStringLiteral("%1 can't be started: %2").arg(path, qt_error_string()));
#else
    return static_cast<ExitStatus>(QProcess::execute(path, run.Given().simulatorArguments));
#endif
}

} // namespace ztv
