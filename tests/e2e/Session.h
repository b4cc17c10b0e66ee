#pragma once

#include "sim/SimulatedSensor.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Wait.h"

#include <optional>
#include <utility>
#include <vector>

namespace ztv {

// Runs the whole program against the simulated sensor: tests use the form's controls at one end of the line
// and the sensor's registers at the other.
class SessionTest : public MainFormTest {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    ~SessionTest() override {
        form_.reset();
        qunsetenv("ZTVLINK_PORT_1");
    }

    void StartSensor(int addressing = 1) {
        sim::SensorOptions options;
        options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
        options.addressing = addressing;
        options.link = configuration_.filePath(QStringLiteral("line"));
        sensor_.emplace(options);
        ASSERT_EQ(sensor_->Start(), QString());
        qputenv("ZTVLINK_PORT_1", sensor_->Path().toLocal8Bit());
    }

    // Goes online by the toolbar and answers the question about the direction.
    void GoOnline(const char *direction = "Read") {
        WhenDialogOpens([direction](QWidget &dialog) { Form(dialog).Press(direction); });
        Ui().Choose("Toolbar1(Online)");
    }

    // The question before a file goes to the sensor.
    void ExpectLoadingQuestion(BoxAnswer answer = BoxAnswer::Yes) {
        dialogs_.Expect(QStringLiteral("Opening a file when online will load\nthe Zentrova with the new "
                                       "settings.\n\nContinue?"),
                        BoxIcon::Exclamation, BoxButtons::YesNo, answer);
    }

    void StartPolling(int addressing = 1) {
        StartSensor(addressing);
        Start();
        GoOnline();
        EXPECT_TRUE(WaitForPolls(1));
    }

    // Waits for that many good polls.
    bool WaitForPolls(int count) {
        int polls = 0;
        const auto connection = QObject::connect(
            &form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
            [&polls](LinkTransaction transaction) { polls += transaction == LinkTransaction::Poll ? 1 : 0; });
        const bool came = WaitUntil([&] { return polls >= count; });
        QObject::disconnect(connection);
        return came;
    }

    bool WaitForStatus(const char *word) {
        return WaitUntil([&] {
            return Ui().Text("StatusText") ==
                   QStringLiteral("Communication Status: ") + QString::fromLatin1(word);
        });
    }

    void Write(std::int16_t tag, std::int32_t value) { form_->Zentrova().ParamValue(tag, value); }
    std::int32_t Value(std::int16_t tag) { return form_->Zentrova().ParamValue(tag); }

    std::optional<sim::SimulatedSensor> sensor_;
};

} // namespace ztv
