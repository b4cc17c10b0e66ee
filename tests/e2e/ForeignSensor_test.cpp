#include "model/ParamDefines.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/ModbusServer.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <optional>

namespace ztv {

// Runs the program against a slave that shares no code with it.
class ForeignSensorTest : public MainFormTest {
protected:
    ~ForeignSensorTest() override {
        form_.reset();
        qunsetenv("ZTVLINK_PORT_1");
    }

    // A sensor with the presets in its registers.
    void StartWithSensor(int slave, int addressing) {
        Start();
        form_->Link().ModbusAddress(static_cast<std::int16_t>(slave));
        server_.emplace(slave);
        addressing_ = addressing;
        for (std::int16_t n = 1; n < form_->Zentrova().ParamCount(); ++n) {
            server_->SetRegister(n - addressing_,
                                 static_cast<std::uint16_t>(form_->Zentrova().ParamValue(n)));
        }
        server_->SetRegister(ParamDefines::NetworkAddress - addressing_, static_cast<std::uint16_t>(slave));
        server_->SetRegister(ParamDefines::AddressingMode - addressing_,
                             static_cast<std::uint16_t>(addressing));
        qputenv("ZTVLINK_PORT_1", server_->Path().toLocal8Bit());
    }

    void GoOnline(const char *direction) {
        WhenDialogOpens([direction](QWidget &dialog) { Form(dialog).Press(direction); });
        Ui().Choose("Toolbar1(Online)");
    }

    int InSensor(int parameter) const { return server_->Register(parameter - addressing_); }

    int addressing_ = 1;
    std::optional<ModbusServer> server_;
};

TEST_F(ForeignSensorTest, IsReadInBothAddressingModes) {
    for (const int addressing : {1, 0}) {
        SCOPED_TRACE(addressing);
        StartWithSensor(1, addressing);
        server_->SetRegister(ParamDefines::ActualDistance - addressing, 4567);
        GoOnline("Read");
        EXPECT_TRUE(WaitUntil([this] { return Ui().Text("TextParam(6)") == QStringLiteral("45.67\""); }));
        EXPECT_EQ(form_->AddressingMode(), addressing);
        server_->SetRegister(ParamDefines::ActualDistance - addressing, 106);
        EXPECT_TRUE(WaitUntil([this] { return Ui().Text("TextParam(6)") == QStringLiteral("1.06\""); }));
        form_->GoOffline();
    }
}

TEST_F(ForeignSensorTest, TakesSingleWrites) {
    StartWithSensor(1, 1);
    GoOnline("Read");
    EXPECT_TRUE(WaitUntil([this] { return form_->Link().Mbaxp1().TransactionBusy(1); }));
    form_->Zentrova().ParamValue(ParamDefines::NearDistance, 1500);
    form_->Zentrova().ParamValue(ParamDefines::MaxRange, 41000);
    EXPECT_TRUE(WaitUntil([this] { return InSensor(ParamDefines::MaxRange) == 41000; }));
    EXPECT_EQ(InSensor(ParamDefines::NearDistance), 1500);
}

TEST_F(ForeignSensorTest, TakesAWholeTable) {
    StartWithSensor(1, 1);
    form_->Zentrova().ParamValue(ParamDefines::NearDistance, 2345);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitUntil([this] { return Ui().Text("TextParam(3)") == QStringLiteral("23.45\""); }));
    for (std::int16_t n = 1; n < form_->Zentrova().ParamCount(); ++n) {
        EXPECT_EQ(InSensor(n), form_->Zentrova().ParamValue(n) & 0xFFFF) << n;
    }
}

TEST_F(ForeignSensorTest, IsReachedAtAnotherAddress) {
    StartWithSensor(42, 1);
    GoOnline("Read");
    EXPECT_TRUE(WaitUntil([this] { return form_->Link().Mbaxp1().TransactionBusy(1); }));
    EXPECT_EQ(form_->ModbusAddress(), 42);
}

} // namespace ztv
