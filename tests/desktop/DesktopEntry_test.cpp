#include "desktop/DesktopEntry.h"

#include "support/ApplicationTitle.h"
#include "support/SettingsFileType.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(DesktopEntryTest, QuotesTheApplication) {
    const std::pair<const char *, const char *> rows[] = {
        {R"(/opt/ztv/ZtvLink)", R"("/opt/ztv/ZtvLink" %f)"},
        {R"(/opt/ZTV Link/ZtvLink)", R"("/opt/ZTV Link/ZtvLink" %f)"},
        {R"(/a"b)", R"("/a\"b" %f)"},
        {R"(/a`b)", R"("/a\`b" %f)"},
        {R"(/a$HOME)", R"("/a\$HOME" %f)"},
        {R"(/a\b)", R"("/a\\b" %f)"},
        {R"(/100%f)", R"(env "/100%%f" %f)"},
        {R"(/it's;&|<>*?#~()=)", R"("/it's;&|<>*?#~()=" %f)"},
    };
    for (const auto &[application, exec] : rows) {
        EXPECT_EQ(DesktopEntry::Exec(QString::fromLatin1(application)), QString::fromLatin1(exec));
    }
}

TEST(DesktopEntryTest, SaysWhatItIsAndWhatItOpens) {
    EXPECT_EQ(DesktopEntry::Text({.name = QStringLiteral("ZTV Link"),
                                  .application = QStringLiteral("/opt/ZTV Link/ZtvLink"),
                                  .icon = QStringLiteral("ztv-link"),
                                  .mimeType = QStringLiteral("application/x-a")})
                  .toStdString(),
              "[Desktop Entry]\n"
              "Type=Application\n"
              "Name=ZTV Link\n"
              "Comment=Set up and watch distance sensors\n"
              "Exec=\"/opt/ZTV Link/ZtvLink\" %f\n"
              "Icon=ztv-link\n"
              "Terminal=false\n"
              "Categories=Science;Engineering;\n"
              "MimeType=application/x-a;\n");
}

TEST(DesktopEntryTest, IsInAPackageWhatItIsForAUser) {
    EXPECT_EQ(ReadFile(QStringLiteral(ZTV_TESTS_DIR "/../packaging/ztv-link.desktop")).toStdString(),
              DesktopEntry::Text({.name = ApplicationTitle(),
                                  .application = QStringLiteral("ztvlink"), // found by the path
                                  .icon = QStringLiteral("ztv-link"),
                                  .mimeType = SettingsFileType::MimeType()})
                  .toStdString());
}

TEST(DesktopEntryTest, KeepsEachValueOnItsLine) {
    const QByteArray text = DesktopEntry::Text({.name = QStringLiteral("a\nExec=b\\\t\r"),
                                                .application = QStringLiteral("/a\\$\nb"),
                                                .icon = {},
                                                .mimeType = {}});
    EXPECT_TRUE(text.contains("\nName=a\\nExec=b\\\\\\t\\r\n")) << text.toStdString();
    EXPECT_TRUE(text.contains("\nExec=\"/a\\\\\\\\\\\\$\\nb\" %f\n")) << text.toStdString();
}

} // namespace ztv
