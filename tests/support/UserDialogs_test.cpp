#include "support/UserDialogs.h"

#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(UserDialogsTest, WarnsUnderTheProgramsTitleOrAnother) {
    ScriptedDialogs dialogs;
    dialogs.Expect(QStringLiteral("It leaks."), BoxIcon::Exclamation, BoxButtons::Ok, BoxAnswer::Ok);
    Warn(dialogs, QStringLiteral("It leaks."));
    dialogs.Expect(QStringLiteral("It leaks."), BoxIcon::Exclamation, BoxButtons::Ok, BoxAnswer::Ok, {},
                   QStringLiteral("Water"));
    Warn(dialogs, QStringLiteral("It leaks."), QStringLiteral("Water"));
    EXPECT_TRUE(dialogs.AllCame());
}

TEST(UserDialogsTest, ConfirmsOnlyByYes) {
    ScriptedDialogs dialogs;
    for (const auto &[answer, confirmed] :
         {std::pair(BoxAnswer::Yes, true), std::pair(BoxAnswer::No, false)}) {
        for (const QString &title : {ApplicationTitle(), QStringLiteral("Cancel?")}) {
            dialogs.Expect(QStringLiteral("Sure?"), BoxIcon::Question, BoxButtons::YesNo, answer, {}, title);
            EXPECT_EQ(Confirm(dialogs, QStringLiteral("Sure?"), title), confirmed);
        }
    }
    dialogs.Expect(QStringLiteral("Sure?"), BoxIcon::Question, BoxButtons::YesNo, BoxAnswer::Yes);
    EXPECT_TRUE(Confirm(dialogs, QStringLiteral("Sure?")));
    EXPECT_TRUE(dialogs.AllCame());
}

} // namespace ztv
