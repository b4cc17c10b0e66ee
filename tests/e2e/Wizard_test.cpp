#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <QApplication>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>

namespace ztv {

// Runs the setup wizard against a sensor, from the button on its tab to the sensor's registers.
class WizardTest : public SessionTest {
protected:
    // Starts a sensor whose registers differ from everything that the wizard will write.
    void StartOnWizard() {
        StartSensor();
        const std::pair<int, int> registers[] = {{24, 1000}, {25, 30000}, {28, 1111}, {29, 22222}, {33, 111},
                                                 {34, 1111}, {36, 11},    {37, 22},   {39, 0}};
        for (const auto &[number, value] : registers) {
            ASSERT_TRUE(sensor_->SetRegister(number, value)) << number;
        }
        Start();
        EXPECT_FALSE(Ui().Enabled("cmdStartWizard"));
        GoOnline();
        EXPECT_TRUE(WaitForPolls(1));
        Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(2);
        sensor_->ClearRecords();
    }

    // Opens the wizard, calls `work` with it and returns when it is closed.
    void RunWizard(const std::function<void(const Form &)> &work) {
        bool came = false;
        WhenDialogOpens([&](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), QStringLiteral("frmWizard"));
            work(Form(dialog));
            EXPECT_TRUE(WaitUntil([&dialog] { return !dialog.isVisible(); })); // its writes are sent then
            dialog.close();
            came = true;
        });
        Ui().Press("cmdStartWizard");
        EXPECT_TRUE(WaitUntil([&] { return came; }));
    }

    void Record(const Form &wizard, int place, int distance) {
        sensor_->HoldTarget(distance);
        const QByteArray index = "(" + QByteArray::number(place) + ")";
        const QString shown = QString::number(distance / 100.0, 'f', 2);
        EXPECT_TRUE(
            WaitUntil([&] { return wizard.Text(("LabelActualDistance" + index).constData()) == shown; }));
        wizard.Press(("CommandRecordDistance" + index).constData());
    }
    static void Type(const Form &wizard, const char *box, const char *text) {
        wizard.Get<QLineEdit>(box).setFocus();
        QTest::keyClicks(&wizard.Get<QLineEdit>(box), QString::fromLatin1(text));
    }
    static void Next(const Form &wizard) { wizard.Press("cmdNav(3)"); }
    static void Choose(const Form &wizard, const char *option) {
        wizard.Get<QAbstractButton>(option).click();
    }

    // Cancels after the range was opened, with a sensor that no longer answers.
    void CancelOnADeadLine(const Form &wizard) {
        Next(wizard);
        EXPECT_TRUE(WaitUntil([this] { return sensor_->Writes() == opened_; }));
        EXPECT_TRUE(WaitForPolls(1));
        sensor_->Execute(QStringLiteral("mute on"));
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes,
                        {}, QStringLiteral("Cancel?"));
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        wizard.Press("cmdNav(1)");
    }
    void TakeDistanceRoute(const Form &wizard) {
        Next(wizard);
        Choose(wizard, "OptionZentrovaMode(0)");
        Next(wizard);
        Record(wizard, 0, 20000);
        Type(wizard, "TextVoltageOutput(0)", "9.5");
        Next(wizard);
        Record(wizard, 1, 3000);
        Type(wizard, "TextVoltageOutput(1)", "1.25");
        Next(wizard);
    }
    void TakeDiameterRoute(const Form &wizard, const char *drive) {
        Next(wizard);
        Choose(wizard, "OptionZentrovaMode(1)");
        Next(wizard);
        Type(wizard, "TextCoreDia", "3");
        Type(wizard, "TextMaxDia", "24");
        Next(wizard);
        Record(wizard, 2, 6000);
        Next(wizard);
        Choose(wizard, drive);
        Next(wizard);
    }
    void Finish(const Form &wizard, bool save = true) {
        if (!save) {
            Choose(wizard, "chkSaveSettings");
        } else {
            dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
        }
        wizard.Press("cmdNav(4)");
        EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
        EXPECT_TRUE(WaitForPolls(2));
    }

    // Calls `work` at the request after that many writes, before the sensor receives it.
    void AfterWrites(std::size_t count, std::function<void()> work) {
        sensor_->ClearRecords();
        sensor_->OnRequest([this, count, done = false, work = std::move(work)](const QByteArray &) mutable {
            if (!done && sensor_->Writes().size() == count) {
                done = true;
                work();
            }
        });
    }

    // Makes the sensor refuse the writes of these parameters.
    void Refuse(std::vector<int> tags) {
        sensor_->OnRequest([this, tags = std::move(tags)](const QByteArray &request) {
            constexpr char read = 3;
            constexpr int deviceFailure = 4;
            const int tag = static_cast<unsigned char>(request.at(2)) * 256 +
                            static_cast<unsigned char>(request.at(3)) + form_->AddressingMode();
            const bool isRefused = request.at(1) != read && std::ranges::find(tags, tag) != tags.end();
            sensor_->Faults().exception = isRefused ? deviceFailure : 0;
        });
    }

    // The text of the strip in the main form.
    QString Strip() const {
        const auto &strip = Ui().Get<QWidget>("MessageStrip");
        return strip.isVisible() ? strip.accessibleName() : QString();
    }
    static QString Condition(const Form &wizard, int place = 0) {
        return wizard.Text(qPrintable(QStringLiteral("LabelCondition(%1)").arg(place)));
    }
    static bool WaitForCondition(const Form &wizard, const char *words, int place = 0) {
        return WaitUntil([&] { return Condition(wizard, place) == QString::fromUtf8(words); });
    }
    static QStringList Listed(const Form &wizard) {
        QStringList rows;
        const auto &list = wizard.Get<QTreeWidget>("ListChanges");
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            const QTreeWidgetItem &item = *list.topLevelItem(row);
            rows.append(item.text(0) + QStringLiteral(": ") + item.text(1) + QStringLiteral(" -> ") +
                        item.text(2));
        }
        return rows;
    }

    const Writes opened_{{24, 600}, {25, 42000}};
    static Writes Joined(Writes first, const Writes &second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
};

TEST_F(WizardTest, WritesTheDistanceRouteAndSavesIt) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        EXPECT_EQ(sensor_->Writes(), opened_);
        Finish(wizard);
    });
    EXPECT_EQ(
        sensor_->Writes(),
        Joined(opened_,
               {{39, 1}, {29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {37, 950}, {36, 125}, {1, 1}}));
    sensor_->Reset(); // a loss of power
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 20000);
    EXPECT_EQ(sensor_->Register(ParamDefines::NearVoltage), 125);
}

TEST_F(WizardTest, WritesTheTorqueRouteWithoutSavingIt) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDiameterRoute(wizard, "OptionDriveMode(0)");
        Finish(wizard, false);
    });
    EXPECT_EQ(
        sensor_->Writes(),
        Joined(opened_, {{39, 1}, {29, 6000}, {28, 4950}, {25, 6500}, {24, 4450}, {37, 125}, {36, 1000}}));
    EXPECT_EQ(sensor_->Register(ParamDefines::MaxDiameter), 1111);
}

TEST_F(WizardTest, WritesTheVelocityRouteAndSavesIt) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDiameterRoute(wizard, "OptionDriveMode(1)");
        Finish(wizard);
    });
    EXPECT_EQ(sensor_->Writes(), Joined(opened_, {{39, 2},
                                                  {33, 300},
                                                  {34, 2400},
                                                  {29, 6000},
                                                  {28, 4950},
                                                  {25, 6500},
                                                  {24, 4450},
                                                  {37, 1000},
                                                  {36, 0},
                                                  {1, 1}}));
    // The visible tab shows the outcome.
    Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(0);
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Value(ParamDefines::NearDistance), 4950);
}

TEST_F(WizardTest, OpensTheRangeEachTimeThatTheSensorLacksItAndPutsItBackOnCancel) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes,
                        {}, QStringLiteral("Cancel?"));
        wizard.Press("cmdNav(1)");
    });
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), Joined(opened_, {{24, 1000}, {25, 30000}}));
    EXPECT_EQ(sensor_->Register(ParamDefines::MinRange), 1000);
    EXPECT_EQ(sensor_->Register(ParamDefines::MaxRange), 30000);
}

TEST_F(WizardTest, LeavesTheRangeOpenWhenItsFrameIsClosed) {
    StartOnWizard();
    RunWizard([](const Form &wizard) {
        Next(wizard);
        wizard.Get<QWidget>("picNav").window()->close();
    });
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), opened_);
}

TEST_F(WizardTest, BeginsAfreshEachTime) {
    StartOnWizard();
    for (int time = 0; time < 2; ++time) {
        RunWizard([this](const Form &wizard) {
            EXPECT_EQ(wizard.Text("LabelRecordedDistance(0)"), QStringLiteral("---.--"));
            TakeDistanceRoute(wizard);
            wizard.Get<QWidget>("picNav").window()->close();
        });
    }
}

TEST_F(WizardTest, ClosesWhenTheSensorFallsSilentInTheMiddleOfItsEnd) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        // Each later write fails separately.
        for (int write = 3; write <= 8; ++write) {
            dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        }
        AfterWrites(2, [this] { sensor_->Execute(QStringLiteral("mute on")); });
        wizard.Press("cmdNav(4)");
        EXPECT_TRUE(WaitUntil([&] { return !wizard.Get<QWidget>("picNav").window()->isVisible(); }, 20'000));
    });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 20000);
    EXPECT_EQ(Value(ParamDefines::FarVoltage), 22);
    EXPECT_TRUE(Ui().Enabled("cmdStartWizard"));
}

TEST_F(WizardTest, ItsFrameClosesAtOnceThoughWritesWaitForADeadSensor) {
    StartOnWizard();
    sensor_->Execute(QStringLiteral("mute on"));
    RunWizard([this](const Form &wizard) {
        Next(wizard); // asks for two writes
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        EXPECT_TRUE(form_->Zentrova().WritesWait());
        wizard.Get<QWidget>("picNav").window()->close();
        EXPECT_FALSE(wizard.Get<QWidget>("picNav").window()->isVisible());
    });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
}

TEST_F(WizardTest, CancelRestoresTheRangeBehindTheFailuresOfADeadSensor) {
    StartOnWizard();
    sensor_->Execute(QStringLiteral("mute on"));
    RunWizard([this](const Form &wizard) {
        Next(wizard); // 24 is on the line, 25 waits
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes,
                        {}, QStringLiteral("Cancel?"));
        const auto staysOpen = [window = wizard.Get<QWidget>("picNav").window()] {
            window->close();
            QTest::keyClick(window, Qt::Key_Escape);
            EXPECT_TRUE(window->isVisible());
        };
        const QString failure = QStringLiteral("Error writing parameter");
        dialogs_.ExpectNotice(failure, BoxIcon::Exclamation, ApplicationTitle(), staysOpen); // of 24
        dialogs_.ExpectNotice(failure, BoxIcon::Exclamation, ApplicationTitle(), staysOpen); // of the old 25
        dialogs_.ExpectNotice(failure);                                                      // of the old 24
        wizard.Press("cmdNav(1)");
    });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(Value(ParamDefines::MinRange), 1000);
    EXPECT_EQ(Value(ParamDefines::MaxRange), 30000);
}

TEST_F(WizardTest, ClosesWhenTheLinkIsClosedInTheMiddleOfItsEnd) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        AfterWrites(2, [this] { QTimer::singleShot(0, form_.get(), [this] { form_->GoOffline(); }); });
        wizard.Press("cmdNav(4)");
    });
    EXPECT_FALSE(Ui().Enabled("cmdStartWizard"));
    EXPECT_EQ(Value(ParamDefines::MaxRange), 20500); // in the table only
    EXPECT_EQ(sensor_->Register(ParamDefines::MaxRange), 42000);
}

TEST_F(WizardTest, SaysWhetherTheCurrentDistanceIsSteady) {
    StartOnWizard();
    sensor_->HoldTarget(20000);
    RunWizard([this](const Form &wizard) {
        Next(wizard);
        Choose(wizard, "OptionZentrovaMode(0)");
        Next(wizard);
        EXPECT_TRUE(WaitForCondition(wizard, "steady"));
        sensor_->HoldTarget(20160);
        EXPECT_TRUE(WaitForCondition(wizard, "moving ±0.8\""));
        EXPECT_TRUE(WaitForCondition(wizard, "steady"));
        sensor_->Execute(QStringLiteral("set 38 0"));
        EXPECT_TRUE(WaitForCondition(wizard, "no echo"));
        EXPECT_TRUE(wizard.Enabled("CommandRecordDistance(0)"));
        sensor_->Execute(QStringLiteral("set 38 auto"));
        EXPECT_TRUE(WaitForCondition(wizard, "measuring"));
        EXPECT_TRUE(WaitForCondition(wizard, "steady"));
        for (int place = 1; place < 3; ++place) {
            EXPECT_EQ(Condition(wizard, place), QStringLiteral("steady"));
        }
        wizard.Get<QWidget>("picNav").window()->close();
    });
}

TEST_F(WizardTest, SaysThatItWaitsForASensorThatDoesNotAnswer) {
    StartOnWizard();
    sensor_->HoldTarget(20000);
    RunWizard([this](const Form &wizard) {
        EXPECT_EQ(wizard.Text("LabelWaiting"), QString());
        EXPECT_TRUE(WaitForCondition(wizard, "steady"));
        for (const auto &[fault, end] : {std::pair("mute on", "mute off"),
                                         std::pair("corrupt 1", "corrupt 0"), std::pair("unplug", "plug")}) {
            sensor_->Execute(QString::fromLatin1(fault));
            EXPECT_TRUE(WaitForCondition(wizard, "no answer")) << fault;
            EXPECT_EQ(wizard.Text("LabelWaiting"), QStringLiteral("Waiting for the sensor..."));
            EXPECT_TRUE(wizard.Enabled("cmdNav(3)"));
            sensor_->Execute(QString::fromLatin1(end));
            EXPECT_TRUE(WaitForCondition(wizard, "measuring")) << end;
            EXPECT_EQ(wizard.Text("LabelWaiting"), QString());
            EXPECT_TRUE(WaitForCondition(wizard, "steady")) << end;
        }
        wizard.Get<QWidget>("picNav").window()->close();
    });
}

TEST_F(WizardTest, JudgesTheDistanceOnTheSlowestLineToo) {
    StartSensor();
    EXPECT_EQ(sensor_->Execute(QStringLiteral("baud 2400")), QString());
    sensor_->HoldTarget(20000);
    Start();
    form_->Link().BaudRate(0);
    form_->SetMbaxp1CommProperties(1, 0, form_->ParityStop(), 0);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(2);
    RunWizard([this](const Form &wizard) {
        EXPECT_TRUE(WaitForCondition(wizard, "steady"));
        for (int poll = 0; poll < 2; ++poll) {
            EXPECT_TRUE(WaitForPolls(1));
            EXPECT_EQ(Condition(wizard), QStringLiteral("steady"));
        }
        sensor_->Execute(QStringLiteral("mute on"));
        constexpr int beforeTheTableIsStale = 3500;
        EXPECT_TRUE(WaitUntil([&] { return Condition(wizard) == QStringLiteral("no answer"); },
                              beforeTheTableIsStale));
        EXPECT_EQ(form_->Link().State(), ValueState::Live);
        wizard.Get<QWidget>("picNav").window()->close();
    });
}

TEST_F(WizardTest, ItsLastPageListsWhatFinishThenWrites) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        EXPECT_EQ(Listed(wizard),
                  (QStringList{QStringLiteral("Analog Output Mode (39): Manual -> Linear"),
                               QStringLiteral("Far Distance (29): 222.22\" -> 200.00\""),
                               QStringLiteral("Near Distance (28): 11.11\" -> 30.00\""),
                               QStringLiteral("Max Range (25): 420.00\" (was 300.00\") -> 205.00\""),
                               QStringLiteral("Min Range (24): 6.00\" (was 10.00\") -> 25.00\""),
                               QStringLiteral("Far Voltage (37): 0.22V -> 9.50V"),
                               QStringLiteral("Near Voltage (36): 0.11V -> 1.25V"),
                               QStringLiteral("Save Command (1):  -> saves all")}));
        // A value that the sensor has by now isn't written again.
        ASSERT_TRUE(sensor_->SetRegister(ParamDefines::FarVoltage, 950));
        EXPECT_TRUE(WaitUntil([&] { return Listed(wizard).size() == 7; }));
        Finish(wizard);
    });
    EXPECT_EQ(
        sensor_->Writes(),
        Joined(opened_, {{39, 1}, {29, 20000}, {28, 3000}, {25, 20500}, {24, 2500}, {36, 125}, {1, 1}}));
    EXPECT_EQ(Strip(), QString());
}

TEST_F(WizardTest, SaysWhichOfItsValuesTheSensorRefused) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        Refuse({29, 24});
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        Finish(wizard);
    });
    EXPECT_EQ(Strip(),
              QStringLiteral("2 of the wizard's values weren't taken. The sensor has Far Distance (29) "
                             "222.22\", not 200.00\"; Min Range (24) 6.00\", not 25.00\". Taken: Analog "
                             "Output Mode, Near Distance, Max Range, Far Voltage, Near Voltage."));
    ASSERT_TRUE(sensor_->SetRegister(ParamDefines::MinRange, 2500));
    EXPECT_TRUE(WaitUntil(
        [this] { return Strip().startsWith(QStringLiteral("The wizard's Far Distance wasn't taken. ")); }));
    Write(ParamDefines::FarDistance, 25000); // another value, which the sensor refuses, too
    dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_TRUE(Strip().contains(QStringLiteral("Far Distance (29) 222.22\", not 200.00\"")));
    Refuse({});
    Write(ParamDefines::FarDistance, 25000); // and takes
    EXPECT_TRUE(WaitUntil([this] { return Strip().isEmpty(); }));
}

TEST_F(WizardTest, ItsMessageGoesWithTheNextRunAndWhenItIsDismissed) {
    StartOnWizard();
    for (const bool dismiss : {true, false}) {
        RunWizard([this](const Form &wizard) {
            EXPECT_EQ(Strip(), QString());
            TakeDistanceRoute(wizard);
            Refuse({29});
            dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
            Finish(wizard, false);
        });
        EXPECT_TRUE(Strip().startsWith(QStringLiteral("The wizard's Far Distance wasn't taken. ")));
        Refuse({});
        if (dismiss) {
            Ui().Press("StripDismiss");
            EXPECT_TRUE(WaitUntil([this] { return Strip().isEmpty(); }));
            EXPECT_TRUE(WaitForPolls(2));
            EXPECT_EQ(Strip(), QString());
        }
    }
    WhenDialogOpens([this](QWidget &wizard) {
        EXPECT_EQ(wizard.objectName(), QStringLiteral("frmWizard"));
        EXPECT_EQ(Strip(), QString());
        wizard.close();
    });
    Ui().Press("StripWizard");
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Strip(), QString());
}

TEST_F(WizardTest, SaysWhatADeadSensorKeptOnceItAnswersAgain) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        for (int write = 3; write <= 8; ++write) {
            dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        }
        AfterWrites(2, [this] { sensor_->Execute(QStringLiteral("mute on")); });
        wizard.Press("cmdNav(4)");
        EXPECT_TRUE(WaitUntil([&] { return !wizard.Get<QWidget>("picNav").window()->isVisible(); }, 20'000));
    });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Strip(),
              QStringLiteral("5 of the wizard's values weren't taken. The sensor has Near Distance (28) "
                             "11.11\", not 30.00\"; Max Range (25) 420.00\", not 205.00\"; Min Range (24) "
                             "6.00\", not 25.00\"; Far Voltage (37) 0.22V, not 9.50V; Near Voltage (36) "
                             "0.11V, not 1.25V. Taken: Analog Output Mode, Far Distance."));
}

TEST_F(WizardTest, SaysThatTheRangeCouldNotBePutBack) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) { CancelOnADeadLine(wizard); });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Strip(), QStringLiteral("2 of the wizard's values weren't taken. The sensor has Min Range (24) "
                                      "6.00\", not 10.00\"; Max Range (25) 420.00\", not 300.00\"."));
}

TEST_F(WizardTest, ARangeThatIsStillBeingOpenedDoesNotHideThatItCouldNotBePutBack) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        AfterWrites(2, [this] { sensor_->Faults().exception = 4; });
        sensor_->Faults().latencyMs = 60;
        Next(wizard); // 24 is on the line, 25 waits
        EXPECT_TRUE(
            WaitUntil([this] { return form_->Zentrova().ParamWritePending(ParamDefines::MinRange); }));
        dialogs_.Expect(QStringLiteral("Are you sure?"), BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes,
                        {}, QStringLiteral("Cancel?"));
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), [this] { sensor_->Faults() = {}; });
        wizard.Press("cmdNav(1)");
    });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Register(ParamDefines::MinRange), 600);
    EXPECT_EQ(Strip(), QStringLiteral("The wizard's Min Range wasn't taken. The sensor has Min Range (24) "
                                      "6.00\", not 10.00\". Taken: Max Range."));
}

TEST_F(WizardTest, DoesNotSayOfAnotherSensorThatItRefusedTheValues) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) { CancelOnADeadLine(wizard); });
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    Ui().Choose("Toolbar1(Offline)");
    ASSERT_TRUE(sensor_->SetRegister(ParamDefines::SerialNumber, 777)); // another one in its place
    sensor_->Execute(QStringLiteral("mute off"));
    GoOnline();
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(Strip(), QString());
}

TEST_F(WizardTest, ItsMessageGoesWhenAllValuesAreReplacedOnPurpose) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        Refuse({29});
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"));
        Finish(wizard, false);
    });
    EXPECT_TRUE(Strip().startsWith(QStringLiteral("The wizard's Far Distance wasn't taken. ")));
    Refuse({});
    form_->GoOffline();
    Write(ParamDefines::FarDistance, 25000);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 25000);
    EXPECT_EQ(Strip(), QString());
}

TEST_F(WizardTest, AWriteWhoseReplyWasLostIsTaken) {
    StartOnWizard();
    RunWizard([this](const Form &wizard) {
        TakeDistanceRoute(wizard);
        AfterWrites(1, [this] { sensor_->Faults().drop = 1; });
        dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                              ApplicationTitle(), [this] { sensor_->Faults().drop = 0; });
        Finish(wizard, false);
    });
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 20000);
    EXPECT_EQ(Strip(), QString());
}

TEST_F(WizardTest, CanBeStartedOnlineOnly) {
    StartOnWizard();
    EXPECT_TRUE(Ui().Enabled("cmdStartWizard"));
    form_->GoOffline();
    EXPECT_FALSE(Ui().Enabled("cmdStartWizard"));
    GoOnline();
    EXPECT_TRUE(Ui().Enabled("cmdStartWizard"));
    // A press from before the link ended must open nothing afterwards.
    Ui().Get<QAbstractButton>("cmdStartWizard").click();
    form_->GoOffline();
    Settle();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace ztv
