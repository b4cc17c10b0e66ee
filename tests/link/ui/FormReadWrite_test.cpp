#include "link/ui/FormReadWrite.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"

#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace ztv {

namespace {

ConnectChoice ChoiceAfter(const std::function<void(QWidget &)> &gesture) {
    HelpOfForm help;
    FormReadWrite form(help);
    WhenDialogOpens(gesture);
    form.exec();
    return form.Choice();
}

} // namespace

TEST(FormReadWriteTest, AsksWithThreeButtons) {
    HelpOfForm help;
    FormReadWrite form(help);
    const Form ui(form);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("ZTV Link"));
    const char *rows[][3] = {{"Read", "&Read", "Read parameters from ZTV-5000"},
                             {"Write", "&Write", "Write parameters to ZTV-5000"},
                             {"Cancel", "&Cancel", "Cancel and stay offline"}};
    for (const auto &row : rows) {
        auto &button = ui.Get<QToolButton>(row[0]);
        EXPECT_EQ(button.text(), QString::fromLatin1(row[1]));
        EXPECT_EQ(button.toolTip(), QString::fromLatin1(row[2]));
        EXPECT_EQ(button.accessibleName(), QString::fromLatin1(row[0]));
        EXPECT_FALSE(button.icon().isNull());
    }
}

TEST(FormReadWriteTest, TellsWhatWasClicked) {
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { Form(form).Press("Read"); }), ConnectChoice::Read);
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { Form(form).Press("Write"); }), ConnectChoice::Write);
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { Form(form).Press("Cancel"); }), ConnectChoice::Cancel);
}

TEST(FormReadWriteTest, TakesClosingAndEscapeForCancel) {
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { form.close(); }), ConnectChoice::Cancel);
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { QTest::keyClick(&form, Qt::Key_Escape); }),
              ConnectChoice::Cancel);
}

TEST(FormReadWriteTest, CanBeAnsweredByTheKeyboardAlone) {
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { QTest::keyClick(form.focusWidget(), Qt::Key_Return); }),
              ConnectChoice::Read);
    EXPECT_EQ(ChoiceAfter([](QWidget &form) {
                  QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
                  QTest::keyClick(form.focusWidget(), Qt::Key_Space);
              }),
              ConnectChoice::Write);
    EXPECT_EQ(ChoiceAfter([](QWidget &form) { QTest::keyClick(&form, Qt::Key_C, Qt::AltModifier); }),
              ConnectChoice::Cancel);
}

} // namespace ztv
