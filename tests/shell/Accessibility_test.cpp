#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include "link/ui/FormReadWrite.h"
#include "setup/ui/frmWizard.h"

#include <QAccessible>
#include <QAction>
#include <QLineEdit>
#include <QProgressBar>
#include <QTabBar>
#include <QToolButton>
#include <algorithm>

namespace ztv {

// Checks what an assistive client sees of the forms.
class AccessibilityTest : public MainFormTest {
protected:
    AccessibilityTest() { QAccessible::setActive(true); }
    ~AccessibilityTest() override { QAccessible::setActive(false); }

    static QAccessibleInterface &Seen(QObject &object) {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&object);
        EXPECT_NE(interface, nullptr);
        return *interface;
    }

    static void ExpectAllNamed(QWidget &window) {
        for (QWidget *widget : window.findChildren<QWidget *>()) {
            if (widget->focusPolicy() == Qt::NoFocus || qobject_cast<QTabWidget *>(widget) != nullptr) {
                continue;
            }
            if (qobject_cast<QTabBar *>(widget) != nullptr ||
                widget->objectName().startsWith(QStringLiteral("qt_"))) {
                continue; // its tabs have the names
            }
            EXPECT_FALSE(Seen(*widget).text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
    }
};

TEST_F(AccessibilityTest, EachControlThatTakesTheFocusHasAName) {
    Start(QStringLiteral("/checkout"));
    ExpectAllNamed(*form_);
    FormReadWrite direction(form_->hHelp());
    ExpectAllNamed(direction);
    frmWizard wizard(form_->Zentrova(), dialogs_, form_->hHelp());
    ExpectAllNamed(wizard);
    EXPECT_EQ(Seen(Form(wizard).Get<QLabel>("LabelActualDistance(0)")).text(QAccessible::Name),
              QStringLiteral("---.--"));
}

TEST_F(AccessibilityTest, ValuesCanBeReadUnderTheCaptionBesideThem) {
    Start();
    for (int index = 0; index < 9; ++index) {
        auto &box = Ui().Get<QLineEdit>(qPrintable(QStringLiteral("TextParam(%1)").arg(index)));
        const QString label = Ui().Text(qPrintable(QStringLiteral("LabelParam(%1)").arg(index)));
        EXPECT_EQ(Seen(box).text(QAccessible::Name), label);
        EXPECT_EQ(Seen(box).text(QAccessible::Value), box.text());
        EXPECT_FALSE(box.text().isEmpty());
    }
    EXPECT_EQ(Seen(Ui().Get<QLabel>("LabelLargeLength")).text(QAccessible::Name), QStringLiteral("420.00\""));
    EXPECT_EQ(Seen(Ui().Get<QLabel>("StatusText")).text(QAccessible::Name),
              QStringLiteral("Communication Status: Offline"));
    auto &bar = Ui().Get<QProgressBar>("ProgressBar1");
    EXPECT_EQ(Seen(bar).text(QAccessible::Name), QStringLiteral("Actual Distance"));
    EXPECT_EQ(Seen(bar).valueInterface()->currentValue().toInt(), bar.value());
}

TEST_F(AccessibilityTest, ButtonsCanBePressed) {
    Start();
    QAccessibleInterface &exit = Seen(Ui().Get<QToolButton>("Exit"));
    ASSERT_NE(exit.actionInterface(), nullptr);
    exit.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    Settle();
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(AccessibilityTest, APressReturnsAtOnceThoughADialogOpens) {
    Start();
    bool returned = false;
    WhenDialogOpens([&returned](QWidget &dialog) {
        EXPECT_TRUE(returned);
        Form(dialog).Press("Cancel");
    });
    Seen(Ui().Get<QToolButton>("Online"))
        .actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    returned = true;
    Settle();
}

TEST_F(AccessibilityTest, TabsCanBeChosen) {
    Start();
    auto &bar = *Ui().Get<QTabWidget>("TabStrip1").tabBar();
    QAccessibleInterface &tabs = Seen(bar);
    bool found = false;
    for (int child = 0; child < tabs.childCount() && !found; ++child) {
        QAccessibleInterface *tab = tabs.child(child);
        if (tab != nullptr && tab->text(QAccessible::Name) == QStringLiteral("Distance")) {
            found = true;
            tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        }
    }
    EXPECT_TRUE(found);
    EXPECT_EQ(form_->CurrentTab(), 4);
}

} // namespace ztv
