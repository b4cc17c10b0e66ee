#include "chart/BasicFields.h"
#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "widgets/FailedMark.h"
#include "widgets/WhyDisabled.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTreeView>

namespace ztv {

// Tests the details beside the boxes of failures, and the marks of values that weren't taken.
class WriteFailureTest : public SessionTest {
protected:
    static constexpr std::int16_t Far = ParamDefines::FarDistance;

    QWidget &Box(std::int16_t tag) const {
        for (QLineEdit *box : form_->findChildren<QLineEdit *>()) {
            if (box->objectName().startsWith(QStringLiteral("TextParam(")) &&
                box->property("Tag").toString() == QString::number(tag)) {
                return *box;
            }
        }
        throw std::runtime_error("no box");
    }
    static bool IsMarked(const QWidget &widget) { return widget.findChild<FailedMark *>() != nullptr; }

    void ExpectFailure(std::function<void()> whileOpen = {}) {
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), std::move(whileOpen));
    }
    void Fail(std::int16_t tag, std::int32_t value) {
        Write(tag, value);
        EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    }
};

TEST_F(WriteFailureTest, ARefusedWriteIsNamedAndMarkedUntilTheNextPoll) {
    StartPolling();
    sensor_->SetRegister(Far, 30000);
    EXPECT_TRUE(WaitUntil([this] { return Value(Far) == 30000; }));
    sensor_->Execute(QStringLiteral("exception 4"));
    bool marked = false;
    bool others = false;
    ExpectFailure([&] {
        marked = IsMarked(Box(Far));
        others = IsMarked(Box(ParamDefines::NearDistance));
    });
    Fail(Far, 32000);
    EXPECT_EQ(
        dialogs_.LastInformativeText(),
        QStringLiteral("Far Distance (29) = 320.00\" was not taken (Acknowledge). The sensor has 300.00\"."));
    EXPECT_TRUE(marked); // behind the box, too
    EXPECT_FALSE(others);
    EXPECT_TRUE(IsMarked(Box(Far)));
    EXPECT_EQ(Box(Far).accessibleDescription(), QStringLiteral("The sensor hasn't confirmed this value"));
    sensor_->Execute(QStringLiteral("exception 0"));
    EXPECT_TRUE(WaitUntil([this] { return !IsMarked(Box(Far)); }));
    EXPECT_EQ(Value(Far), 30000);
    EXPECT_EQ(Box(Far).accessibleDescription(), QString());
}

TEST_F(WriteFailureTest, AWriteWhoseReplyWasLostIsNotSaidToBeRefused) {
    StartPolling();
    sensor_->SetRegister(Far, 30000);
    EXPECT_TRUE(WaitUntil([this] { return Value(Far) == 30000; }));
    sensor_->Faults().drop = 1;
    ExpectFailure([this] { sensor_->Faults().drop = 0; });
    Fail(Far, 32000);
    EXPECT_EQ(sensor_->Register(Far), 32000); // executed all the same
    EXPECT_EQ(dialogs_.LastInformativeText(),
              QStringLiteral("Far Distance (29) = 320.00\" was not confirmed (Timeout). The sensor had "
                             "300.00\" when it was last read."));
}

TEST_F(WriteFailureTest, ADeadLineKeepsTheMarkOnEachPageUntilItAnswers) {
    StartPolling();
    sensor_->Execute(QStringLiteral("mute on"));
    ExpectFailure();
    Fail(ParamDefines::Relay1OnThreshold, 7000);
    EXPECT_TRUE(dialogs_.LastInformativeText().startsWith(
        QStringLiteral("Relay 1 On Threshold (56) = 70.00\" was not confirmed (Timeout). The sensor had ")));
    int marked = 0;
    for (int number = 0; number < 4; ++number) {
        marked += IsMarked(Ui().Get<QWidget>(("PicRelay(" + std::to_string(number) + ')').c_str())) ? 1 : 0;
    }
    EXPECT_EQ(marked, 1);

    Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(1);
    Settle();
    const auto *list = form_->findChild<QTreeView *>(QStringLiteral("ListView1"));
    const QModelIndex cell =
        list->model()->index(ParamDefines::Relay1OnThreshold - 1, 2); // rows start at 1, unsorted
    const auto description = [&] { return cell.data(Qt::AccessibleDescriptionRole).toString(); };
    EXPECT_EQ(cell.data().toString(), QStringLiteral("70.00\""));
    EXPECT_EQ(description(), QStringLiteral("The sensor hasn't confirmed this value"));
    EXPECT_EQ(cell.siblingAtRow(cell.row() + 1).data(Qt::AccessibleDescriptionRole).toString(), QString());
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitUntil([&] { return description().isEmpty(); }));
    EXPECT_NE(cell.data().toString(), QStringLiteral("70.00\""));
}

TEST_F(WriteFailureTest, AWriteBeforeTheFirstPollSaysThatTheSensorsValueIsNotKnown) {
    StartSensor();
    sensor_->Execute(QStringLiteral("mute on"));
    Start();
    GoOnline();
    ExpectFailure();
    Fail(Far, 32000);
    EXPECT_EQ(
        dialogs_.LastInformativeText(),
        QStringLiteral("Far Distance (29) = 320.00\" was not confirmed (Timeout). The value that the sensor "
                       "has isn't known."));
}

TEST_F(WriteFailureTest, ADownloadThatFailedSaysWhy) {
    StartSensor();
    Start();
    dialogs_.ExpectNotice(QStringLiteral("Error downloading Parameters"));
    QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
                     [this](LinkTransaction done) {
                         if (done == LinkTransaction::AddressingProbe) {
                             sensor_->Execute(QStringLiteral("exception 4"));
                         }
                     });
    GoOnline("Write");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(
        dialogs_.LastInformativeText(),
        QStringLiteral("The 95 values were not confirmed (Acknowledge). The values read next are those that "
                       "the sensor holds."));
}

TEST_F(WriteFailureTest, APortThatIsNotThereIsNamedWithThoseThatAre) {
    qputenv("ZTVLINK_PORT_1", "/dev/there-is-no-such-port");
    Start();
    dialogs_.ExpectTextWith(QStringLiteral("Error 47. "), BoxIcon::Exclamation);
    GoOnline();
    EXPECT_TRUE(dialogs_.LastInformativeText().startsWith(
        QStringLiteral("Port 1 is /dev/there-is-no-such-port, which isn't connected. There are")))
        << dialogs_.LastInformativeText().toStdString();
}

TEST_F(WriteFailureTest, DisabledControlsSayWhy) {
    StartSensor();
    Start();
    const auto tip = [this](const char *name) { return WhyDisabled::TipOf(Ui().Get<QWidget>(name)); };
    EXPECT_EQ(tip("Save ZTV"), QStringLiteral("Save changes in the ZTV500-100\nGo online first."));
    EXPECT_EQ(tip("cmdStartWizard"), QStringLiteral("Go online first."));
    EXPECT_TRUE(
        tip("CommandRefresh").endsWith(QStringLiteral("\nAll is always up to date. Select Changed first.")));
    EXPECT_EQ(WhyDisabled::TipOf(Ui().Get<QAction>("mnuReinit")), QStringLiteral("Go online first."));
    EXPECT_EQ(WhyDisabled::TipOf(Ui().Get<QAction>("mnuOptionsUpgradeFirmware")), QString());
    EXPECT_TRUE(WhyDisabled::TipOf(Ui().Get<QAction>("mnuFileOpenBackup"))
                    .startsWith(QStringLiteral("There is no backup yet.")));
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(tip("Save ZTV"), QStringLiteral("Save changes in the ZTV500-100"));
    EXPECT_EQ(tip("cmdStartWizard"), QString());
    EXPECT_EQ(WhyDisabled::TipOf(Ui().Get<QAction>("mnuReinit")), QString());
    EXPECT_EQ(WhyDisabled::TipOf(Ui().Get<QAction>("mnuOptionsUpgradeFirmware")),
              QStringLiteral("Go offline first."));
    Write(ParamDefines::AnalogOutputMode, 2);
    form_->ConfigureBasicTab();
    EXPECT_FALSE(Box(ParamDefines::NearDistance).isEnabled());
    EXPECT_TRUE(
        WhyDisabled::TipOf(Box(ParamDefines::NearDistance)).startsWith(QStringLiteral("Computed from ")));
}

} // namespace ztv
