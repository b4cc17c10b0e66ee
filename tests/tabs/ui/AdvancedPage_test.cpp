#include "tabs/ui/AdvancedPage.h"

#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tabs/ParameterEditors.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/MainForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>
#include <QToolTip>

namespace ztv {

// The Advanced tab in the main form, driven with mouse and keyboard.
class AdvancedPageTest : public MainFormTest {
protected:
    using Column = ParameterListModel::Column;

    void StartOnTab(const QString &commandText = {}) {
        Start(commandText);
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow(); }));
        ClickTab(1);
        EXPECT_EQ(form_->CurrentTab(), 2);
    }
    void ClickTab(int index) {
        QTabBar *bar = Ui().Get<QTabWidget>("TabStrip1").tabBar();
        ClickInWindow(*bar, bar->tabRect(index).center());
    }

    ParameterList &List() const { return Ui().Get<ParameterList>("ListView1"); }
    const ParameterListModel &Model() const { return dynamic_cast<ParameterListModel &>(*List().model()); }
    ValueOverlay &Text1() const { return Ui().Get<ValueOverlay>("Text1"); }
    ChoiceOverlay &Combo1() const { return Ui().Get<ChoiceOverlay>("Combo1"); }
    int Value(std::int16_t tag) const { return form_->Zentrova().ParamValue(tag); }
    void Poll(std::int16_t tag, std::int32_t raw) {
        form_->Zentrova().ParamUpdate(tag, raw);
        form_->UpdateDisplay();
    }
    QString Shown(std::int16_t tag) const { return Model().Text(*Model().RowOf(tag), Column::Value); }

    // Sends the key through the window, as the window system does.
    void ClickInWindow(QWidget &widget, const QPoint &at) {
        QTest::mouseClick(form_->windowHandle(), Qt::LeftButton, {}, widget.mapTo(form_.get(), at));
        Settle();
    }
    void DoubleClickAt(const QPoint &at) {
        QTest::mouseDClick(form_->windowHandle(), Qt::LeftButton, {},
                           List().viewport()->mapTo(form_.get(), at));
        Settle();
    }
    void DoubleClick(std::int16_t tag, Column column = Column::Value) {
        const QModelIndex cell = Model().index(*Model().RowOf(tag), column);
        List().scrollTo(cell);
        DoubleClickAt(List().visualRect(cell).center());
    }
    void ClickHeader(int column) {
        QHeaderView &header = *List().header();
        ClickInWindow(*header.viewport(), {header.sectionViewportPosition(column) + 10, header.height() / 2});
    }
    static void Type(const char *text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text));
    }
    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle();
    }
    void ShowView(int index) {
        auto &option =
            Ui().Get<QRadioButton>(qPrintable(QStringLiteral("OptionViewParameters(%1)").arg(index)));
        ClickInWindow(option, {10, option.height() / 2});
    }
    void ShowChanged() { ShowView(1); }
    void ExpectNothingOpen() {
        EXPECT_FALSE(Text1().isVisible());
        EXPECT_FALSE(Combo1().isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    void ExpectTextOpen(const char *text) {
        EXPECT_TRUE(Text1().isVisible());
        EXPECT_TRUE(Text1().hasFocus());
        EXPECT_EQ(Text1().text(), QString::fromUtf8(text));
        EXPECT_FALSE(Combo1().isVisible());
    }
    void ExpectChoiceOpen(const char *text) {
        EXPECT_TRUE(Combo1().isVisible());
        EXPECT_TRUE(Combo1().hasFocus());
        EXPECT_EQ(Combo1().currentText(), QString::fromUtf8(text));
        EXPECT_FALSE(Text1().isVisible());
    }
    // A cell's place in the coordinates of the editors' parent.
    QRect Place(std::int16_t tag) const {
        return List().PlaceOf(*Model().RowOf(tag), Column::Value, *Text1().parentWidget());
    }
};

// The list. -----------------------------------------------------------------------------------------

TEST_F(AdvancedPageTest, StartsWithAllParameters) {
    Start();
    EXPECT_TRUE(Ui().Get<QRadioButton>("OptionViewParameters(0)").isChecked());
    EXPECT_EQ(Model().rowCount(), 95);
    EXPECT_FALSE(Ui().Enabled("CommandRefresh"));
    EXPECT_TRUE(Text1().isHidden());
    EXPECT_TRUE(Combo1().isHidden());
    StartOnTab();
    EXPECT_EQ(Shown(28), QStringLiteral("12.00\""));
    EXPECT_EQ(List().SelectedRow(), 0);
}

TEST_F(AdvancedPageTest, HasItsCaptionsAndToolTips) {
    StartOnTab();
    EXPECT_EQ(Ui().Text("OptionViewParameters(0)"), QStringLiteral("All"));
    EXPECT_EQ(Ui().Text("OptionViewParameters(1)"), QStringLiteral("Changed"));
    EXPECT_EQ(Ui().Text("CommandRefresh"), QStringLiteral("&Refresh"));
    EXPECT_EQ(Ui().Get<QWidget>("OptionViewParameters(0)").toolTip(),
              QStringLiteral("Display All Parameters"));
    EXPECT_EQ(Ui().Get<QWidget>("OptionViewParameters(1)").toolTip(),
              QStringLiteral("Display only parameters changed from factory presets"));
    EXPECT_EQ(Ui().Get<QWidget>("CommandRefresh").toolTip(),
              QStringLiteral("Refresh the Parameters Changed display"));
}

TEST_F(AdvancedPageTest, LaysItselfOutInTheFormsUnits) {
    StartOnTab();
    for (const QSize size : {QSize(680, 596), QSize(1000, 901)}) {
        form_->resize(size);
        Settle();
        const QWidget &strip = Ui().Get<QWidget>("TabStrip1");
        const QWidget &page = Ui().Get<QWidget>("TabFrame(2)");
        const QRect list = List().geometry();
        const auto below = [&](const char *name) {
            return Ui().Get<QWidget>(name).y() - (list.y() + list.height());
        };
        EXPECT_NEAR(page.height() * 15, strip.height() * 15 - 800, 15);
        EXPECT_NEAR(page.width() * 15, strip.width() * 15 - 400, 15);
        EXPECT_NEAR(list.height() * 15, page.height() * 15 - 900, 15);
        EXPECT_NEAR(list.width() * 15, page.width() * 15 - 300, 15);
        EXPECT_NEAR(below("OptionViewParameters(0)") * 15, 100, 15);
        const QRect first = Ui().Get<QWidget>("OptionViewParameters(0)").geometry();
        EXPECT_NEAR((Ui().Get<QWidget>("OptionViewParameters(1)").y() - first.y() - first.height()) * 15, 10,
                    15);
        EXPECT_NEAR(below("CommandRefresh") * 15, 225, 15);
        for (const char *name : {"OptionViewParameters(0)", "OptionViewParameters(1)", "CommandRefresh"}) {
            const QWidget &control = Ui().Get<QWidget>(name);
            EXPECT_TRUE(page.rect().contains(control.geometry())) << name;
            EXPECT_GE(control.width(), control.sizeHint().width()) << name;
            EXPECT_GE(control.height(), control.fontMetrics().height()) << name;
        }
    }
    const int widths[] = {952, 4180, 1983, 2540};
    for (int column = 0; column < 4; ++column) {
        EXPECT_NEAR(List().columnWidth(column) * 15, widths[column], 15);
    }
}

TEST_F(AdvancedPageTest, ShowsReadOnlyRowsInGreyThatCanBeRead) {
    StartOnTab();
    const auto textColour = [&](std::int16_t tag, Column column) {
        const QModelIndex cell = Model().index(*Model().RowOf(tag), column);
        List().scrollTo(cell);
        const QRect place = List().visualRect(cell).adjusted(0, 0, 0, -1);
        const QImage picture = List().viewport()->grab(place).toImage();
        QColor darkest(Qt::white);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                darkest = pixel.lightness() < darkest.lightness() ? pixel : darkest;
            }
        }
        return darkest;
    };
    for (const Column column : {Column::Name, Column::Value, Column::Preset}) {
        const QColor grey = textColour(14, column);
        EXPECT_GT(grey.lightness(), textColour(28, column).lightness() + 60);
        EXPECT_LT(grey.lightness(), 140); // a contrast of 4.5 on white is 118
    }
    EXPECT_LT(textColour(14, Column::Tag).lightness(), 60);
}

TEST_F(AdvancedPageTest, ShowsChangesAsASnapshotThatTheButtonTakesAgain) {
    StartOnTab();
    ShowChanged();
    EXPECT_EQ(Model().rowCount(), 0);
    form_->UpdateDisplay();
    EXPECT_TRUE(Ui().Enabled("CommandRefresh"));
    Poll(28, 1300);
    EXPECT_EQ(Model().rowCount(), 0);
    Ui().Press("CommandRefresh");
    ASSERT_EQ(Model().rowCount(), 1);
    EXPECT_EQ(Shown(28), QStringLiteral("13.00\""));
    Poll(28, 1400);
    Poll(39, 2);
    EXPECT_EQ(Shown(28), QStringLiteral("14.00\""));
    EXPECT_EQ(Model().rowCount(), 1);
    Key(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return Model().rowCount() == 2; }));
    EXPECT_EQ(Shown(39), QStringLiteral("Hyperbolic"));

    auto &all = Ui().Get<QRadioButton>("OptionViewParameters(0)");
    ClickInWindow(all, {10, all.height() / 2});
    EXPECT_EQ(Model().rowCount(), 95);
    EXPECT_EQ(Shown(95), QStringLiteral("0"));
    EXPECT_FALSE(Ui().Enabled("CommandRefresh"));
}

TEST_F(AdvancedPageTest, SortsByItsHeaders) {
    StartOnTab();
    const auto top = [&] { return Model().TagOf(0); };
    ClickHeader(0);
    EXPECT_EQ(top(), 1);
    EXPECT_EQ(List().header()->sortIndicatorOrder(), Qt::AscendingOrder);
    ClickHeader(0);
    EXPECT_EQ(top(), 95);
    EXPECT_EQ(List().header()->sortIndicatorOrder(), Qt::DescendingOrder);
    ClickHeader(1); // keeps the direction
    EXPECT_EQ(List().header()->sortIndicatorSection(), 1);
    EXPECT_EQ(List().header()->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(Model().Text(0, Column::Name), QStringLiteral("User Number"));
    ClickHeader(1);
    EXPECT_EQ(Model().Text(0, Column::Name), QStringLiteral("Actual Diameter"));
    ClickHeader(0);
    EXPECT_EQ(top(), 1);
    EXPECT_EQ(Model().TagOf(9), 10);
    EXPECT_EQ(Model().TagOf(94), 95);
}

TEST_F(AdvancedPageTest, KeepsTheSelectedParameterWhenItSortsOrIsBuiltAnew) {
    StartOnTab();
    List().SelectRow(*Model().RowOf(28));
    ClickHeader(1);
    EXPECT_EQ(Model().TagOf(List().SelectedRow()), 28);
    Poll(28, 1300);
    Poll(24, 700);
    ShowChanged();
    EXPECT_EQ(Model().TagOf(List().SelectedRow()), 28);
    Poll(28, 1200);
    Ui().Press("CommandRefresh");
    EXPECT_EQ(Model().TagOf(List().SelectedRow()), 24);
}

TEST_F(AdvancedPageTest, KeepsTheFirstRowOfASortedListSelectedWhenTheViewChanges) {
    StartOnTab();
    Poll(28, 1300);
    Poll(24, 700);
    for (const int header : {0, 0, 1, 1}) { // each both ways round
        ClickHeader(header);
        ShowView(1);
        ASSERT_EQ(Model().rowCount(), 2);
        List().SelectRow(0);
        const std::int16_t first = Model().TagOf(0);
        ShowView(0);
        EXPECT_EQ(Model().rowCount(), 95);
        EXPECT_NE(Model().TagOf(0), first);
        EXPECT_EQ(Model().TagOf(List().SelectedRow()), first);
    }
}

TEST_F(AdvancedPageTest, PaintsNothingWhereNothingHasChanged) {
    StartOnTab();
    struct Painted : QObject {
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::Paint) {
                region += static_cast<QPaintEvent *>(event)->region();
            }
            return false;
        }
        QRegion region;
    } painted;
    Settle();
    List().viewport()->installEventFilter(&painted);
    form_->UpdateDisplay();
    Settle();
    EXPECT_TRUE(painted.region.isEmpty());
    Poll(8, 215);
    EXPECT_TRUE(WaitUntil([&] { return !painted.region.isEmpty(); }));
    const QRect cell = List().visualRect(Model().index(7, Column::Value));
    EXPECT_TRUE(cell.contains(painted.region.boundingRect()));
    painted.region = {};
    Poll(95, 77); // out of sight
    Settle();
    EXPECT_TRUE(painted.region.isEmpty());
    List().viewport()->removeEventFilter(&painted);
}

// Opening an editor. --------------------------------------------------------------------------------

TEST_F(AdvancedPageTest, ADoubleClickElsewhereOpensNothing) {
    StartOnTab();
    for (const Column column : {Column::Tag, Column::Name, Column::Preset}) {
        DoubleClick(28, column);
        ExpectNothingOpen();
    }
    DoubleClick(32); // read-only
    ExpectNothingOpen();
    EXPECT_EQ(Text1().property("Tag").toString(), QStringLiteral(" 32"));
    List().scrollToTop();
    ClickInWindow(*List().viewport(), List().visualRect(Model().index(3, Column::Value)).center());
    ExpectNothingOpen();
    Poll(28, 1300);
    ShowChanged();
    DoubleClickAt(List().visualRect(Model().index(0, Column::Value)).center() + QPoint(0, 100));
    ExpectNothingOpen();
}

TEST_F(AdvancedPageTest, OpensTheTextBoxOverTheCell) {
    StartOnTab();
    for (const auto &[tag, text] :
         {std::pair{28, "12.00\""}, {36, "0.00V"}, {42, "20%"}, {44, "1.0s"}, {21, "1000"}}) {
        DoubleClick(static_cast<std::int16_t>(tag));
        ExpectTextOpen(text);
        EXPECT_EQ(Text1().selectedText(), Text1().text());
        EXPECT_EQ(Text1().property("Tag").toString(), QStringLiteral(" %1").arg(tag));
        EXPECT_EQ(Text1().accessibleName(), form_->Zentrova().ParamName(static_cast<std::int16_t>(tag)));
        const QRect cell = Place(static_cast<std::int16_t>(tag));
        const QWidget &page = Ui().Get<QWidget>("TabFrame(2)");
        EXPECT_NEAR(Text1().x() * 15, (page.x() + List().x()) * 15 + 952 + 4180 + 50, 30);
        EXPECT_NEAR(Text1().x(), cell.x(), 2);
        EXPECT_EQ(Text1().y(), cell.y());
        EXPECT_EQ(Text1().width(), cell.width() + 1);
        EXPECT_EQ(Text1().height(), cell.height() - 1);
        Key(Qt::Key_Escape);
    }
}

TEST_F(AdvancedPageTest, OpensTheDropDownListOverTheCell) {
    StartOnTab();
    for (const auto &[tag, text, count] :
         {std::tuple{39, "Linear", 3}, {66, "38400", 5}, {20, "Internal", 2}}) {
        DoubleClick(static_cast<std::int16_t>(tag));
        ExpectChoiceOpen(text);
        EXPECT_EQ(Combo1().count(), count);
        EXPECT_EQ(Combo1().accessibleName(), form_->Zentrova().ParamName(static_cast<std::int16_t>(tag)));
        const QRect cell = Place(static_cast<std::int16_t>(tag));
        EXPECT_NEAR(Combo1().x(), cell.x(), 4);
        EXPECT_NEAR(Combo1().y(), cell.y(), 2);
        EXPECT_EQ(Combo1().width(), cell.width());
        Key(Qt::Key_Escape);
        ExpectNothingOpen();
    }
}

TEST_F(AdvancedPageTest, OpensByKeyboard) {
    StartOnTab();
    List().setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2}) {
        List().SelectRow(*Model().RowOf(28));
        Key(key);
        ExpectTextOpen("12.00\"");
        Key(Qt::Key_Escape);
        EXPECT_TRUE(List().hasFocus());
        List().SelectRow(*Model().RowOf(39));
        Key(key);
        ExpectChoiceOpen("Linear");
        Key(Qt::Key_Escape);
        EXPECT_TRUE(List().hasFocus());
        List().SelectRow(*Model().RowOf(32));
        Key(key);
        ExpectNothingOpen();
    }
    List().SelectRow(94);
    List().scrollToTop();
    Key(Qt::Key_Return);
    ExpectTextOpen("0");
    EXPECT_TRUE(List()
                    .viewport()
                    ->rect()
                    .translated(List().viewport()->mapTo(Text1().parentWidget(), QPoint()))
                    .contains(Text1().geometry().adjusted(0, 0, -2, -1)));
}

TEST_F(AdvancedPageTest, OpensTheDialogForOutputValues) {
    StartOnTab();
    for (const int tag : {40, 81, 85, 90}) {
        bool came = false;
        WhenDialogOpens([&](QWidget &dialog) {
            came = true;
            EXPECT_EQ(dialog.objectName(), QStringLiteral("FormEdit"));
            EXPECT_EQ(Form(dialog).Text("TextDataVal(0)"), Shown(static_cast<std::int16_t>(tag)));
            EXPECT_EQ(Form(dialog).Text("TextDataVal(1)"),
                      tag == 85 ? QStringLiteral("5.00") : QStringLiteral("0.00"));
            EXPECT_EQ(Form(dialog).Get<QLineEdit>("TextDataVal(0)").property("Tag").toString(),
                      QStringLiteral(" %1").arg(tag));
            Form(dialog).Get<QLineEdit>("TextDataVal(0)").setText(QStringLiteral("1234"));
            Form(dialog).Press("CommandOK");
        });
        DoubleClick(static_cast<std::int16_t>(tag));
        EXPECT_TRUE(WaitUntil([&] { return came && QApplication::activeModalWidget() == nullptr; }));
        EXPECT_EQ(Value(static_cast<std::int16_t>(tag)), 1234);
        EXPECT_EQ(Shown(static_cast<std::int16_t>(tag)), QStringLiteral("1234"));
        ExpectNothingOpen();
    }
}

// Text1. --------------------------------------------------------------------------------------------

TEST_F(AdvancedPageTest, EnterWritesTheTextIntoTableAndRow) {
    StartOnTab();
    DoubleClick(36);
    Type("1.5v");
    Key(Qt::Key_Return);
    ExpectNothingOpen();
    EXPECT_TRUE(List().hasFocus());
    EXPECT_EQ(Value(36), 150);
    EXPECT_EQ(Shown(36), QStringLiteral("1.50V"));
}

TEST_F(AdvancedPageTest, ARefusedTextStaysOpenUntilEscape) {
    StartOnTab();
    DoubleClick(28);
    for (const char *text : {"abc", "5", "1e99"}) {
        dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""),
                              BoxIcon::None, QString());
        Type(text);
        Key(Qt::Key_Return);
        ExpectTextOpen(text);
        EXPECT_EQ(Text1().selectedText(), QString::fromLatin1(text));
    }
    dialogs_.ExpectNotice(QStringLiteral("The Near Distance must be less than the Far Distance."),
                          BoxIcon::Exclamation, QStringLiteral("Invalid Value"));
    Type("400");
    Key(Qt::Key_Return);
    ExpectTextOpen("400");
    Key(Qt::Key_Escape);
    ExpectNothingOpen();
    EXPECT_EQ(Value(28), 1200);
}

TEST_F(AdvancedPageTest, TheTextIsCheckedBeforeAClickIsTaken) {
    StartOnTab();
    const auto expectRefused = [this] {
        dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""),
                              BoxIcon::None, QString());
    };
    DoubleClick(28);
    Type("5");
    expectRefused();
    ClickTab(0);
    EXPECT_EQ(form_->CurrentTab(), 2);
    ExpectTextOpen("5");
    expectRefused();
    ClickHeader(1);
    EXPECT_EQ(Model().TagOf(0), 1);
    ExpectTextOpen("5");
    expectRefused();
    ShowChanged();
    EXPECT_EQ(Model().rowCount(), 95);
    ExpectTextOpen("5");
    expectRefused();
    Key(Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(form_->CurrentTab(), 2);
    ExpectTextOpen("5");

    Key(Qt::Key_A, Qt::ControlModifier);
    Type("13");
    ClickTab(0);
    EXPECT_EQ(form_->CurrentTab(), 1);
    ExpectNothingOpen();
    EXPECT_EQ(Value(28), 1300);
    EXPECT_EQ(Ui().Text("TextParam(3)"), QStringLiteral("13.00\""));
}

TEST_F(AdvancedPageTest, AMnemonicThatLeavesTheTabWritesTheText) {
    StartOnTab();
    DoubleClick(28);
    Type("13");
    Key(Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(form_->CurrentTab(), 1);
    ExpectNothingOpen();
    EXPECT_EQ(Value(28), 1300);
}

TEST_F(AdvancedPageTest, ADoubleClickOnAnotherCellWritesTheOneBefore) {
    StartOnTab();
    DoubleClick(28);
    Type("13");
    DoubleClick(27);
    EXPECT_EQ(Value(28), 1300);
    EXPECT_EQ(Shown(28), QStringLiteral("13.00\""));
    ExpectTextOpen("1.000");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Value(27), 1000);
}

TEST_F(AdvancedPageTest, AnEmptyTextLeavesWithoutAMessage) {
    StartOnTab();
    DoubleClick(28);
    Key(Qt::Key_Delete);
    Key(Qt::Key_Tab);
    ExpectNothingOpen();
    EXPECT_EQ(Value(28), 1200);
}

TEST_F(AdvancedPageTest, GoesOnShowingValuesUnderTheText) {
    StartOnTab();
    DoubleClick(28);
    Type("13");
    Poll(29, 30000);
    Poll(28, 1250);
    ExpectTextOpen("13");
    EXPECT_EQ(Shown(28), QStringLiteral("12.50\""));
    EXPECT_EQ(Shown(29), QStringLiteral("300.00\""));
    Key(Qt::Key_Return);
    EXPECT_EQ(Value(28), 1300);
}

TEST_F(AdvancedPageTest, ScrollingClosesTheEditorsWithoutWriting) {
    StartOnTab();
    for (const std::int16_t tag : {std::int16_t{28}, ParamDefines::AnalogOutputMode}) {
        DoubleClick(tag);
        if (tag == 28) {
            Type("13");
        } else {
            Key(Qt::Key_Down);
        }
        List().verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        form_->UpdateDisplay();
        Settle();
        ExpectNothingOpen();
        EXPECT_TRUE(List().hasFocus());
    }
    EXPECT_EQ(Value(28), 1200);
    EXPECT_EQ(Value(39), 1);
}

TEST_F(AdvancedPageTest, ASmallerWindowClosesAnEditorThatItsListNoLongerReaches) {
    StartOnTab();
    form_->resize(900, 900);
    Settle();
    for (const std::int16_t tag : {std::int16_t{28}, std::int16_t{20}}) {
        List().scrollToTop();
        DoubleClickAt(List().visualRect(Model().index(tag - 1, Column::Value)).center());
        const QWidget &editor = tag == 28 ? static_cast<QWidget &>(Text1()) : Combo1();
        EXPECT_TRUE(editor.isVisible());
        form_->resize(899, 899);
        Settle();
        EXPECT_TRUE(editor.isVisible());
        form_->resize(680, 596);
        Settle();
        ExpectNothingOpen();
        form_->resize(900, 900);
        Settle();
    }
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(AdvancedPageTest, WritesTheSelectedRowWhereverTheValueCameFrom) {
    StartOnTab();
    List().SelectRow(*Model().RowOf(50));
    ClickTab(0);
    QLineEdit box(form_.get());
    box.setProperty("Tag", QStringLiteral("28"));
    box.setText(QStringLiteral("13"));
    EXPECT_TRUE(form_->ValidateAndWriteTextBoxVal(box));
    EXPECT_EQ(Shown(50), QStringLiteral("13.00\""));
    EXPECT_EQ(Shown(28), QStringLiteral("12.00\"")); // not the tab that shows
    ClickTab(1);
    EXPECT_EQ(Shown(50), QStringLiteral("Light"));
    EXPECT_EQ(Shown(28), QStringLiteral("13.00\""));
}

TEST_F(AdvancedPageTest, AValueTypedWhereNoRowIsSelectedIsWrittenAllTheSame) {
    StartOnTab();
    ShowChanged();
    QLineEdit box(form_.get());
    box.setProperty("Tag", QStringLiteral("28"));
    box.setText(QStringLiteral("13"));
    EXPECT_TRUE(form_->ValidateAndWriteTextBoxVal(box));
    EXPECT_EQ(Value(28), 1300);
}

// Combo1. -------------------------------------------------------------------------------------------

TEST_F(AdvancedPageTest, EnterTakesTheChoice) {
    StartOnTab();
    DoubleClick(39);
    Key(Qt::Key_Down);
    ExpectChoiceOpen("Hyperbolic");
    EXPECT_EQ(Value(39), 1);
    Key(Qt::Key_Return);
    ExpectNothingOpen();
    EXPECT_TRUE(List().hasFocus());
    EXPECT_EQ(Value(39), 2);
    EXPECT_EQ(Shown(39), QStringLiteral("Hyperbolic"));
}

TEST_F(AdvancedPageTest, WritesTheChoiceToTheRowThatItWasOpenedFor) {
    StartOnTab();
    DoubleClick(39);
    EXPECT_EQ(Text1().property("Tag").toString(), QStringLiteral(" 39"));
    Text1().setProperty("Tag", QStringLiteral(" 28"));
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    EXPECT_EQ(Value(39), 2);
    EXPECT_EQ(Value(28), 1200);
}

TEST_F(AdvancedPageTest, LeavingTakesTheChoice) {
    StartOnTab();
    Poll(38, 1);
    DoubleClick(39);
    Key(Qt::Key_Down);
    ClickInWindow(*List().viewport(),
                  List().visualRect(Model().index(*Model().RowOf(38), Column::Name)).center());
    ExpectNothingOpen();
    EXPECT_EQ(Value(39), 2);
    EXPECT_EQ(Shown(39), QStringLiteral("Hyperbolic"));
    EXPECT_EQ(Shown(38), QStringLiteral("Yes"));

    DoubleClick(39);
    Key(Qt::Key_Home);
    ClickTab(0);
    EXPECT_EQ(form_->CurrentTab(), 1);
    EXPECT_EQ(Value(39), 0);
    ClickTab(1);
    ExpectNothingOpen();

    DoubleClick(39);
    Key(Qt::Key_Down);
    Key(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(form_->CurrentTab(), 4);
    EXPECT_EQ(Value(39), 1);
    ClickTab(1);

    DoubleClick(39);
    Key(Qt::Key_Down);
    DoubleClick(28);
    ExpectTextOpen("12.00\"");
    EXPECT_EQ(Value(39), 2);
    EXPECT_EQ(Value(28), 1200);
}

TEST_F(AdvancedPageTest, AChoiceThatIsLeftForAHeaderGoesIntoItsOwnRow) {
    StartOnTab();
    DoubleClick(39);
    Key(Qt::Key_Down);
    ClickHeader(0);
    ClickHeader(0);
    EXPECT_EQ(Model().TagOf(0), 95);
    ExpectNothingOpen();
    EXPECT_EQ(Value(39), 2);
    EXPECT_EQ(Shown(39), QStringLiteral("Hyperbolic"));

    Poll(30, 4); // the place of 66 in the reversed list
    DoubleClick(66);
    ExpectChoiceOpen("38400");
    Key(Qt::Key_Up);
    ShowChanged();
    EXPECT_EQ(Value(66), 3);
}

TEST_F(AdvancedPageTest, EscapeAbandonsTheChoice) {
    StartOnTab();
    DoubleClick(39);
    Key(Qt::Key_Down);
    Key(Qt::Key_Escape);
    ExpectNothingOpen();
    EXPECT_TRUE(List().hasFocus());
    EXPECT_EQ(Value(39), 1);
    EXPECT_EQ(Shown(39), QStringLiteral("Linear"));
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(AdvancedPageTest, ItsPopupIsNotLeaving) {
    StartOnTab();
    DoubleClick(39);
    Combo1().showPopup();
    Settle();
    EXPECT_TRUE(Combo1().isVisible());
    EXPECT_EQ(Value(39), 1);
    QWidget *popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    QTest::keyClick(Combo1().view(), Qt::Key_Home);
    QTest::keyClick(Combo1().view(), Qt::Key_Return);
    Settle();
    ExpectChoiceOpen("Manual");
    EXPECT_EQ(Value(39), 1);
    Key(Qt::Key_Return);
    EXPECT_EQ(Value(39), 0);
}

TEST_F(AdvancedPageTest, OpensOnTheValueOfTheParameterWhoseNumberIsThePlace) {
    StartOnTab();
    Poll(2, 1); // the second one, read-only
    Poll(28, 1300);
    Poll(39, 2);
    ShowChanged();
    ASSERT_EQ(Model().RowOf(39), 1);
    DoubleClick(39);
    ExpectChoiceOpen("Linear"); // of 1
    Key(Qt::Key_Return);
    EXPECT_EQ(Value(39), 1);
    EXPECT_EQ(Value(2), 1);
}

TEST_F(AdvancedPageTest, SaysWhatHelpsWhereThePlaceHasNoSuchValue) {
    StartOnTab();
    Poll(39, 2);
    ShowChanged();
    ASSERT_EQ(Model().RowOf(39), 0);
    for (const int value : {3, -1}) {
        Poll(1, value);
        dialogs_.ExpectNotice(
            QStringLiteral(
                "The list of Analog Output Mode can't be opened here. In row 1 it starts with the value of "
                "parameter 1, Save Command, and that is %1, which isn't in the list.\n\n"
                "Choose \"All\" and click \"Tag\" until the numbers rise: then it starts with its own value.")
                .arg(value));
        DoubleClick(39);
        EXPECT_TRUE(dialogs_.AllCame());
        ExpectNothingOpen();
        EXPECT_EQ(Value(39), 2);
    }
}

TEST_F(AdvancedPageTest, SaysWhatHelpsWhereItsOwnValueIsNoneOfTheList) {
    StartOnTab();
    Poll(39, 7);
    dialogs_.ExpectNotice(
        QStringLiteral("The list of Analog Output Mode can't be opened: the value 7 isn't in it.\n\n"
                       "Re-initialize the sensor, or open a settings file, to give it one that is."));
    DoubleClick(39);
    ExpectNothingOpen();
}

TEST_F(AdvancedPageTest, ARowTellsOnWhichValueItsListOpens) {
    StartOnTab();
    Poll(39, 2);
    Poll(1, 1);
    ShowChanged();
    const QModelIndex cell = Model().index(*Model().RowOf(39), Column::Value);
    const QPoint place = List().visualRect(cell).center();
    QHelpEvent help(QEvent::ToolTip, place, List().viewport()->mapToGlobal(place));
    QApplication::sendEvent(List().viewport(), &help);
    EXPECT_EQ(QToolTip::text(), ParameterEditors::NoteOf(form_->Zentrova(), 39, 1));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("parameter 2, Serial Number")));
    QToolTip::hideText();
}

TEST_F(AdvancedPageTest, OffersAListForUnitsThatItDoesNotKnow) {
    const ChangedPresets presets(
        "INSERT INTO Units (UnitText0, UnitText1) VALUES ('Left', 'Right');"
        "UPDATE Parameters SET Units = (SELECT count(*) - 1 FROM Units) WHERE rowid IN (1 + 54, 1 + 95)");
    presets_ = presets.Folder();
    StartOnTab();
    DoubleClick(54);
    ExpectChoiceOpen("Left");
    EXPECT_EQ(Combo1().itemText(1), QStringLiteral("Right"));
    Key(Qt::Key_Escape);
    dialogs_.ExpectTextWith(QStringLiteral("Subscript out of range"), BoxIcon::Exclamation);
    DoubleClick(95); // 0 to 65535
    ExpectNothingOpen();
}

// Reach. --------------------------------------------------------------------------------------------

TEST_F(AdvancedPageTest, CanBeReachedByKeyboardAlone) {
    StartOnTab();
    List().setFocus();
    QTest::keyClick(&List(), Qt::Key_Down);
    EXPECT_EQ(List().SelectedRow(), 1);
    QTest::keyClick(&List(), Qt::Key_End);
    EXPECT_EQ(List().SelectedRow(), 94);
    EXPECT_TRUE(List().viewport()->rect().contains(List().visualRect(List().currentIndex())));
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("OptionViewParameters(0)"));
    Key(Qt::Key_Down);
    EXPECT_EQ(Model().rowCount(), 0);
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("CommandRefresh"));
}

TEST_F(AdvancedPageTest, TellsAnAssistiveClientItsCells) {
    QAccessible::setActive(true);
    StartOnTab();
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&List());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Parameters"));
    ASSERT_NE(list->tableInterface(), nullptr);
    EXPECT_EQ(list->tableInterface()->rowCount(), 95);
    EXPECT_EQ(list->tableInterface()->cellAt(27, 2)->text(QAccessible::Name), QStringLiteral("12.00\""));
    EXPECT_EQ(list->tableInterface()->cellAt(31, 2)->text(QAccessible::Description),
              QStringLiteral("Read only"));
    QAccessible::setActive(false);
}

TEST_F(AdvancedPageTest, TheScrollBarClosesTheEditorsWithoutWriting) {
    StartOnTab();
    for (const std::int16_t tag : {std::int16_t{28}, ParamDefines::AnalogOutputMode}) {
        DoubleClick(tag);
        if (tag == 28) {
            Type("13");
        } else {
            Key(Qt::Key_Down);
        }
        QScrollBar &bar = *List().verticalScrollBar();
        const int before = bar.value();
        ClickInWindow(bar, {bar.width() / 2, bar.height() - bar.width() - 5});
        EXPECT_GT(bar.value(), before);
        ExpectNothingOpen();
        EXPECT_TRUE(List().hasFocus());
    }
    EXPECT_EQ(Value(28), 1200);
    EXPECT_EQ(Value(39), 1);
}

TEST_F(AdvancedPageTest, TheMnemonicOfRefreshTakesTheChoice) {
    StartOnTab();
    Poll(ParamDefines::AnalogOutputMode, 2);
    ShowChanged();
    Poll(static_cast<std::int16_t>(*Model().RowOf(39) + 1), 1); // where the list opens
    DoubleClick(39);
    EXPECT_TRUE(Combo1().isVisible());
    Key(Qt::Key_Home);
    Key(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return !Combo1().isVisible(); }));
    Settle();
    EXPECT_EQ(Value(39), 0);
}

TEST_F(AdvancedPageTest, SlantsTheMeasuredValuesAloneWhileTheyAreNotLive) {
    StartOnTab();
    auto &page = Ui().Get<TabPage>("TabFrame(2)");
    const auto picture = [this](std::int16_t tag, Column column) {
        const QModelIndex cell = Model().index(*Model().RowOf(tag), column);
        List().scrollTo(cell);
        return List().viewport()->grab(List().visualRect(cell)).toImage();
    };
    for (const ValueState state : {ValueState::NeverRead, ValueState::Stale, ValueState::Held}) {
        const auto changes = [&](std::int16_t tag, Column column) {
            page.ShowState(ValueState::Live);
            const QImage live = picture(tag, column);
            page.ShowState(state);
            return picture(tag, column) != live;
        };
        EXPECT_TRUE(changes(ParamDefines::ActualDistance, Column::Value));
        EXPECT_TRUE(changes(ParamDefines::EchoReceived, Column::Value));
        EXPECT_FALSE(changes(ParamDefines::ActualDistance, Column::Name));
        EXPECT_FALSE(changes(ParamDefines::NearDistance, Column::Value));
        EXPECT_FALSE(changes(ParamDefines::FirmwareVersion, Column::Value)) << "read-only, but not measured";
    }
}

} // namespace ztv
