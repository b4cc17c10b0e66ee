#include "support/ProgramVersion.h"
#include "tests/cli/CtlProgramTest.h"

namespace ztv {

TEST_F(CtlProgramTest, PrintsResultsAndMessagesApart) {
    EXPECT_EQ(Shell("$ctl --address 1,2 get 28"), static_cast<int>(ExitStatus::NoConnection));
    EXPECT_EQ(results_, "1    28   Near Distance  12.00\"\n");
    EXPECT_EQ(messages_, "ztv-ctl: address 2: Timeout\n");
}

TEST_F(CtlProgramTest, TellsAScriptHowItEnded) {
    EXPECT_EQ(Shell("$ctl get 28"), 0);
    EXPECT_EQ(Shell("$ctl get nothing"), 2);
    EXPECT_EQ(Shell("$ctl --address 9 get 28"), 3);
    sensor_->Execute(QStringLiteral("exception 2"));
    EXPECT_EQ(Shell("$ctl get 28"), 4);
}

TEST_F(CtlProgramTest, EndsQuietlyWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("$ctl get | head -n 1"), 0);
    EXPECT_EQ(results_, "1    Save Command                0\n");
    EXPECT_EQ(messages_, "");
}

TEST_F(CtlProgramTest, AClosedStreamTakesNothing) {
    EXPECT_EQ(Shell("$ctl get 28 <&- >&-"), 5);
    EXPECT_EQ(messages_, "ztv-ctl: The results can't be written: Bad file descriptor\n");
    EXPECT_EQ(Shell("$ctl get 28 <&- 2>&-"), 0);
    EXPECT_EQ(results_, "28   Near Distance  12.00\"\n");
}

TEST_F(CtlProgramTest, AMessageIsOneLineWhateverItNames) {
    EXPECT_EQ(Shell("$ctl get $'a\\nb\\e[2Jc'"), 2);
    EXPECT_EQ(messages_, "ztv-ctl: There is no parameter \"a?b?[2Jc\"; \"ztv-ctl parameters\" lists them\n");
}

TEST_F(CtlProgramTest, PrintsItsVersionAndTheHelpOfEachCommand) {
    EXPECT_EQ(Shell("$ctl --version"), 0);
    EXPECT_EQ(results_, "ztv-ctl " + ProgramVersion().toStdString() + "\n");
    for (const char *command : {"ports", "search", "info", "parameters", "get", "set", "save", "load", "diff",
                                "store", "reinit", "watch", "flash", "trace", "simulate"}) {
        EXPECT_EQ(Shell(("$ctl " + std::string(command) + " --help").c_str()), 0);
        EXPECT_NE(results_.find("Examples:\n  ztv-ctl "), std::string::npos) << command;
    }
}

} // namespace ztv
