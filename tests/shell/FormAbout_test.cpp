#include "shell/FormAbout.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

namespace ztv {

class FormAboutTest : public testing::Test {
protected:
    FormAboutTest() {
        form_.show();
        form_.activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_.isActiveWindow(); }));
    }

    static FormAbout::Contents Contents() {
        QPixmap logo(40, 30);
        logo.fill(Qt::red);
        return {.softwareVersion = QStringLiteral("1.2.3"),
                .firmwareVersion = QStringLiteral("2.14"),
                .bootVersion = QStringLiteral("1.00"),
                .processorId = QStringLiteral("3264"),
                .processorRevision = QStringLiteral("4"),
                .boardRevision = QStringLiteral("3"),
                .makersAddress = QStringLiteral("A street\nA town"),
                .makersLogo = logo};
    }
    void Click(Qt::KeyboardModifiers modifiers, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&ui_.Get<QToolButton>("Toolbar1(1)"), button, modifiers);
        Settle();
    }

    HelpOfForm help_;
    QStringList done_;
    FormAbout form_{Contents(),
                    {.showMakersPages = [this] { done_.append(QStringLiteral("pages")); },
                     .showMasterAbout = [this] { done_.append(QStringLiteral("master")); },
                     .startSysInfo = [this] { done_.append(QStringLiteral("system")); },
                     .addCheckoutTab = [this] { done_.append(QStringLiteral("tab")); }},
                    help_};
    Form ui_{form_};
};

TEST_F(FormAboutTest, ShowsWhatItIsGiven) {
    EXPECT_EQ(form_.windowTitle(), QStringLiteral("About ZTV Link"));
    const std::pair<const char *, QString> rows[] = {
        {"lblTitle", QStringLiteral("Zentrova")},
        {"lblCircleR", QString(QChar(174))},
        {"lblDescription",
         QStringLiteral("This software is designed to be used with Halvern's ZTV500-100 Zentrova "
                        "ultrasound ranging unit.")},
        {"lblSwVersion(0)", QStringLiteral("Software Version...................................")},
        {"lblSwVersion(1)", QStringLiteral("1.2.3")},
        {"lblFwVersion(0)", QStringLiteral("Firmware Version.................................")},
        {"lblFwVersion(1)", QStringLiteral("2.14")},
        {"lblBootVersion(0)", QStringLiteral("Boot Version.........................................")},
        {"lblBootVersion(1)", QStringLiteral("1.00")},
        {"lblProcID(0)", QStringLiteral("Processor ID.......................................")},
        {"lblProcID(1)", QStringLiteral("3264")},
        {"lblProcRevision(0)", QStringLiteral("Processor Revision...............................")},
        {"lblProcRevision(1)", QStringLiteral("4")},
        {"lblPCBRev(0)", QStringLiteral("PCB Revision......................................")},
        {"lblPCBRev(1)", QStringLiteral("3")},
        {"lblNotes", QStringLiteral("A street\nA town")},
        {"cmdMbaxpAbout", QStringLiteral("MBAXP Info...")},
        {"cmdSysInfo", QStringLiteral("&System Info...")},
        {"cmdOK", QStringLiteral("&OK")}};
    for (const auto &[name, text] : rows) {
        EXPECT_EQ(ui_.Text(name), text) << name;
    }
    EXPECT_FALSE(ui_.Get<QToolButton>("Picture1").icon().isNull());
}

TEST_F(FormAboutTest, LeadsToTheMakerTheMasterAndTheSystem) {
    ui_.Press("Picture1");
    ui_.Press("cmdMbaxpAbout");
    ui_.Press("cmdSysInfo");
    EXPECT_EQ(done_,
              QStringList({QStringLiteral("pages"), QStringLiteral("master"), QStringLiteral("system")}));
    EXPECT_TRUE(form_.isVisible());
    ui_.Press("cmdOK");
    EXPECT_FALSE(form_.isVisible());
}

// For example, the second press of a double click.
TEST_F(FormAboutTest, APressBehindAnOpenBoxIsNone) {
    QDialog box(&form_);
    box.setModal(true);
    ui_.Get<QPushButton>("cmdMbaxpAbout").click();
    box.show();
    for (const char *name : {"Picture1", "cmdSysInfo", "cmdOK"}) {
        ui_.Get<QAbstractButton>(name).click();
    }
    Settle();
    EXPECT_EQ(done_, QStringList());
    box.hide();
    EXPECT_TRUE(form_.isVisible());
    ui_.Press("cmdSysInfo");
    EXPECT_EQ(done_, QStringList{QStringLiteral("system")});
}

TEST_F(FormAboutTest, ClosesByEnterAndByEscape) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        form_.show();
        QTest::keyClick(&form_, key);
        Settle();
        EXPECT_FALSE(form_.isVisible());
    }
    EXPECT_EQ(done_, QStringList());
}

TEST_F(FormAboutTest, EnterPressesTheButtonWithTheFocus) {
    auto &button = ui_.Get<QPushButton>("cmdSysInfo");
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Return);
    Settle();
    EXPECT_EQ(done_, QStringList{QStringLiteral("system")});
    EXPECT_TRUE(form_.isVisible());
}

TEST_F(FormAboutTest, BringsTheTabBackOnAClickWithCtrlAlone) {
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier),
          Qt::KeyboardModifiers(Qt::AltModifier), Qt::ControlModifier | Qt::ShiftModifier,
          Qt::ControlModifier | Qt::AltModifier, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier}) {
        Click(modifiers);
        EXPECT_EQ(done_, QStringList()) << modifiers.toInt();
    }
    Click(Qt::ControlModifier);
    EXPECT_EQ(done_, QStringList{QStringLiteral("tab")});
}

// The keyboard's state at the press counts.
TEST_F(FormAboutTest, KeepsTheStateOfThePress) {
    auto &button = ui_.Get<QToolButton>("Toolbar1(1)");
    QTest::mousePress(&button, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(ui_.Get<QToolBar>("Toolbar1").property("Tag").toInt(), 2);
    QTest::mouseRelease(&button, Qt::LeftButton);
    Settle();
    EXPECT_EQ(done_, QStringList{QStringLiteral("tab")});
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_EQ(ui_.Get<QToolBar>("Toolbar1").property("Tag").toInt(), 0);
    QTest::mouseRelease(&button, Qt::LeftButton, Qt::ControlModifier);
    Settle();
    EXPECT_EQ(done_.size(), 1);
}

TEST_F(FormAboutTest, ShowsItsTopicOnF1) {
    QTest::keyClick(&form_, Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(FormAbout::HelpContextID, form_));
}

TEST_F(FormAboutTest, NamesWhatCanBePressed) {
    for (const QAbstractButton *button : form_.findChildren<QAbstractButton *>()) {
        if (!button->objectName().startsWith(QStringLiteral("qt_"))) {
            EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
        }
    }
}

} // namespace ztv
