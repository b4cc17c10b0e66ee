#include "widgets/WhyDisabled.h"

#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPushButton>
#include <QToolTip>
#include <gtest/gtest.h>

namespace ztv {

class WhyDisabledTest : public testing::Test {
protected:
    WhyDisabledTest() { button_.setToolTip(QStringLiteral("Sends it")); }
    ~WhyDisabledTest() override { QToolTip::hideText(); }

    // Asks for the tool tip at a place, as a resting pointer does, and returns what shows.
    static QString TipAt(QWidget &widget, QPoint place) {
        widget.show();
        QToolTip::hideText();
        EXPECT_TRUE(WaitUntil([] { return QToolTip::text().isEmpty(); }));
        QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
        QApplication::sendEvent(&widget, &event);
        return QToolTip::text();
    }

    QPushButton button_;
};

TEST_F(WhyDisabledTest, AddsTheReasonWhileDisabledAndLeavesTheTipItself) {
    WhyDisabled::Explain(button_, QStringLiteral("Go online first."));
    EXPECT_EQ(TipAt(button_, QPoint(1, 1)), QStringLiteral("Sends it"));
    EXPECT_EQ(button_.accessibleDescription(), QString());
    button_.setEnabled(false);
    EXPECT_EQ(TipAt(button_, QPoint(1, 1)), QStringLiteral("Sends it\nGo online first."));
    EXPECT_EQ(button_.toolTip(), QStringLiteral("Sends it"));
    EXPECT_EQ(button_.accessibleDescription(), QStringLiteral("Go online first."));
    button_.setToolTip(QStringLiteral("Sends all"));
    EXPECT_EQ(TipAt(button_, QPoint(1, 1)), QStringLiteral("Sends all\nGo online first."));
    button_.setEnabled(true);
    EXPECT_EQ(TipAt(button_, QPoint(1, 1)), QStringLiteral("Sends all"));
    EXPECT_EQ(button_.accessibleDescription(), QString());
}

TEST_F(WhyDisabledTest, TheReasonCanChangeWhileDisabled) {
    button_.setEnabled(false);
    WhyDisabled::Explain(button_, QStringLiteral("Go online first."));
    WhyDisabled::Explain(button_, QStringLiteral("Enter a port number first."));
    EXPECT_EQ(WhyDisabled::TipOf(button_), QStringLiteral("Sends it\nEnter a port number first."));
    EXPECT_EQ(button_.accessibleDescription(), QStringLiteral("Enter a port number first."));
    WhyDisabled::Explain(button_, QString());
    EXPECT_EQ(WhyDisabled::TipOf(button_), QStringLiteral("Sends it"));
}

TEST_F(WhyDisabledTest, ADisabledEntryOfAMenuSaysWhy) {
    QMenu menu;
    QAction *entry = menu.addAction(QStringLiteral("Open"));
    QAction *other = menu.addAction(QStringLiteral("Exit"));
    WhyDisabled::Explain(menu, *entry, QStringLiteral("There is none."));
    menu.popup(QPoint(10, 10));
    const auto tip = [&](QAction *of) { return TipAt(menu, menu.actionGeometry(of).center()); };
    EXPECT_EQ(tip(entry), QString());
    entry->setEnabled(false);
    EXPECT_EQ(tip(entry), QStringLiteral("There is none."));
    EXPECT_EQ(tip(other), QString());
}

} // namespace ztv
