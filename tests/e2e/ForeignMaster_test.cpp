#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

// Runs the shipped simulator with an independent master, mbpoll.
class ForeignMasterTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(QStandardPaths::findExecutable(QStringLiteral("mbpoll")).isEmpty())
            << "mbpoll isn't installed";
        sensor_.start(ShippedPresetsFolder() + QStringLiteral("/ztv-sim"), {QStringLiteral("--link"), link_});
        ASSERT_TRUE(sensor_.waitForStarted());
        ASSERT_TRUE(sensor_.waitForReadyRead());
        ASSERT_EQ(sensor_.readLine().trimmed(), "port " + link_.toLocal8Bit());
    }

    ~ForeignMasterTest() override {
        sensor_.write("quit\n");
        sensor_.waitForFinished();
        EXPECT_EQ(sensor_.exitCode(), 0);
    }

    // Parses the registers that mbpoll prints, by address.
    std::vector<int> Poll(const QStringList &what, bool expectGood = true) {
        QProcess mbpoll;
        QStringList arguments{QStringLiteral("-m"), QStringLiteral("rtu"),  QStringLiteral("-a"),
                              QStringLiteral("1"),  QStringLiteral("-b"),   QStringLiteral("38400"),
                              QStringLiteral("-P"), QStringLiteral("none"), QStringLiteral("-s"),
                              QStringLiteral("2"),  QStringLiteral("-0"),   QStringLiteral("-1")};
        mbpoll.start(QStringLiteral("mbpoll"), arguments + what);
        EXPECT_TRUE(mbpoll.waitForFinished());
        EXPECT_EQ(mbpoll.exitCode() == 0, expectGood) << mbpoll.readAllStandardError().toStdString();
        std::vector<int> values;
        const QString output = QString::fromUtf8(mbpoll.readAllStandardOutput());
        static const QRegularExpression row(QStringLiteral("\\[\\d+\\]:\\s+(\\d+)"));
        for (auto match = row.globalMatch(output); match.hasNext();) {
            values.push_back(match.next().captured(1).toInt());
        }
        return values;
    }

    QTemporaryDir folder_;
    QString link_ = folder_.filePath(QStringLiteral("line"));
    QProcess sensor_;
};

TEST_F(ForeignMasterTest, ReadsTheRegisters) {
    const std::vector<int> values =
        Poll({QStringLiteral("-r"), QStringLiteral("23"), QStringLiteral("-c"), QStringLiteral("6"), link_});
    ASSERT_EQ(values.size(), 6U); // parameters 24 to 29
    EXPECT_EQ(values[0], 600);
    EXPECT_EQ(values[1], 42000);
    EXPECT_EQ(values[4], 1200);
    EXPECT_EQ(values[5], 36000);
}

TEST_F(ForeignMasterTest, WritesARegister) {
    Poll({QStringLiteral("-r"), QStringLiteral("27"), link_, QStringLiteral("1555")});
    EXPECT_EQ(Poll({QStringLiteral("-r"), QStringLiteral("27"), link_}), (std::vector<int>{1555}));
    Poll(
        {QStringLiteral("-r"), QStringLiteral("27"), link_, QStringLiteral("1600"), QStringLiteral("35000")});
    EXPECT_EQ(
        Poll({QStringLiteral("-r"), QStringLiteral("27"), QStringLiteral("-c"), QStringLiteral("2"), link_}),
        (std::vector<int>{1600, 35000}));
}

TEST_F(ForeignMasterTest, IsRefusedWhatIsNotThere) {
    EXPECT_TRUE(Poll({QStringLiteral("-r"), QStringLiteral("200"), link_}, false).empty());
}

} // namespace ztv
