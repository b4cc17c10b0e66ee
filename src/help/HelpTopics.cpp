#include "help/HelpTopics.h"

#include "support/Fault.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace ztv {

namespace {

enum Column { Level, Number, File, Keywords, ColumnCount };

QString TextOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Fault(Fault::Kind::File, QStringLiteral("%1: %2").arg(path, file.errorString()));
    }
    return QString::fromUtf8(file.readAll());
}

QString TitleOf(const QString &page) {
    static const QRegularExpression title(QStringLiteral("<title>([^<]+)</title>"));
    return title.match(page).captured(1);
}

QStringList Trimmed(const QString &text, QChar separator) {
    QStringList parts = text.split(separator);
    for (QString &part : parts) {
        part = part.trimmed();
    }
    return parts;
}

} // namespace

QString HelpTopics::FolderBeside(const QString &chmFile) {
    // Replaces backslashes, because Qt finds the folder of a Windows name only on Windows.
    QString path = chmFile;
    return QFileInfo(path.replace(u'\\', u'/')).path() + QStringLiteral("/help");
}

HelpTopics HelpTopics::Read(const QString &folder) {
    HelpTopics read;
    read.folder_ = folder;
    const QString table = folder + QStringLiteral("/topics.txt");
    int line = 0;
    for (const QString &text : TextOf(table).split(u'\n')) {
        ++line;
        if (text.trimmed().isEmpty() || text.startsWith(u'#')) {
            continue;
        }
        const QStringList cells = Trimmed(text, u'|');
        const auto demand = [&](bool holds, const char *rule) {
            if (!holds) {
                throw Fault(
                    Fault::Kind::File,
                    QStringLiteral("%1:%2: %3").arg(table, QString::number(line), QLatin1String(rule)));
            }
        };
        demand(cells.size() == ColumnCount, "there must be four columns");
        HelpTopic topic;
        bool isLevel = false;
        bool isNumber = false;
        topic.level = cells[Level].toInt(&isLevel);
        topic.number = cells[Number].toInt(&isNumber);
        topic.file = cells[File];
        topic.keywords = Trimmed(cells[Keywords], u';');
        topic.keywords.removeAll(QString());
        demand(isLevel && topic.level >= 0 && topic.level <= (read.topics_.empty() ? 0 : 1),
               "the level must be 0 or 1, and first 0");
        demand(isNumber && topic.number > 0 && read.OfNumber(topic.number) == nullptr,
               "the number must be one of its own");
        demand(!topic.file.contains(u'/') && read.OfFile(topic.file) == nullptr,
               "the file must be one of its own, in this folder");
        topic.title = TitleOf(read.Page(topic));
        demand(!topic.title.isEmpty(), "the page must have a title");
        read.topics_.push_back(std::move(topic));
    }
    if (read.topics_.empty()) {
        throw Fault(Fault::Kind::File, table + QStringLiteral(": there are no topics"));
    }
    return read;
}

const HelpTopic *HelpTopics::OfNumber(std::int32_t number) const {
    const auto found = std::find_if(topics_.begin(), topics_.end(),
                                    [number](const HelpTopic &topic) { return topic.number == number; });
    return found == topics_.end() ? nullptr : &*found;
}

const HelpTopic *HelpTopics::OfFile(const QString &file) const {
    const auto found = std::find_if(topics_.begin(), topics_.end(),
                                    [&file](const HelpTopic &topic) { return topic.file == file; });
    return found == topics_.end() ? nullptr : &*found;
}

QString HelpTopics::Page(const HelpTopic &topic) const {
    return TextOf(folder_ + u'/' + topic.file);
}

} // namespace ztv
