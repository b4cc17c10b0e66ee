#include "tools/HelpProject.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

namespace ztv {

namespace HelpProject {

namespace {

const QString picturesFolder = QStringLiteral("pictures/");

// Returns the first capture of each match of `pattern` in the page.
QStringList All(const QString &page, const char *pattern) {
    QStringList found;
    const QRegularExpression expression(QString::fromLatin1(pattern));
    for (const QRegularExpressionMatch &match : expression.globalMatch(page)) {
        found.append(match.captured(1));
    }
    return found;
}

QStringList Links(const QString &page) {
    return All(page, "href=\"([^\"]*)\"");
}

QStringList PictureNames(const QString &page) {
    return All(page, "src=\"([^\"]*)\"");
}

// Returns the reason why a link is broken; empty if it isn't.
QString FaultOfLink(const HelpTopics &topics, const HelpTopic &from, const QString &link) {
    if (link.startsWith(QStringLiteral("https://")) || link.startsWith(QStringLiteral("http://"))) {
        return {};
    }
    const QString file = link.section(u'#', 0, 0);
    const HelpTopic *to = file.isEmpty() ? &from : topics.OfFile(file);
    if (to == nullptr) {
        return QFileInfo::exists(topics.Folder() + u'/' + file) && file.endsWith(QStringLiteral(".css"))
                   ? QString()
                   : QStringLiteral("there is no topic ") + file;
    }
    const QString place = link.section(u'#', 1);
    return place.isEmpty() || All(topics.Page(*to), "<a name=\"([^\"]*)\"").contains(place)
               ? QString()
               : QStringLiteral("there is no place ") + link;
}

QString SitemapItem(const QString &name, const QStringList &files) {
    QString item = QStringLiteral("<LI><OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"%1\">")
                       .arg(name.toHtmlEscaped());
    for (const QString &file : files) {
        item += QStringLiteral("<param name=\"Local\" value=\"%1\">").arg(file);
    }
    return item + QStringLiteral("</OBJECT>\n");
}

QString Sitemap(const QString &items) {
    return QStringLiteral("<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">\n<HTML><BODY>\n<UL>\n%1</UL>\n"
                          "</BODY></HTML>\n")
        .arg(items);
}

QString Contents(const HelpTopics &topics) {
    QString items;
    int level = 0;
    for (const HelpTopic &topic : topics.All()) {
        if (topic.level != level) {
            items += topic.level > level ? QStringLiteral("<UL>\n") : QStringLiteral("</UL>\n");
            level = topic.level;
        }
        items += SitemapItem(topic.title, {topic.file});
    }
    return Sitemap(level == 0 ? items : items + QStringLiteral("</UL>\n"));
}

QString Index(const HelpTopics &topics) {
    QMap<QString, QStringList> words;
    for (const HelpTopic &topic : topics.All()) {
        for (const QString &word : topic.keywords) {
            words[word].append(topic.file);
        }
    }
    QString items;
    for (const auto &[word, files] : words.asKeyValueRange()) {
        items += SitemapItem(word, files);
    }
    return Sitemap(items);
}

QString Project(const HelpTopics &topics) {
    QString text = QStringLiteral("[OPTIONS]\nCompatibility=1.1 or later\nCompiled file=ZTV.chm\n"
                                  "Contents file=ZTV.hhc\nIndex file=ZTV.hhk\nDefault topic=%1\n"
                                  "Full-text search=Yes\nLanguage=0x409 English (United States)\n"
                                  "Title=ZTV Link Help\n\n[FILES]\nstyle.css\n")
                       .arg(topics.All().front().file);
    QString aliases;
    QString numbers;
    for (const HelpTopic &topic : topics.All()) {
        const QString name = QStringLiteral("TOPIC_%1").arg(topic.number);
        text += topic.file + u'\n';
        aliases += QStringLiteral("%1=%2\n").arg(name, topic.file);
        numbers += QStringLiteral("#define %1 %2\n").arg(name).arg(topic.number);
    }
    for (const QString &picture : Pictures(topics)) {
        text += picturesFolder + picture + u'\n';
    }
    return text + QStringLiteral("\n[ALIAS]\n") + aliases + QStringLiteral("\n[MAP]\n") + numbers;
}

} // namespace

QStringList Pictures(const HelpTopics &topics) {
    QStringList pictures;
    for (const HelpTopic &topic : topics.All()) {
        for (const QString &name : PictureNames(topics.Page(topic))) {
            pictures.append(name.section(u'/', -1));
        }
    }
    pictures.removeDuplicates();
    return pictures;
}

QStringList Faults(const HelpTopics &topics) {
    QStringList faults;
    for (const HelpTopic &topic : topics.All()) {
        const QString page = topics.Page(topic);
        const auto note = [&](const QString &fault) {
            faults.append(topic.file + QStringLiteral(": ") + fault);
        };
        for (const QString &link : Links(page)) {
            const QString fault = FaultOfLink(topics, topic, link);
            if (!fault.isEmpty()) {
                note(fault);
            }
        }
        for (const QString &picture : PictureNames(page)) {
            if (!picture.startsWith(picturesFolder) || !QFileInfo::exists(topics.Folder() + u'/' + picture)) {
                note(QStringLiteral("there is no picture ") + picture);
            }
        }
        if (All(page, "<h1>([^<]*)</h1>") != QStringList{topic.title}) {
            note(QStringLiteral("the heading must be the title, ") + topic.title);
        }
        if (std::any_of(page.begin(), page.end(), [](QChar c) { return c.unicode() > '~'; })) {
            note(QStringLiteral("only ASCII characters are allowed"));
        }
    }
    const QDir folder(topics.Folder());
    for (const QString &file : folder.entryList({QStringLiteral("*.html")}, QDir::Files)) {
        if (topics.OfFile(file) == nullptr) {
            faults.append(file + QStringLiteral(": isn't in the table of topics"));
        }
    }
    const QStringList shown = Pictures(topics);
    for (const QString &picture : QDir(folder.filePath(picturesFolder)).entryList(QDir::Files)) {
        if (!shown.contains(picture)) {
            faults.append(picturesFolder + picture + QStringLiteral(": no topic shows it"));
        }
    }
    return faults;
}

QMap<QString, QString> Files(const HelpTopics &topics) {
    return {{QStringLiteral("ZTV.hhp"), Project(topics)},
            {QStringLiteral("ZTV.hhc"), Contents(topics)},
            {QStringLiteral("ZTV.hhk"), Index(topics)}};
}

} // namespace HelpProject

} // namespace ztv
