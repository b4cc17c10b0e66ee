#include "model/ParamDefines.h"
#include "tabs/ui/ChoiceOverlay.h"
#include "tabs/ui/ParameterList.h"
#include "tabs/ui/ValueOverlay.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <set>

namespace ztv {

// Runs the Advanced list against a sensor.
class AdvancedListTest : public SessionTest {
protected:
    void StartOnList() {
        StartPolling();
        Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(1);
        form_->activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
    }
    ParameterList &List() { return Ui().Get<ParameterList>("ListView1"); }
    const ParameterListModel &Model() { return dynamic_cast<ParameterListModel &>(*List().model()); }
    QString Shown(std::int16_t tag) { return Model().Text(*Model().RowOf(tag), ParameterListModel::Value); }

    void DoubleClick(std::int16_t tag) {
        const QModelIndex cell = Model().index(*Model().RowOf(tag), ParameterListModel::Value);
        List().scrollTo(cell);
        QTest::mouseDClick(form_->windowHandle(), Qt::LeftButton, {},
                           List().viewport()->mapTo(form_.get(), List().visualRect(cell).center()));
    }
    static void Type(const char *text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text));
    }
    static void Key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
};

TEST_F(AdvancedListTest, FollowsTheSensor) {
    StartOnList();
    sensor_->SetRegister(ParamDefines::NearDistance, 4321);
    EXPECT_TRUE(WaitUntil([this] { return Shown(28) == QStringLiteral("43.21\""); }));
    std::set<std::string> distances;
    EXPECT_TRUE(WaitUntil([&] {
        distances.insert(Shown(32).toStdString());
        return distances.size() >= 4;
    }));
}

TEST_F(AdvancedListTest, SendsATypedValueOnce) {
    StartOnList();
    sensor_->ClearRecords();
    DoubleClick(28);
    Type("13.5");
    Key(Qt::Key_Return);
    EXPECT_TRUE(Ui().Get<ValueOverlay>("Text1").isHidden());
    EXPECT_EQ(Shown(28), QStringLiteral("13.50\""));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{28, 1350}}));
    EXPECT_EQ(Shown(28), QStringLiteral("13.50\""));

    sensor_->ClearRecords();
    DoubleClick(28); // the unchanged value isn't written at all
    Key(Qt::Key_Return);
    EXPECT_TRUE(Ui().Get<ValueOverlay>("Text1").isHidden());
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), Writes());
}

TEST_F(AdvancedListTest, SendsNothingForARefusedOrAbandonedValue) {
    StartOnList();
    sensor_->ClearRecords();
    DoubleClick(28);
    Type("400");
    dialogs_.ExpectNotice(QStringLiteral("The Near Distance must be less than the Far Distance."),
                          BoxIcon::Exclamation, QStringLiteral("Invalid Value"));
    Key(Qt::Key_Return);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_TRUE(Ui().Get<ValueOverlay>("Text1").isVisible());
    EXPECT_EQ(Ui().Text("Text1"), QStringLiteral("400"));
    Key(Qt::Key_Escape);
    DoubleClick(39);
    Key(Qt::Key_Down);
    Key(Qt::Key_Escape);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), Writes());
    EXPECT_EQ(Shown(39), QStringLiteral("Linear"));
}

TEST_F(AdvancedListTest, KeepsItsEditorsOpenOverThePollUntilTheListIsScrolled) {
    StartOnList();
    sensor_->ClearRecords();
    for (const std::int16_t tag : {ParamDefines::NearDistance, ParamDefines::AnalogOutputMode}) {
        auto &editor = Ui().Get<QWidget>(tag == ParamDefines::NearDistance ? "Text1" : "Combo1");
        DoubleClick(tag);
        EXPECT_TRUE(WaitForPolls(3));
        EXPECT_TRUE(editor.isVisible());
        EXPECT_TRUE(editor.hasFocus());
        if (tag == ParamDefines::NearDistance) {
            Type("13");
        } else {
            Key(Qt::Key_Down);
        }
        List().verticalScrollBar()->setValue(List().verticalScrollBar()->value() + 1);
        EXPECT_TRUE(WaitForPolls(2));
        EXPECT_FALSE(editor.isVisible());
    }
    EXPECT_EQ(sensor_->Writes(), Writes());
}

TEST_F(AdvancedListTest, SendsAChoice) {
    StartOnList();
    sensor_->ClearRecords();
    DoubleClick(39);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    EXPECT_TRUE(WaitUntil([this] { return sensor_->Writes() == Writes{{39, 2}}; }));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Shown(39), QStringLiteral("Hyperbolic"));
}

TEST_F(AdvancedListTest, SendsTheNearDistanceAfterTheFarOneInHyperbolicMode) {
    StartOnList();
    Write(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    EXPECT_TRUE(WaitForPolls(2));
    sensor_->ClearRecords();
    DoubleClick(29);
    Type("100");
    Key(Qt::Key_Return);
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{29, 10000}, {28, 8950}}));
    EXPECT_TRUE(Ui().Get<ValueOverlay>("Text1").isHidden());
    EXPECT_EQ(Shown(28), QStringLiteral("89.50\""));
    EXPECT_EQ(Shown(29), QStringLiteral("100.00\""));
}

TEST_F(AdvancedListTest, SendsAnOutputValueGivenInVolts) {
    StartOnList();
    sensor_->ClearRecords();
    WhenDialogOpens([](QWidget &dialog) {
        auto &option = Form(dialog).Get<QAbstractButton>("OptionDataType(1)");
        QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
        Type("2.5");
        Form(dialog).Press("CommandOK");
    });
    DoubleClick(84);
    EXPECT_TRUE(WaitUntil([this] { return sensor_->Writes() == Writes{{84, 1024}}; }));
    EXPECT_EQ(Shown(84), QStringLiteral("1024"));
}

TEST_F(AdvancedListTest, BringsBackTheSensorsValueAfterARefusedWrite) {
    const ChangedPresets wider("UPDATE Parameters SET \"Max\" = 50000 WHERE rowid = 1 + 25");
    presets_ = wider.Folder();
    StartOnList();
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    DoubleClick(25);
    Type("500");
    Key(Qt::Key_Return);
    EXPECT_EQ(Shown(25), QStringLiteral("500.00\""));
    EXPECT_TRUE(WaitUntil([this] { return Shown(25) == QStringLiteral("420.00\""); }));
}

} // namespace ztv
