#include "tools/HelpProject.h"

#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <set>

namespace ztv {

namespace {

QByteArray Page(const char *title, const QByteArray &body) {
    return QByteArray("<title>") + title + "</title><h1>" + title + "</h1>" + body;
}

} // namespace

class HelpProjectTest : public testing::Test {
protected:
    HelpProjectTest() {
        Write("topics.txt", "0 | 1 | one.html | a\n1 | 2 | two.html | a; b\n0 | 3 | three.html |\n");
        Write("style.css", "");
        Write("pictures/p.png", "");
        Write("one.html", Page("One", "<a href=\"two.html\">x</a> <a href=\"two.html#here\">y</a>"));
        Write(
            "two.html",
            Page("Two", "<a name=\"here\"></a><a href=\"#here\">z</a> <a href=\"http://x.example/\">w</a>"));
        Write("three.html", Page("Three", "<img src=\"pictures/p.png\">"));
    }

    void Write(const char *name, const QByteArray &content) {
        WriteFile(folder_.filePath(QString::fromLatin1(name)), content);
    }
    QStringList Faults() { return HelpProject::Faults(HelpTopics::Read(folder_.path())); }
    void ExpectFault(const char *file, const QByteArray &content, const char *fault) {
        const QByteArray before = ReadFile(folder_.filePath(QString::fromLatin1(file)));
        Write(file, content);
        EXPECT_EQ(Faults(), QStringList{QString::fromUtf8(fault)});
        Write(file, before);
    }

    QTemporaryDir folder_;
};

TEST_F(HelpProjectTest, FindsNoFaultInAHelpThatHangsTogether) {
    EXPECT_EQ(Faults(), QStringList());
}

TEST_F(HelpProjectTest, FindsWhatLeadsNowhere) {
    const QByteArray one = Page("One", "");
    ExpectFault("one.html", one + "<a href=\"gone.html\">", "one.html: there is no topic gone.html");
    ExpectFault("one.html", one + "<a href=\"two.html#gone\">", "one.html: there is no place two.html#gone");
    ExpectFault("one.html", one + "<a href=\"#gone\">", "one.html: there is no place #gone");
    ExpectFault("one.html", one + "<a href=\"file:///etc/x\">", "one.html: there is no topic file:///etc/x");
    ExpectFault("one.html", one + "<img src=\"pictures/q.png\">",
                "one.html: there is no picture pictures/q.png");
    ExpectFault("one.html", one + "<img src=\"topics.txt\">", "one.html: there is no picture topics.txt");
}

TEST_F(HelpProjectTest, FindsWhatNothingLeadsTo) {
    ExpectFault("three.html", Page("Three", ""), "pictures/p.png: no topic shows it");
    Write("four.html", Page("Four", ""));
    EXPECT_EQ(Faults(), QStringList{QStringLiteral("four.html: isn't in the table of topics")});
}

TEST_F(HelpProjectTest, FindsPagesThatAreNotInOrder) {
    ExpectFault("one.html", "<title>One</title><h1>Two</h1>", "one.html: the heading must be the title, One");
    ExpectFault("one.html", "<title>One</title>", "one.html: the heading must be the title, One");
    ExpectFault("one.html", Page("One", "\xc3\xa4"), "one.html: only ASCII characters are allowed");
}

TEST_F(HelpProjectTest, NamesAllThatTheCompilerNeeds) {
    const auto files = HelpProject::Files(HelpTopics::Read(folder_.path()));
    ASSERT_EQ(files.keys(),
              QStringList({QStringLiteral("ZTV.hhc"), QStringLiteral("ZTV.hhk"), QStringLiteral("ZTV.hhp")}));
    const QString project = files[QStringLiteral("ZTV.hhp")];
    for (const char *part :
         {"Compiled file=ZTV.chm\n", "Contents file=ZTV.hhc\n", "Index file=ZTV.hhk\n",
          "Default topic=one.html\n", "[FILES]\nstyle.css\none.html\ntwo.html\nthree.html\npictures/p.png\n",
          "[ALIAS]\nTOPIC_1=one.html\nTOPIC_2=two.html\nTOPIC_3=three.html\n",
          "[MAP]\n#define TOPIC_1 1\n#define TOPIC_2 2\n#define TOPIC_3 3\n"}) {
        EXPECT_TRUE(project.contains(QLatin1String(part))) << part << project.toStdString();
    }
    const auto nested = [](const QString &text) {
        QString shape;
        for (const QString &line : text.split(u'\n')) {
            shape += line == QStringLiteral("<UL>") ? QStringLiteral("(")
                     : line == QStringLiteral("</UL>")
                         ? QStringLiteral(")")
                         : line.section(QStringLiteral("\"Name\" value=\""), 1).section(u'"', 0, 0);
        }
        return shape;
    };
    EXPECT_EQ(nested(files[QStringLiteral("ZTV.hhc")]), QStringLiteral("(One(Two)Three)"));
    EXPECT_EQ(nested(files[QStringLiteral("ZTV.hhk")]), QStringLiteral("(ab)"));
    EXPECT_EQ(files[QStringLiteral("ZTV.hhk")].count(QStringLiteral("one.html")), 1);
    EXPECT_EQ(files[QStringLiteral("ZTV.hhk")].count(QStringLiteral("two.html")), 2);
}

// The shipped help. ---------------------------------------------------------------------------------

TEST(ShippedHelpTest, HasNoFault) {
    const HelpTopics topics = HelpTopics::Read(QStringLiteral(ZTV_BIN_DIR "/help"));
    EXPECT_EQ(HelpProject::Faults(topics), QStringList());
    for (const HelpTopic &topic : topics.All()) {
        EXPECT_FALSE(topic.keywords.isEmpty()) << topic.file.toStdString();
    }
}

// Each topic can be reached from the first by links alone.
TEST(ShippedHelpTest, HasNoOrphan) {
    const HelpTopics topics = HelpTopics::Read(QStringLiteral(ZTV_BIN_DIR "/help"));
    QStringList reached = {topics.All().front().file};
    for (qsizetype next = 0; next < reached.size(); ++next) {
        const QString page = topics.Page(*topics.OfFile(reached[next]));
        for (const HelpTopic &topic : topics.All()) {
            if (!reached.contains(topic.file) && page.contains(u'"' + topic.file)) {
                reached.append(topic.file);
            }
        }
    }
    for (const HelpTopic &topic : topics.All()) {
        EXPECT_TRUE(reached.contains(topic.file)) << topic.file.toStdString();
    }
}

TEST(ShippedHelpTest, KeepsItsPicturesSmall) {
    const QDir pictures(QStringLiteral(ZTV_BIN_DIR "/help/pictures"));
    for (const QFileInfo &picture : pictures.entryInfoList(QDir::Files)) {
        EXPECT_LT(picture.size(), 40000) << picture.fileName().toStdString();
    }
}

// The compiled file must contain the whole help and find each topic by its number.
TEST(ShippedHelpTest, IsCompiledWhole) {
    const QString file = QStringLiteral(ZTV_BIN_DIR "/ZTV.chm");
    if (!QFileInfo::exists(file)) {
        GTEST_SKIP() << "there is no compiler of help files";
    }
    QProcess list;
    list.start(QStringLiteral("chmls"), {QStringLiteral("list"), file});
    ASSERT_TRUE(list.waitForFinished());
    const QString files = QString::fromLatin1(list.readAllStandardOutput());
    const HelpTopics topics = HelpTopics::Read(QStringLiteral(ZTV_BIN_DIR "/help"));
    QStringList wanted = {QStringLiteral("style.css"), QStringLiteral("ZTV.hhc"), QStringLiteral("ZTV.hhk")};
    std::set<std::uint32_t> numbers;
    for (const HelpTopic &topic : topics.All()) {
        wanted.append(topic.file);
        numbers.insert(static_cast<std::uint32_t>(topic.number));
    }
    for (const QString &picture : HelpProject::Pictures(topics)) {
        wanted.append(QStringLiteral("pictures/") + picture);
    }
    for (const QString &name : wanted) {
        EXPECT_TRUE(files.contains(QStringLiteral(" /") + name + u'\n')) << name.toStdString();
    }

    // The file's table of numbers: its size, then each number with the position of its page's name.
    const QTemporaryDir folder;
    const QString table = folder.filePath(QStringLiteral("numbers"));
    QProcess extract;
    extract.start(QStringLiteral("chmls"), {QStringLiteral("extract"), file, QStringLiteral("/#IVB"), table});
    ASSERT_TRUE(extract.waitForFinished());
    const QByteArray bytes = ReadFile(table);
    std::set<std::uint32_t> found;
    for (qsizetype place = 4; place + 8 <= bytes.size(); place += 8) {
        found.insert(qFromLittleEndian<std::uint32_t>(bytes.constData() + place));
    }
    EXPECT_EQ(found, numbers);
}

} // namespace ztv
