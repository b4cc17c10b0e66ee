// Prepares the help for its compiler: a folder with the pages and the project's files. Rejects a help with a
// fault, so that a bad edit fails the build and not the user who looks something up.

#include "support/Fault.h"
#include "tools/HelpProject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

namespace ztv {

namespace {

void Write(const QString &path, const QByteArray &content) {
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size() || !file.flush()) {
        throw Fault(Fault::Kind::File, path + QStringLiteral(": ") + file.errorString());
    }
}

void Copy(const QString &from, const QString &to) {
    QFile file(from);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Fault(Fault::Kind::File, from + QStringLiteral(": ") + file.errorString());
    }
    Write(to, file.readAll());
}

void WriteProject(const HelpTopics &topics, const QString &folder) {
    QStringList files = {QStringLiteral("style.css")};
    for (const HelpTopic &topic : topics.All()) {
        files.append(topic.file);
    }
    for (const QString &picture : HelpProject::Pictures(topics)) {
        files.append(QStringLiteral("pictures/") + picture);
    }
    for (const QString &file : files) {
        Copy(topics.Folder() + u'/' + file, folder + u'/' + file);
    }
    for (const auto &[name, text] : HelpProject::Files(topics).asKeyValueRange()) {
        Write(folder + u'/' + name, text.toLatin1());
    }
}

} // namespace

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    if (argc != 3) {
        std::fprintf(stderr, "Usage: build-help TOPICS_FOLDER PROJECT_FOLDER\n");
        return EXIT_FAILURE;
    }
    try {
        const HelpTopics topics = HelpTopics::Read(QString::fromLocal8Bit(argv[1]));
        const QStringList faults = HelpProject::Faults(topics);
        for (const QString &fault : faults) {
            std::fprintf(stderr, "%s/%s\n", argv[1], qPrintable(fault));
        }
        if (!faults.isEmpty()) {
            return EXIT_FAILURE;
        }
        WriteProject(topics, QString::fromLocal8Bit(argv[2]));
        return EXIT_SUCCESS;
    } catch (const Fault &fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return EXIT_FAILURE;
    }
}
