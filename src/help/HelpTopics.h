#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

// One page of the help.
struct HelpTopic {
    int level = 0;           // in the contents: 0 a chapter, 1 a page of the chapter before it
    std::int32_t number = 0; // by which a form asks for it
    QString file;            // within the help's folder
    QString title;           // as the page itself gives it
    QStringList keywords;    // of the index
};

// The topics of the help in the order of its contents: the rows of topics.txt in the help's folder.
class HelpTopics {
public:
    // The folder of the topics that belong to a compiled help file: they lie beside it.
    static QString FolderBeside(const QString &chmFile);

    // Fault (file) with the place when the table or a page of it can't be read.
    static HelpTopics Read(const QString &folder);

    const QString &Folder() const { return folder_; }
    const std::vector<HelpTopic> &All() const { return topics_; }
    const HelpTopic *OfNumber(std::int32_t number) const;
    const HelpTopic *OfFile(const QString &file) const;

    // The whole text of a topic's page.
    QString Page(const HelpTopic &topic) const;

private:
    QString folder_;
    std::vector<HelpTopic> topics_;
};
