#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace ztv {

// Opens settings files while the program polls the simulated sensor.
class FilesTest : public SessionTest {
protected:
    // Makes a settings file with these rows changed, and expects the boxes of its opening.
    void ExpectOpening(const Writes &changes) {
        ClassZentrova zentrova(ShippedPresetsFolder());
        for (const auto &[tag, value] : changes) {
            zentrova.ParamUpdate(static_cast<std::int16_t>(tag), value);
        }
        zentrova.SaveFile(file_);
        ExpectLoadingQuestion();
        dialogs_.ExpectOpenFile(file_);
    }

    void ExpectDownloaded() { dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!")); }

    void Open() {
        Ui().Choose("mnuFileOpen");
        EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
        EXPECT_TRUE(WaitForPolls(2));
    }

    QString file_ = configuration_.filePath(QStringLiteral("line 4.ztv"));
};

TEST_F(FilesTest, LoadTheSensorWithAllOfTheirRows) {
    for (const int addressing : {1, 0}) {
        SCOPED_TRACE(addressing);
        StartPolling(addressing);
        sensor_->ClearRecords();
        ExpectOpening({{28, 2222}, {29, 33333}, {21, 65000}, {26, -500}, {68, addressing}});
        ExpectDownloaded();
        Open();
        EXPECT_FALSE(form_->Zentrova().WriteAllPending());
        EXPECT_EQ(sensor_->Register(28), 2222);
        EXPECT_EQ(sensor_->Register(29), 33333);
        EXPECT_EQ(sensor_->Register(21), 65000);
        EXPECT_EQ(Value(26), -500);
        EXPECT_EQ(Value(28), 2222);
        EXPECT_EQ(form_->AddressingMode(), addressing);
        EXPECT_EQ(form_->windowTitle(), QStringLiteral("line 4.ztv - ZTV Link"));
        EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
        form_->GoOffline();
    }
}

TEST_F(FilesTest, MoveTheHostToTheLineSettingsThatTheyBring) {
    StartPolling();
    ExpectOpening({{65, 17}, {66, 2}, {67, 3}, {68, 1}});
    ExpectDownloaded();
    Open();
    EXPECT_EQ(form_->ModbusAddress(), 17);
    EXPECT_EQ(form_->BaudRate(), 2);
    EXPECT_EQ(form_->ParityStop(), 3);
    EXPECT_EQ(sensor_->Register(65), 17);
    form_->close();
    Start();
    EXPECT_EQ(form_->ModbusAddress(), 17);
    EXPECT_EQ(form_->BaudRate(), 2);
}

TEST_F(FilesTest, MoveTheHostToTheAddressingModeThatTheyBring) {
    StartPolling();
    ExpectOpening({{68, 0}, {28, 2222}});
    ExpectDownloaded();
    Open();
    EXPECT_EQ(form_->AddressingMode(), 0);
    EXPECT_EQ(Value(28), 2222);
}

TEST_F(FilesTest, SaySoWhenTheSensorRefusesThem) {
    StartPolling();
    const int before = sensor_->Register(28);
    sensor_->Execute(QStringLiteral("exception 4"));
    ExpectOpening({{28, 2222}, {65, 17}});
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    Ui().Choose("mnuFileOpen");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("exception 0"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Value(28), before);
    EXPECT_EQ(form_->ModbusAddress(), 1);
    EXPECT_FALSE(form_->Zentrova().WriteAllPending());
}

// The other registers of the download keep the words of the download before.
TEST_F(FilesTest, WriteEveryRegisterThoughTheyHoldFewerRows) {
    StartSensor();
    Start();
    Write(ParamDefines::FarDistance, 33333);
    ExpectDownloaded();
    GoOnline("Write");
    EXPECT_TRUE(WaitForPolls(2));
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitForPolls(1));
    dialogs_.Expect(QStringLiteral("Save changes in file ?"), BoxIcon::Question, BoxButtons::YesNoCancel,
                    BoxAnswer::No);
    ExpectOpening({{ParamDefines::NearDistance, 2222}});
    SQLite::Database(file_.toStdString(), SQLite::OPEN_READWRITE)
        .exec("UPDATE Settings SET Value = 29 WHERE rowid = 13");
    ExpectDownloaded();
    Open();
    EXPECT_EQ(sensor_->Register(ParamDefines::NearDistance), 2222);
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 33333);
    EXPECT_EQ(Value(ParamDefines::FarDistance), 33333);
}

TEST_F(FilesTest, LoadNothingWhenTheUserSaysNo) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectLoadingQuestion(BoxAnswer::No);
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(sensor_->Writes(), Writes());
}

TEST_F(FilesTest, KeepWhatTheSensorShowed) {
    StartPolling();
    sensor_->SetRegister(28, 4321);
    EXPECT_TRUE(WaitUntil([this] { return Value(28) == 4321; }));
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
    dialogs_.ExpectSaveFile(file_);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)");
    ClassZentrova zentrova(ShippedPresetsFolder());
    EXPECT_EQ(zentrova.OpenFile(file_).result, FileOpened::Whole);
    EXPECT_EQ(zentrova.ParamValue(28), 4321);
}

} // namespace ztv
