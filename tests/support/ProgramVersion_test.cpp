#include "support/ProgramVersion.h"

#include "tests/helpers/Files.h"

#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

namespace ztv {

TEST(ProgramVersionTest, IsThatOfAllThatIsInstalled) {
    const QByteArray version = ProgramVersion().toLatin1();
    const std::pair<const char *, QByteArray> rows[] = {
        {"ztvlink.1", "\"ZTV Link " + version + '"'},
        {"ztv-sim.1", "\"ZTV Link " + version + '"'},
        {"debian/changelog", "ztvlink (" + version + ')'},
    };
    for (const auto &[file, part] : rows) {
        const QByteArray text =
            ReadFile(QStringLiteral(ZTV_BIN_DIR "/../packaging/") + QString::fromLatin1(file));
        EXPECT_TRUE(text.contains(part)) << file << " lacks " << part.toStdString();
    }
    QProcess sensor;
    sensor.start(QStringLiteral(ZTV_BIN_DIR "/ztv-sim"), {QStringLiteral("--version")});
    ASSERT_TRUE(sensor.waitForFinished());
    EXPECT_EQ(sensor.readAllStandardOutput(), "ztv-sim " + version + '\n');
}

} // namespace ztv
