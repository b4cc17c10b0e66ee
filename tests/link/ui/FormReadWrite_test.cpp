#include "link/ui/FormReadWrite.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"

#include <QLabel>
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

TEST(FormReadWriteTest, ExplainsItsAnswersAndReadsThemOutWithTheButtons) {
    const DirectionText text{.question = QStringLiteral("Which values count?"),
                             .read = QStringLiteral("Reads %1 <b>"),
                             .lostOnRead = {},
                             .write = QStringLiteral("Writes"),
                             .lostOnWrite = QStringLiteral("Loses much. ").repeated(20).trimmed()};
    HelpOfForm help;
    FormReadWrite form(help);
    form.Explain(text);
    form.show();
    const Form ui(form);
    EXPECT_EQ(ui.Text("LabelQuestion"), text.question);
    EXPECT_EQ(ui.Text("LabelRead"), text.read);
    EXPECT_EQ(ui.Text("LabelWrite"), text.write);
    EXPECT_TRUE(ui.Text("LabelLostOnWrite").endsWith(text.lostOnWrite));
    EXPECT_EQ(form.findChild<QLabel *>(QStringLiteral("LabelLostOnRead")), nullptr);
    EXPECT_EQ(ui.Get<QToolButton>("Read").accessibleDescription(), text.read);
    EXPECT_EQ(ui.Get<QToolButton>("Write").accessibleDescription(), text.write + u' ' + text.lostOnWrite);
    for (const QLabel *label : form.findChildren<QLabel *>()) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
            << label->objectName().toStdString();
        EXPECT_TRUE(form.rect().contains(label->geometry())) << label->objectName().toStdString();
    }
    EXPECT_EQ(form.focusWidget(), &ui.Get<QWidget>("Read"));
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
