// Tests the look of all forms: names, mnemonics, the order of Tab, the focus, contrast, and texts that aren't
// cut off.

#include "tests/helpers/AllForms.h"
#include "tests/helpers/Printers.h"

#include "chart/ui/RelayMarker.h"
#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "widgets/Colours.h"
#include "widgets/TabPage.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <limits>
#include <set>

namespace ztv {

namespace {

constexpr double textContrast = 4.5;
constexpr double dimmedContrast = 3;

bool IsOwnPartOfQt(const QWidget &widget) {
    return widget.objectName().startsWith(QStringLiteral("qt_")) || widget.inherits("QTipLabel") ||
           widget.inherits("QSizeGrip") || widget.inherits("QComboBoxPrivateContainer");
}

template <typename Widget = QWidget>
std::vector<Widget *> Shown(QWidget &form) {
    std::vector<Widget *> shown;
    for (Widget *widget : form.findChildren<Widget *>()) {
        if (widget->isVisible() && widget->window() == &form && !IsOwnPartOfQt(*widget)) {
            shown.push_back(widget);
        }
    }
    return shown;
}

// The controls that Tab reaches.
std::vector<QWidget *> Reachable(QWidget &form) {
    std::vector<QWidget *> reachable;
    for (QWidget *widget : Shown(form)) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
            widget->focusProxy() == nullptr) {
            reachable.push_back(widget);
        }
    }
    return reachable;
}

QString MnemonicOf(const QString &caption) {
    return QKeySequence::mnemonic(caption).toString();
}

QString CaptionOf(const QWidget &widget) {
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        return button->text();
    }
    if (const auto *group = qobject_cast<const QGroupBox *>(&widget)) {
        return group->title();
    }
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return label == nullptr || label->buddy() == nullptr ? QString() : label->text();
}

std::string Naming(const QString &form, const QWidget &widget) {
    return qPrintable(form + QStringLiteral(": ") + QLatin1String(widget.metaObject()->className()) + u' ' +
                      widget.objectName());
}

} // namespace

using LookTest = AllFormsTest;

// Names. --------------------------------------------------------------------------------------------

TEST_F(LookTest, EachControlThatTakesTheFocusHasAName) {
    VisitForms(light, [](QWidget &form, const QString &name) {
        for (QWidget *widget : Shown(form)) {
            if (widget->focusPolicy() == Qt::NoFocus || qobject_cast<QTabWidget *>(widget) != nullptr ||
                qobject_cast<QTabBar *>(widget) != nullptr) {
                continue; // a strip's tabs have the names
            }
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const bool saysItsCaption = (label != nullptr && !label->text().isEmpty()) ||
                                        (button != nullptr && !button->text().isEmpty());
            EXPECT_TRUE(saysItsCaption || !widget->accessibleName().isEmpty()) << Naming(name, *widget);
        }
    });
}

TEST_F(LookTest, AMnemonicLeadsToOneControlOfAForm) {
    VisitForms(light, [](QWidget &form, const QString &name) {
        std::set<QString> taken;
        const auto take = [&](std::set<QString> &among, const QString &caption) {
            const QString mnemonic = MnemonicOf(caption);
            EXPECT_TRUE(mnemonic.isEmpty() || among.insert(mnemonic).second)
                << qPrintable(name) << ": " << qPrintable(caption);
        };
        for (const QWidget *widget : Shown(form)) {
            if (qobject_cast<const QToolButton *>(widget) == nullptr ||
                qobject_cast<const QToolButton *>(widget)->defaultAction() == nullptr) {
                take(taken, CaptionOf(*widget));
            }
            if (const auto *strip = qobject_cast<const QTabWidget *>(widget)) {
                for (int tab = 0; tab < strip->count(); ++tab) {
                    take(taken, strip->tabText(tab));
                }
            } else if (const auto *menus = qobject_cast<const QMenuBar *>(widget)) {
                for (const QAction *menu : menus->actions()) {
                    take(taken, menu->text());
                    std::set<QString> within;
                    for (const QAction *entry : menu->menu()->actions()) {
                        take(within, entry->text());
                    }
                }
            }
        }
    });
}

// The focus. ----------------------------------------------------------------------------------------

namespace {

// Presses Tab from the first control until it has the focus again, and returns the controls in order.
std::vector<QWidget *> InTabOrder(QWidget &form) {
    constexpr int most = 400; // Tab visits the links of a page one by one
    QWidget *first = form.nextInFocusChain();
    const std::vector<QWidget *> reachable = Reachable(form);
    while (std::find(reachable.begin(), reachable.end(), first) == reachable.end() && first != &form) {
        first = first->nextInFocusChain();
    }
    std::vector<QWidget *> order{first};
    first->setFocus(Qt::TabFocusReason);
    for (int press = 0; press < most; ++press) {
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        if (form.focusWidget() == first) {
            break;
        }
        if (form.focusWidget() != order.back()) {
            order.push_back(form.focusWidget());
        }
    }
    return order;
}

// Whether `next` is neither below `before` nor to the right of it.
bool GoesBack(const QRect &before, const QRect &next) {
    const bool sameRow = before.top() <= next.center().y() && next.center().y() <= before.bottom();
    return sameRow ? next.left() < before.left()
                   : next.center().y() < before.center().y() && next.left() <= before.left();
}

QRect PlaceIn(const QWidget &form, const QWidget &widget) {
    return {widget.mapTo(&form, QPoint()), widget.size()};
}

} // namespace

TEST_F(LookTest, TabComesToEveryControlInTheOrderOfReading) {
    VisitForms(light, [](QWidget &form, const QString &name) {
        const std::vector<QWidget *> order = InTabOrder(form);
        const std::set<QWidget *> visited(order.begin(), order.end());
        EXPECT_EQ(visited.size(), order.size()) << qPrintable(name);
        for (QWidget *widget : Reachable(form)) {
            EXPECT_TRUE(visited.contains(widget)) << "Tab never comes to " << Naming(name, *widget);
        }
        // A ring goes back once, whatever its first control.
        std::string goesBack;
        int times = 0;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const QWidget &next = *order[(i + 1) % order.size()];
            const bool moves = order[i]->inherits("ztv::RelayMarker") || next.inherits("ztv::RelayMarker");
            if (!moves && GoesBack(PlaceIn(form, *order[i]), PlaceIn(form, next))) {
                ++times;
                goesBack += Naming(name, *order[i]) + ", then " + Naming(name, next) + '\n';
            }
        }
        EXPECT_LE(times, 1) << goesBack;
    });
}

TEST_F(LookTest, TheFocusCanBeSeen) {
    for (const Desktop &desktop : {light, dark}) {
        VisitForms(desktop, [](QWidget &form, const QString &name) {
            for (QWidget *widget : Reachable(form)) {
                const auto picture = [&] { return widget->grab().toImage(); };
                form.setAttribute(Qt::WA_KeyboardFocusChange); // as a press of Tab does
                widget->setFocus(Qt::TabFocusReason);
                const QImage focused = picture();
                widget->clearFocus();
                EXPECT_TRUE(picture() != focused) << Naming(name, *widget);
            }
        });
    }
}

// Contrast. -----------------------------------------------------------------------------------------

namespace {

QColor CommonestColour(const QImage &picture) {
    QHash<QRgb, int> counts;
    QRgb commonest = picture.pixel(0, 0);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb colour = picture.pixel(x, y);
            if (++counts[colour] > counts[commonest]) {
                commonest = colour;
            }
        }
    }
    return QColor::fromRgb(commonest);
}

// The palette role of the control's text.
std::optional<QPalette::ColorRole> RoleOfText(const QWidget &widget) {
    const auto *label = qobject_cast<const QLabel *>(&widget);
    if (label != nullptr && !label->text().isEmpty()) {
        return label->foregroundRole();
    }
    if (const auto *box = qobject_cast<const QLineEdit *>(&widget);
        box != nullptr && !box->text().isEmpty()) {
        return QPalette::Text;
    }
    if (qobject_cast<const QPushButton *>(&widget) != nullptr ||
        qobject_cast<const QComboBox *>(&widget) != nullptr) {
        return QPalette::ButtonText;
    }
    if (const auto *tool = qobject_cast<const QToolButton *>(&widget)) {
        const bool hasText = tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
        return hasText ? std::optional(QPalette::ButtonText) : std::nullopt;
    }
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button != nullptr && !button->text().isEmpty() ? std::optional(QPalette::WindowText)
                                                          : std::nullopt;
}

bool CarriesInformationWhileDisabled(const QWidget &widget) {
    return qobject_cast<const QLineEdit *>(&widget) != nullptr ||
           qobject_cast<const QComboBox *>(&widget) != nullptr ||
           qobject_cast<const QLabel *>(&widget) != nullptr;
}

} // namespace

TEST_F(LookTest, TextsStandOutFromTheirGround) {
    for (const Desktop &desktop : {light, dark}) {
        VisitForms(desktop, [](QWidget &form, const QString &name) {
            if (QWidget *focus = form.focusWidget()) {
                focus->clearFocus(); // a selection has colours of its own
            }
            const QImage picture = form.grab().toImage();
            for (const QWidget *widget : Shown(form)) {
                const std::optional<QPalette::ColorRole> role = RoleOfText(*widget);
                if (!role || (!widget->isEnabled() && !CarriesInformationWhileDisabled(*widget))) {
                    continue;
                }
                const int frame = qobject_cast<const QPushButton *>(widget) != nullptr ? 4 : 0;
                const QRect place =
                    PlaceIn(form, *widget).adjusted(frame, frame, -frame, -frame) & picture.rect();
                if (place.isEmpty()) {
                    continue;
                }
                const QColor ground = CommonestColour(picture.copy(place));
                const QColor text = widget->palette().color(
                    widget->isEnabled() ? QPalette::Active : QPalette::Disabled, *role);
                EXPECT_GE(Colours::Contrast(text, ground),
                          widget->isEnabled() ? textContrast : dimmedContrast)
                    << Naming(name, *widget) << ": " << qPrintable(text.name()) << " on "
                    << qPrintable(ground.name());
            }
        });
    }
}

TEST_F(LookTest, TheChartsColoursStandOutFromBothGrounds) {
    for (const QPalette &palette : {QApplication::palette(), DarkPalette()}) {
        for (const Colours::Pair &pair :
             {Colours::Blue, Colours::Green, Colours::Red, Colours::Olive, Colours::Gray}) {
            const QColor colour = Colours::Of(pair, palette);
            EXPECT_GE(Colours::Contrast(colour, palette.color(QPalette::Base)), 3)
                << qPrintable(colour.name());
        }
    }
}

TEST_F(LookTest, FollowsADesktopThatTurnsDark) {
    Start();
    Ui().Get<TabPage>("TabFrame(1)").ShowState(ValueState::Live);
    const QColor before = Ui().Get<QLabel>("LabelTarget").palette().color(QPalette::WindowText);
    auto &box = Ui().Get<QLineEdit>("TextParam(6)");
    const QColor text = box.palette().color(QPalette::Disabled, QPalette::Text);
    {
        const OnDesktop here(dark);
        Settle();
        EXPECT_NE(Ui().Get<QLabel>("LabelTarget").palette().color(QPalette::WindowText), before);
        EXPECT_EQ(box.palette().color(QPalette::Disabled, QPalette::Text),
                  DarkPalette().color(QPalette::Text));
        const QImage chart = Ui().Get<QWidget>("FrameGraph").grab().toImage();
        EXPECT_LT(chart.pixelColor(chart.width() / 4, chart.height() / 3).lightness(), 100);
        EXPECT_LT(Ui().Get<TabPage>("TabFrame(1)").palette().color(QPalette::Window).lightness(), 100);
    }
    Settle();
    EXPECT_EQ(Ui().Get<QLabel>("LabelTarget").palette().color(QPalette::WindowText), before);
    EXPECT_EQ(box.palette().color(QPalette::Disabled, QPalette::Text), text);
}

TEST_F(LookTest, ValuesThatAreNotLiveStayGreyOnADesktopThatTurnsDarkAndBack) {
    Start();
    auto &box = Ui().Get<QLineEdit>("TextParam(6)");
    const auto grey = [&box] { return box.palette().color(QPalette::Disabled, QPalette::Text); };
    const QColor before = grey();
    EXPECT_NE(before, box.palette().color(QPalette::Active, QPalette::Text));
    {
        const OnDesktop here(dark);
        Settle();
        EXPECT_NE(grey(), before);
        EXPECT_NE(grey(), DarkPalette().color(QPalette::Text));
    }
    Settle();
    EXPECT_EQ(grey(), before);
}

TEST_F(LookTest, RelaysCanBeToldApartWithoutColour) {
    Start();
    const auto grey = [this](const char *name) {
        QWidget &marker = Ui().Get<RelayMarker>(name);
        marker.resize(12, 145);
        return marker.grab().toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    };
    EXPECT_TRUE(grey("PicRelay(0)") != grey("PicRelay(1)"));
    EXPECT_TRUE(grey("PicRelay(2)") != grey("PicRelay(3)"));
    EXPECT_TRUE(grey("PicRelay(0)") != grey("PicRelay(2)"));
}

// Texts in full. ------------------------------------------------------------------------------------

namespace {

// The room that a control has for its text; empty if the control never cuts text off.
std::optional<QSize> RoomForText(const QWidget &widget) {
    const QStyle &style = *widget.style();
    const auto button = [&](QStyle::SubElement element) {
        QStyleOptionButton option;
        option.initFrom(&widget);
        return style.subElementRect(element, &option, &widget).size();
    };
    if (qobject_cast<const QPushButton *>(&widget) != nullptr) {
        return button(QStyle::SE_PushButtonContents);
    }
    if (qobject_cast<const QRadioButton *>(&widget) != nullptr) {
        return button(QStyle::SE_RadioButtonContents);
    }
    if (qobject_cast<const QCheckBox *>(&widget) != nullptr) {
        return button(QStyle::SE_CheckBoxContents);
    }
    if (const auto *box = qobject_cast<const QLineEdit *>(&widget)) {
        constexpr int cursor = 2;
        return QSize(widget.width() - 2 * cursor - box->textMargins().left() - box->textMargins().right(),
                     widget.height() - 2);
    }
    return std::nullopt;
}

QString TextOf(const QWidget &widget) {
    if (const auto *box = qobject_cast<const QLineEdit *>(&widget)) {
        return box->text();
    }
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button == nullptr ? QString() : button->text();
}

void ExpectLabelWhole(const QString &form, const QLabel &label) {
    if (label.text().isEmpty()) {
        return;
    }
    if (label.text() == label.toolTip()) {
        return; // may be cut: the tool tip has the whole text
    }
    QString visible = label.text();
    while (visible.endsWith(QStringLiteral(".."))) {
        visible.chop(1); // dots that lead to a value may be cut
    }
    constexpr int rounding = 1;
    const QSize room = label.contentsRect().size() + QSize(0, rounding);
    const QRect text = label.fontMetrics().boundingRect(QRect(QPoint(), QSize(room.width(), QWIDGETSIZE_MAX)),
                                                        label.wordWrap() ? Qt::TextWordWrap : 0, visible);
    EXPECT_LE(text.width(), room.width()) << Naming(form, label) << ": " << qPrintable(label.text());
    EXPECT_LE(text.height(), room.height()) << Naming(form, label) << ": " << qPrintable(label.text());
}

void ExpectTextsWhole(QWidget &form, const QString &name) {
    for (const QWidget *widget : Shown(form)) {
        const QWidget *parent = widget->parentWidget();
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            ExpectLabelWhole(name, *label);
            // A label that moves with a value may cross the frame's edge.
            EXPECT_TRUE(label->text().isEmpty() || parent->rect().contains(label->geometry()))
                << Naming(name, *label);
        } else if (const std::optional<QSize> room = RoomForText(*widget)) {
            const QRect text =
                widget->fontMetrics().boundingRect(QRect(), Qt::TextShowMnemonic, TextOf(*widget));
            EXPECT_LE(text.width(), room->width())
                << Naming(name, *widget) << ": " << qPrintable(TextOf(*widget));
            EXPECT_LE(text.height(), room->height()) << Naming(name, *widget);
            EXPECT_TRUE(parent->rect().contains(widget->geometry())) << Naming(name, *widget);
        } else if (const auto *tool = qobject_cast<const QToolButton *>(widget)) {
            EXPECT_LE(tool->sizeHint().width(), tool->width()) << Naming(name, *tool);
            EXPECT_LE(tool->sizeHint().height(), tool->height()) << Naming(name, *tool);
        } else if (const auto *group = qobject_cast<const QGroupBox *>(widget)) {
            EXPECT_LE(group->minimumSizeHint().width(), group->width()) << Naming(name, *group);
            EXPECT_LE(group->minimumSizeHint().height(), group->height()) << Naming(name, *group);
        } else if (const auto *strip = qobject_cast<const QTabBar *>(widget)) {
            for (int tab = 0; tab < strip->count(); ++tab) {
                const QRect text =
                    strip->fontMetrics().boundingRect(QRect(), Qt::TextShowMnemonic, strip->tabText(tab));
                EXPECT_LE(text.width(), strip->tabRect(tab).width()) << qPrintable(name);
                EXPECT_LE(text.height() + 4, strip->tabRect(tab).height()) << qPrintable(name);
                EXPECT_TRUE(strip->rect().contains(strip->tabRect(tab))) << qPrintable(name);
            }
        }
    }
}

void ExpectCellsWhole(const QTreeView &list) {
    constexpr int margins = 6;
    const QAbstractItemModel &model = *list.model();
    for (int column = 0; column < model.columnCount(); ++column) {
        EXPECT_LE(list.header()->sectionSizeHint(column), list.columnWidth(column)) << column;
        for (int row = 0; row < model.rowCount(); ++row) {
            const QString text = model.index(row, column).data().toString();
            EXPECT_LE(list.fontMetrics().horizontalAdvance(text) + margins, list.columnWidth(column))
                << qPrintable(text);
        }
    }
}

} // namespace

TEST_F(LookTest, TextsAreWholeAlsoInALargeFont) {
    for (const Desktop &desktop : {light, dark, largeFont}) {
        VisitForms(desktop, ExpectTextsWhole);
    }
}

TEST_F(LookTest, TheLongestValuesAreWhole) {
    for (const Desktop &desktop : {light, largeFont}) {
        for (const bool greatest : {true, false}) {
            const OnDesktop here(desktop);
            Start(QStringLiteral("/checkout"));
            ClassZentrova &table = form_->Zentrova();
            for (std::int16_t tag = 0; tag < table.ParamCount(); ++tag) {
                table.ParamUpdate(tag, greatest ? table.ParamMax(tag) : table.ParamMin(tag));
            }
            auto &strip = Ui().Get<QTabWidget>("TabStrip1");
            for (int tab = 0; tab < strip.count(); ++tab) {
                strip.setCurrentIndex(tab);
                form_->ConfigureBasicTab();
                form_->UpdateDisplay();
                Settle();
                ExpectTextsWhole(*form_, strip.tabText(tab));
            }
            if (desktop.fontScale == 1) {
                ExpectCellsWhole(Ui().Get<QTreeView>("ListView1"));
            }
            form_->Link().TimeoutCount(std::numeric_limits<std::int16_t>::max());
            form_->Link().CrcErrorCount(std::numeric_limits<std::int16_t>::max());
            FormComms comms(form_->Link(), table, dialogs_, settings_, form_->hHelp());
            comms.show();
            Settle();
            ExpectTextsWhole(comms, QStringLiteral("FormComms"));
        }
    }
}

} // namespace ztv
