#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace ztv {

// One page of the help.
struct HelpTopic {
    int level = 0;           // in the contents: 0 a chapter, 1 a page of the chapter before it
    std::int32_t number = 0; // forms request the topic by it
    QString file;            // within the help's folder
    QString title;           // read from the page itself
    QStringList keywords;    // of the index
};

// The topics of the help in the order of its contents: the rows of topics.txt in the help's folder.
class HelpTopics {
public:
    // Returns the folder of the topics of a compiled help file. The folder is beside the file.
    static QString FolderBeside(const QString &chmFile);

    // Reads the table and the titles of its pages. Throws a Fault (file) with the place if the table is
    // invalid, or if it or a page can't be read.
    static HelpTopics Read(const QString &folder);

    const QString &Folder() const { return folder_; }
    const std::vector<HelpTopic> &All() const { return topics_; }
    const HelpTopic *OfNumber(std::int32_t number) const;
    const HelpTopic *OfFile(const QString &file) const;

    // Returns the whole text of a topic's page.
    QString Page(const HelpTopic &topic) const;

private:
    QString folder_;
    std::vector<HelpTopic> topics_;
};

} // namespace ztv
