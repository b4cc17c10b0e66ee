#include "shell/MessageStrip.h"

#include "tests/helpers/AllForms.h"
#include "tests/helpers/Printers.h"
#include "widgets/Colours.h"

#include <QFontInfo>
#include <QPushButton>
#include <QTest>

namespace ztv {

class MessageStripTest : public testing::Test {
protected:
    MessageStripTest() {
        window_.resize(640, 37);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        strip_.setGeometry(0, 0, 640, 33);
        QObject::connect(&strip_, &MessageStrip::Pressed,
                         [this](StripAction action) { pressed_.push_back(action); });
    }
    static StripMessage NoAnswer(const char *headline) {
        return {.kind = StripMessage::Kind::NoAnswer,
                .severity = StripMessage::Severity::Alarm,
                .headline = QString::fromLatin1(headline),
                .detail = QStringLiteral("Address 1 on port 1 (/dev/ttyUSB0), 38400 N2"),
                .actions = {StripAction::Search, StripAction::GoOffline}};
    }

    QString Text(const char *name) { return Form(window_).Text(name); }

    QWidget window_;
    MessageStrip strip_{&window_};
    std::vector<StripAction> pressed_;
};

TEST_F(MessageStripTest, IsHiddenWhileAllIsWell) {
    EXPECT_TRUE(strip_.isHidden());
    strip_.Show(NoAnswer("No answer for 3 s"));
    EXPECT_TRUE(strip_.isVisible());
    strip_.Show(std::nullopt);
    EXPECT_TRUE(strip_.isHidden());
}

TEST_F(MessageStripTest, ShowsTheMessageAndItsButtonsInOrder) {
    strip_.Show(NoAnswer("No answer for 3 s"));
    EXPECT_EQ(Text("StripHeadline"), QStringLiteral("No answer for 3 s"));
    EXPECT_EQ(Text("StripDetail"), QStringLiteral("Address 1 on port 1 (/dev/ttyUSB0), 38400 N2"));
    auto &search = Form(window_).Get<QPushButton>("StripSearch");
    auto &offline = Form(window_).Get<QPushButton>("StripOffline");
    EXPECT_LT(search.x(), offline.x());
    QTest::mouseClick(&offline, Qt::LeftButton);
    QTest::mouseClick(&search, Qt::LeftButton);
    Settle();
    EXPECT_EQ(pressed_, (std::vector{StripAction::GoOffline, StripAction::Search}));
}

TEST_F(MessageStripTest, KeepsItsButtonsWhileTheTimeGoesOn) {
    strip_.Show(NoAnswer("No answer for 3 s"));
    auto &search = Form(window_).Get<QPushButton>("StripSearch");
    search.setFocus();
    strip_.Show(NoAnswer("No answer for 4 s"));
    EXPECT_EQ(Text("StripHeadline"), QStringLiteral("No answer for 4 s"));
    EXPECT_EQ(&Form(window_).Get<QPushButton>("StripSearch"), &search);
    EXPECT_TRUE(search.hasFocus());
}

TEST_F(MessageStripTest, TakesNoFocusWhenItComes) {
    QPushButton other(&window_);
    other.show();
    other.setFocus();
    strip_.Show(NoAnswer("No answer for 3 s"));
    Settle();
    EXPECT_TRUE(other.hasFocus());
}

TEST_F(MessageStripTest, HasTheWholeMessageAsItsNameForAssistiveClients) {
    strip_.Show(NoAnswer("No answer for 3 s"));
    EXPECT_EQ(strip_.accessibleName(),
              QStringLiteral("No answer for 3 s. Address 1 on port 1 (/dev/ttyUSB0), 38400 N2."));
    strip_.Show(NoAnswer("No answer for 4 s"));
    EXPECT_TRUE(strip_.accessibleName().startsWith(QStringLiteral("No answer for 4 s. ")));
}

TEST_F(MessageStripTest, ElidesWhatDoesNotFitAndHasItInTheToolTip) {
    StripMessage message = NoAnswer("No answer for 3 s");
    message.detail = QString(400, u'x');
    strip_.Show(message);
    EXPECT_EQ(window_.width(), 640);
    EXPECT_EQ(strip_.width(), 640);
    EXPECT_LT(Text("StripDetail").size(), 400);
    EXPECT_TRUE(strip_.toolTip().contains(message.detail));
    EXPECT_TRUE(strip_.accessibleName().contains(message.detail));
    strip_.resize(5000, 33);
    EXPECT_EQ(Text("StripDetail"), message.detail);
}

TEST_F(MessageStripTest, IsOneLargeLineWhereThereIsRoomForIt) {
    strip_.Show(NoAnswer("No answer for 3 s"));
    const QFont usual = Form(window_).Get<QWidget>("StripHeadline").font();
    EXPECT_TRUE(Form(window_).Get<QWidget>("StripDetail").isVisible());
    strip_.resize(1850, 33);
    const auto &headline = Form(window_).Get<QWidget>("StripHeadline");
    EXPECT_FALSE(Form(window_).Get<QWidget>("StripDetail").isVisible());
    EXPECT_GE(QFontInfo(headline.font()).pixelSize(), 24);
    EXPECT_LE(headline.fontMetrics().height(), 33);
    EXPECT_EQ(Text("StripHeadline"),
              QStringLiteral("No answer for 3 s. Address 1 on port 1 (/dev/ttyUSB0), 38400 N2"));
    EXPECT_LE(strip_.sizeHint().height(), 33);
    const QFont large = headline.font();
    strip_.Show(NoAnswer("No answer for 1234 s"));
    EXPECT_EQ(headline.font(), large) << "doesn't jump while the time goes on";
    EXPECT_EQ(Text("StripHeadline"),
              QStringLiteral("No answer for 1234 s. Address 1 on port 1 (/dev/ttyUSB0), 38400 N2"));
    strip_.resize(640, 33);
    EXPECT_EQ(headline.font(), usual);
    EXPECT_TRUE(Form(window_).Get<QWidget>("StripDetail").isVisible());
    EXPECT_EQ(Text("StripHeadline"), QStringLiteral("No answer for 1234 s"));
}

TEST_F(MessageStripTest, CutsNoTextOffInALowWindow) {
    strip_.setFont([this] {
        QFont large = strip_.font();
        large.setPixelSize(19);
        return large;
    }());
    strip_.Show(NoAnswer("No answer for 3 s"));
    for (const int height : {33, 20, 14}) {
        strip_.resize(640, height);
        for (const char *name : {"StripHeadline", "StripSearch"}) {
            EXPECT_LE(Form(window_).Get<QWidget>(name).fontMetrics().height(), height) << name;
        }
    }
}

TEST_F(MessageStripTest, IsLegibleOnEachDesktop) {
    for (const Desktop &desktop : {light, dark}) {
        SCOPED_TRACE(desktop.name);
        const OnDesktop on(desktop);
        for (const auto severity :
             {StripMessage::Severity::Alarm, StripMessage::Severity::Warning, StripMessage::Severity::Note}) {
            StripMessage message = NoAnswer("No answer");
            message.severity = severity;
            strip_.Show(std::nullopt);
            strip_.Show(message);
            const QPalette palette = Form(window_).Get<QWidget>("StripHeadline").palette();
            EXPECT_GE(Colours::Contrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window)),
                      4.5);
        }
    }
}

} // namespace ztv
