#include "tabs/ui/ParameterList.h"
#include "tests/e2e/Session.h"

#include <QProcess>
#include <map>

namespace ztv {

// Exchanges settings files between the program and ztv-ctl.
class ControlFilesTest : public SessionTest {
protected:
    int Ctl(const QStringList &words) {
        QProcess ctl;
        ctl.start(QStringLiteral(ZTV_BIN_DIR "/ztv-ctl"),
                  QStringList{QStringLiteral("--port"), sensor_->Path()} + words);
        EXPECT_TRUE(
            WaitUntil([&] { return ctl.state() == QProcess::NotRunning; })); // the sensor needs this loop
        printed_ = QString::fromUtf8(ctl.readAllStandardOutput());
        return ctl.exitCode();
    }

    QString Shown(int tag) {
        const auto &list = Ui().Get<ParameterList>("ListView1");
        const auto &model = dynamic_cast<const ParameterListModel &>(*list.model());
        return model.Text(*model.RowOf(static_cast<std::int16_t>(tag)), ParameterListModel::Value);
    }

    QString file_ = configuration_.filePath(QStringLiteral("line 4.ztv"));
    QString printed_;
    std::map<int, int> values_ = {{26, -500}, {28, 2345}, {39, 0}, {21, 65000}, {43, 3}};
};

TEST_F(ControlFilesTest, TheProgramShowsWhatWasSavedByTheCommandLine) {
    for (const int addressing : {0, 1}) {
        StartSensor(addressing);
        for (const auto &[tag, value] : values_) {
            sensor_->SetRegister(tag, value);
        }
        EXPECT_EQ(Ctl({QStringLiteral("save"), QStringLiteral("--yes"), file_}), 0);
        EXPECT_EQ(Ctl({QStringLiteral("--format"), QStringLiteral("csv"), QStringLiteral("get")}), 0);
        Start(u'"' + file_ + u'"');
        Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(1);
        const QStringList lines = printed_.trimmed().split(u'\n');
        ASSERT_EQ(lines.size(), 1 + 95);
        for (int tag = 1; tag <= 95; ++tag) {
            if (form_->Zentrova().ParamReadOnly(static_cast<std::int16_t>(tag))) {
                continue; // measured anew by each command
            }
            QString value = lines.at(tag).section(u',', 3, -2);
            value = value.startsWith(u'"') ? value.mid(1, value.size() - 3) : value;
            EXPECT_EQ(Shown(tag), value) << tag;
        }
        EXPECT_EQ(Shown(28), QStringLiteral("23.45\""));
        form_.reset();
    }
}

TEST_F(ControlFilesTest, TheCommandLineFindsNoDifferenceToWhatTheProgramSaved) {
    for (const int addressing : {0, 1}) {
        StartPolling(addressing);
        for (const auto &[tag, value] : values_) {
            sensor_->SetRegister(tag, value);
        }
        EXPECT_TRUE(WaitUntil([this] { return Value(28) == 2345; }));
        dialogs_.ExpectSaveFile(file_);
        dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
        Ui().Choose("mnuFileSave(0)");
        form_->GoOffline();
        form_.reset();
        EXPECT_EQ(Ctl({QStringLiteral("diff"), QStringLiteral("--line-settings"), file_}), 0);
        EXPECT_EQ(printed_, QString());
        sensor_->SetRegister(28, 1200);
        EXPECT_EQ(Ctl({QStringLiteral("diff"), file_}), 1);
        EXPECT_EQ(Ctl({QStringLiteral("load"), QStringLiteral("--yes"), file_}), 0);
        EXPECT_EQ(sensor_->Register(28), 2345);
        EXPECT_EQ(Ctl({QStringLiteral("diff"), file_}), 0);
    }
}

} // namespace ztv
