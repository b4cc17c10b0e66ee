#include "shell/TabFrames.h"
#include "shell/WindowPlacement.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"
#include "widgets/PageScale.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace ztv {

namespace {

const QSize least(680, 596);
const QSize sizes[] = {least, {900, 700}, {700, 900}, {1366, 768}, {1920, 1080}, {2560, 1440}};

} // namespace

class PageSizesTest : public MainFormTest {
protected:
    void StartAt(const QSize &size) {
        if (!form_) {
            Start(QStringLiteral("/CHECKOUT"));
            form_->setMinimumSize(0, 0); // a screen of any size
        }
        form_->resize(size);
        Settle();
    }

    QTabWidget &Strip() { return Ui().Get<QTabWidget>("TabStrip1"); }
    TabPage &Page(int number) {
        Strip().setCurrentIndex(number - 1);
        Settle();
        return Ui().Get<TabPage>(qPrintable(QStringLiteral("TabFrame(%1)").arg(number)));
    }
    int Pixels(const char *name) { return QFontInfo(Ui().Get<QWidget>(name).font()).pixelSize(); }
    int DesktopPixels() { return QFontInfo(form_->font()).pixelSize(); }
};

TEST_F(PageSizesTest, EachPageScalesByTheSmallerOfItsWidthAndHeight) {
    for (const QSize &size : sizes) {
        StartAt(size);
        const double pageWidth = size.width() - 50;
        const double pageHeight = (size.height() * 15 - 3100) / 15.0;
        for (const int number : {1, 2, 3, 4, 5}) {
            const TabPage &page = Page(number);
            EXPECT_NEAR(page.width(), pageWidth, 1);
            EXPECT_NEAR(page.height(), pageHeight, 1);
            const double factor = std::clamp(std::min(pageWidth / 630, pageHeight / 389), 0.7, 3.0);
            EXPECT_NEAR(page.Scale().Factor(), factor, 0.005) << size.width() << " " << number;
        }
    }
    StartAt(least);
    EXPECT_EQ(Page(1).Scale().Factor(), 1);
    EXPECT_EQ(Page(1).size(), PageScale::LeastPage);
}

TEST_F(PageSizesTest, NoPageCutsATextOff) {
    for (const QSize &size : sizes) {
        StartAt(size);
        for (const int number : {1, 3, 4, 5}) {
            TabPage &page = Page(number);
            for (QWidget *widget : page.findChildren<QWidget *>()) {
                SCOPED_TRACE(widget->objectName().toStdString() + " " + std::to_string(size.width()));
                const bool isLabel = qobject_cast<QLabel *>(widget) != nullptr;
                const bool isLarge = widget->objectName().contains(QStringLiteral("Large")) ||
                                     widget->objectName() == QStringLiteral("LabelDist");
                if (!widget->isVisible() || isLarge || widget->objectName().isEmpty()) {
                    continue;
                }
                if (qobject_cast<QAbstractButton *>(widget) != nullptr) {
                    EXPECT_GE(widget->width(), widget->sizeHint().width());
                    EXPECT_GE(widget->height(), widget->fontMetrics().height());
                } else if (isLabel && !static_cast<QLabel *>(widget)->wordWrap()) {
                    const QString text = static_cast<QLabel *>(widget)->text();
                    EXPECT_GE(widget->width(), widget->fontMetrics().size(0, text).width());
                } else if (auto *box = qobject_cast<QLineEdit *>(widget)) {
                    EXPECT_GE(box->width() - 4, box->fontMetrics().horizontalAdvance(box->text()));
                }
            }
        }
    }
}

TEST_F(PageSizesTest, TextsAndPicturesGrowWithThePage) {
    StartAt(least);
    Page(5);
    const int before = Pixels("OptionAnalogOut(0)");
    const int indicator = Ui().Get<QWidget>("ImageNoEcho").width();
    const int relay = Ui().Get<QWidget>("imgRelay(0)").width();
    EXPECT_EQ(indicator, 22);
    EXPECT_EQ(relay, 46);
    for (const QSize &size : sizes) {
        StartAt(size);
        const double factor = Page(5).Scale().Factor();
        EXPECT_GE(Pixels("OptionAnalogOut(0)"), static_cast<int>(before * factor) - 2) << size.width();
        EXPECT_NEAR(Ui().Get<QWidget>("ImageNoEcho").width(), 22 * factor, 1);
        EXPECT_NEAR(Ui().Get<QWidget>("imgRelay(0)").width(), 40 * factor + 6, 1);
        Page(3);
        EXPECT_NEAR(Pixels("lblWizDesc"), DesktopPixels() * factor, 1);
        EXPECT_NEAR(Pixels("cmdStartWizard"), DesktopPixels() * factor, 1);
        Page(4);
        EXPECT_NEAR(Pixels("Label1"), DesktopPixels() * factor, 1);
        EXPECT_NEAR(Ui().Get<QWidget>("ProgressBar1").height(), 28 * factor, 1);
    }
    StartAt(least);
    Page(5);
    EXPECT_EQ(Pixels("OptionAnalogOut(0)"), before);
    EXPECT_EQ(Ui().Get<QWidget>("ImageNoEcho").width(), indicator);
    EXPECT_EQ(Ui().Get<QWidget>("imgRelay(0)").width(), relay);
    Page(4);
    EXPECT_EQ(Pixels("Label1"), DesktopPixels());
    EXPECT_EQ(Ui().Get<QWidget>("ProgressBar1").height(), 28);
}

// The largest that fits into the smallest window, by whatever way the page came to its size.
TEST_F(PageSizesTest, TheCheckoutPageKeepsALargeFontAsFarAsItFits) {
    const QFont usual = QApplication::font();
    for (const int points : {12, 14, 18, 24}) {
        QFont large = usual;
        large.setPointSize(points);
        QApplication::setFont(large);
        StartAt(least);
        for (const QSize &size : {least, QSize(1366, 768), least, QSize(700, 900), least}) {
            StartAt(size);
            const TabPage &page = Page(5);
            const QSize content = page.layout()->totalMinimumSize();
            EXPECT_LE(content.width(), page.width()) << points;
            EXPECT_LE(content.height(), page.height()) << points;
            EXPECT_GE(Pixels("OptionAnalogOut(0)"), 14) << points << " " << size.width();
        }
        form_.reset();
    }
    QApplication::setFont(usual);
}

TEST_F(PageSizesTest, AWindowWithoutTheLeastRoomKeepsPageBandAndStatusBar) {
    for (const QSize &size : {QSize(476, 417), QSize(906, 453), QSize(956, 470), QSize(680, 450)}) {
        StartAt(size);
        SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()));
        EXPECT_EQ(form_->size(), size);
        EXPECT_LE(form_->statusBar()->geometry().bottom(), size.height() - 1);
        EXPECT_GT(form_->statusBar()->height(), 10);
        for (const int number : {1, 2, 3, 4, 5}) {
            const TabPage &page = Page(number);
            EXPECT_GE(page.Scale().Factor(), 0.7);
            EXPECT_GE(page.width(), 440);
            EXPECT_GE(page.height(), 272);
            EXPECT_TRUE(form_->centralWidget()->rect().contains(page.geometry()));
            EXPECT_TRUE(Strip().geometry().contains(page.geometry()));
            EXPECT_GE(form_->findChild<TabFrames *>()->Band().height(), 15);
        }
    }
    // And with its room back, everything is where it was.
    StartAt(least);
    EXPECT_EQ(Page(1).geometry(), QRect(25, 32, 630, 389));
    EXPECT_EQ(Strip().geometry(), QRect(8, 10, 657, 443));
}

// The Advanced list. ---------------------------------------------------------------------------------

TEST_F(PageSizesTest, TheColumnsHaveTheirGivenWidthsInTheLeastWindow) {
    StartAt(least);
    Page(2);
    const auto &list = Ui().Get<QTreeView>("ListView1");
    const int widths[] = {63, 279, 132, 170};
    for (const QSize &size : {least, QSize(476, 417), least, QSize(900, 700), least}) {
        StartAt(size);
        for (int column = 0; size != QSize(476, 417) && column < 4; ++column) {
            EXPECT_EQ(list.columnWidth(column), widths[column]) << size.width() << " " << column;
        }
    }
    EXPECT_TRUE(list.horizontalScrollBar()->isVisible());
    EXPECT_EQ(list.viewport()->size(), QSize(594, 295));
}

TEST_F(PageSizesTest, ASmallerOrLargerListNeedsNoHorizontalScrollBar) {
    StartAt({476, 417});
    Page(2);
    auto &list = Ui().Get<QTreeView>("ListView1");
    for (const QSize &size : {QSize(476, 417), QSize(1000, 800), QSize(1366, 768), QSize(2560, 1440)}) {
        StartAt(size);
        EXPECT_FALSE(list.horizontalScrollBar()->isVisible()) << size.width();
        EXPECT_LE(list.header()->length(), list.viewport()->width());
    }
}

TEST_F(PageSizesTest, TheColumnsShareAWideList) {
    for (const QSize &size : {QSize(1366, 768), QSize(1920, 1080), QSize(2560, 1440)}) {
        StartAt(size);
        Page(2);
        auto &list = Ui().Get<QTreeView>("ListView1");
        EXPECT_GE(list.header()->length(), list.viewport()->width() - 4);
        EXPECT_LE(list.header()->length(), list.viewport()->width());
        for (const int column : {0, 2, 3}) {
            EXPECT_GT(list.columnWidth(1), list.columnWidth(column));
        }
    }
    auto &list = Ui().Get<QTreeView>("ListView1");
    list.header()->resizeSection(1, 321); // as the user does
    StartAt({1600, 900});
    EXPECT_EQ(list.columnWidth(1), 321) << "a width that the user set stays";
}

TEST_F(PageSizesTest, AnEditorStaysOverItsCellWhileTheListGetsOtherColumns) {
    StartAt({1366, 768});
    Page(2);
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &list = Ui().Get<QTreeView>("ListView1");
    const auto &text1 = Ui().Get<QLineEdit>("Text1");
    list.setFocus();
    list.setCurrentIndex(list.model()->index(20, 0)); // Transmit Delay Low
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_TRUE(text1.isVisible());
    for (const QSize &size : {QSize(1500, 900), QSize(1000, 800), QSize(1920, 1080)}) {
        StartAt(size);
        ASSERT_TRUE(text1.isVisible());
        const QRect cell = list.visualRect(list.model()->index(20, 2));
        const QPoint corner = list.viewport()->mapTo(text1.parentWidget(), cell.topLeft());
        EXPECT_NEAR(text1.x(), corner.x(), 2);
        EXPECT_EQ(text1.y(), corner.y());
        EXPECT_EQ(text1.width(), cell.width() + 1);
    }
}

// Full screen. ---------------------------------------------------------------------------------------

TEST_F(PageSizesTest, F11FillsTheScreenAndReturns) {
    Start();
    form_->resize(700, 620);
    form_->move(30, 40);
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    QTest::keyClick(form_.get(), Qt::Key_F11);
    EXPECT_TRUE(WaitUntil([this] { return form_->isFullScreen(); }));
    EXPECT_TRUE(form_->statusBar()->isVisible());
    QTest::keyClick(form_.get(), Qt::Key_F11);
    EXPECT_TRUE(WaitUntil([this] { return !form_->isFullScreen(); }));
    EXPECT_EQ(form_->size(), QSize(700, 620));
    EXPECT_EQ(form_->pos(), QPoint(30, 40));
}

TEST_F(PageSizesTest, F11ThatIsHeldDownFillsTheScreenOnce) {
    Start();
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    for (const bool repeated : {false, true, true, true}) {
        QTest::simulateEvent(form_.get(), true, Qt::Key_F11, Qt::NoModifier, QString(), repeated);
        Settle();
        EXPECT_TRUE(form_->isFullScreen());
    }
}

TEST_F(PageSizesTest, AWindowThatFillsTheScreenIsStoredAsItWasBefore) {
    for (const bool maximised : {false, true}) {
        Start();
        form_->resize(700, 620);
        form_->move(30, 40);
        if (maximised) {
            form_->showMaximized();
        }
        form_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
        QTest::keyClick(form_.get(), Qt::Key_F11);
        EXPECT_TRUE(WaitUntil([this] { return form_->isFullScreen(); }));
        form_->close();
        Start();
        EXPECT_FALSE(form_->isFullScreen());
        EXPECT_EQ(form_->isMaximized(), maximised);
        if (!maximised) {
            EXPECT_EQ(form_->size(), QSize(700, 620));
            EXPECT_EQ(form_->pos(), QPoint(30, 40));
        }
        form_.reset();
    }
}

// The desktop has commands of its own that fill the screen.
TEST_F(PageSizesTest, AWindowThatTheDesktopMadeFillTheScreenKeepsItsStoredPlace) {
    Start();
    form_->resize(700, 620);
    form_->move(30, 40);
    form_->close();
    Start();
    form_->showFullScreen();
    Settle();
    form_->close();
    Start();
    EXPECT_FALSE(form_->isFullScreen());
    EXPECT_EQ(form_->size(), QSize(700, 620));
    EXPECT_EQ(form_->pos(), QPoint(30, 40));

    // Also after F11 was used for another place.
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    for (const bool fills : {true, false}) {
        QTest::keyClick(form_.get(), Qt::Key_F11);
        EXPECT_TRUE(WaitUntil([&] { return form_->isFullScreen() == fills; }));
    }
    form_->resize(720, 640);
    form_->close();
    Start();
    form_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    EXPECT_EQ(form_->size(), QSize(720, 640));
    for (const bool fills : {true, false}) {
        QTest::keyClick(form_.get(), Qt::Key_F11);
        EXPECT_TRUE(WaitUntil([&] { return form_->isFullScreen() == fills; }));
    }
    form_->resize(740, 650);
    form_->showFullScreen();
    Settle();
    form_->close();
    Start();
    EXPECT_EQ(form_->size(), QSize(720, 640)) << "the last that was stored";
}

} // namespace ztv
