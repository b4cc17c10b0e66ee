#include "desktop/MimePackage.h"

#include "support/SettingsFileType.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class MimePackageTest : public testing::Test {
protected:
    static bool IsBound() { return MimePackage::IsBoundElsewhere(SettingsFileType::Extension()); }
    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }

    QTemporaryDir folder_;
    EnvironmentVariable home_{"XDG_DATA_HOME", Path("home")};
    EnvironmentVariable dirs_{"XDG_DATA_DIRS", Path("first") + u':' + Path("second")};
};

TEST_F(MimePackageTest, FindsNoBindingWhereThereIsNoDatabase) {
    EXPECT_FALSE(IsBound());
}

TEST_F(MimePackageTest, FindsTheExtensionInAnyOfTheDatabases) {
    for (const char *where : {"home", "first", "second"}) {
        const QString file = Path(where) + QStringLiteral("/mime/globs2");
        WriteFile(file, "# made\n50:text/plain:*.txt\n50:video/x-ztv:*.ztv\n50:text/x:*.x\n");
        EXPECT_TRUE(IsBound()) << where;
        QFile::remove(file);
        EXPECT_FALSE(IsBound()) << where;
    }
}

TEST_F(MimePackageTest, TellsTheExtensionFromItsLike) {
    const std::pair<const char *, bool> rows[] = {
        {"50:a/b:*.ztv", true},
        {"50:a/b:*.ztv\n", true},
        {"50:a/b:*.ztv\r\n", true},
        {"10:a/b:*.ZTV\n", true},
        {"50:a/b:*.ztv:cs\n", true},
        {"50:a/x:*.ztvx\n50:a/b:*.ztv\n", true},
        {"", false},
        {"*.ztv\n", false},
        {"#50:a/b:*.ztv\n", false},
        {"50:a/b:*.ztvx\n", false},
        {"50:a/b:*.ztv.gz\n", false},
        {"50:a/b:x*.ztv\n", false},
        {"50:a/b:ztv\n", false},
    };
    for (const auto &[globs, bound] : rows) {
        WriteFile(Path("first") + QStringLiteral("/mime/globs2"), globs);
        EXPECT_EQ(IsBound(), bound) << globs;
    }
}

TEST_F(MimePackageTest, MindsNotWhatItPublishedForTheUserItself) {
    const QByteArray own = "50:" + SettingsFileType::MimeType().toLatin1() + ":*.ztv\n";
    WriteFile(Path("home") + QStringLiteral("/mime/globs2"), own);
    EXPECT_FALSE(IsBound());
    WriteFile(Path("second") + QStringLiteral("/mime/globs2"), own); // of a package that was installed
    EXPECT_TRUE(IsBound());
}

TEST_F(MimePackageTest, DescribesTheTypeByItsNamePatternAndMagic) {
    const QByteArray text = MimePackage::Text(QStringLiteral(".ztv"), QStringLiteral("Zentrova <File>"));
    for (const char *part :
         {"<mime-type type=\"application/x-ztv-link-settings\">", "<comment>Zentrova &lt;File&gt;</comment>",
          "<glob pattern=\"*.ztv\"/>", "<sub-class-of type=\"application/vnd.sqlite3\"/>",
          "<match type=\"big32\" offset=\"68\" value=\"0x5a545631\"/>"}) {
        EXPECT_TRUE(text.contains(part)) << part << " in " << text.toStdString();
    }
}

TEST_F(MimePackageTest, IsInAPackageWhatItIsForAUser) {
    EXPECT_EQ(
        ReadFile(QStringLiteral(ZTV_TESTS_DIR "/../packaging/ztv-link.xml")).toStdString(),
        MimePackage::Text(SettingsFileType::Extension(), SettingsFileType::Description()).toStdString());
}

} // namespace ztv
