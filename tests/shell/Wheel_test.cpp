// Tests that the wheel scrolls on every form and changes no value.

#include "tests/helpers/AllForms.h"
#include "tests/helpers/Printers.h"

#include "model/ParamDefines.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QScrollBar>
#include <QTreeView>
#include <QWheelEvent>

namespace ztv {

namespace {

// All values of a form, as one text for each control.
QStringList ValuesIn(const QWidget &form) {
    QStringList values;
    for (const QWidget *widget : form.findChildren<QWidget *>()) {
        QString value;
        if (const auto *box = qobject_cast<const QLineEdit *>(widget)) {
            value = box->text();
        } else if (const auto *list = qobject_cast<const QComboBox *>(widget)) {
            value = QString::number(list->currentIndex());
        } else if (const auto *number = qobject_cast<const QAbstractSpinBox *>(widget)) {
            value = number->text();
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
            value = button->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
        } else if (const auto *strip = qobject_cast<const QTabBar *>(widget)) {
            value = QString::number(strip->currentIndex());
        } else if (const auto *rows = qobject_cast<const QAbstractItemView *>(widget)) {
            value = QString::number(rows->currentIndex().row());
        } else if (const auto *slider = qobject_cast<const QAbstractSlider *>(widget)) {
            value = qobject_cast<const QScrollBar *>(slider) == nullptr ? QString::number(slider->value())
                                                                        : QString();
        }
        values << widget->objectName() + u'=' + value;
    }
    return values;
}

// Turns the wheel as the desktop does: an event that a control ignores goes on to its parent.
void Turn(QWidget &widget, const QPoint &place, int turn) {
    QWidget &form = *widget.window();
    const QPointF inForm = widget.mapTo(&form, place);
    QWheelEvent wheel(inForm, form.mapToGlobal(inForm), QPoint(), QPoint(0, turn), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    QCoreApplication::instance()->notify(form.windowHandle(), &wheel);
    QApplication::processEvents();
}

} // namespace

using WheelTest = AllFormsTest;

TEST_F(WheelTest, ChangesNoValueOnAnyForm) {
    int lists = 0;
    VisitForms(light, [&](QWidget &form, const QString &name) {
        const std::int16_t tab = form_->CurrentTab();
        for (QWidget *widget : form.findChildren<QWidget *>()) {
            if (!widget->isVisible() || widget->window() != &form) {
                continue;
            }
            lists += qobject_cast<QComboBox *>(widget) != nullptr ? 1 : 0;
            for (const bool focused : {false, true}) {
                if (focused && (widget->focusPolicy() == Qt::NoFocus || !widget->isEnabled())) {
                    continue;
                }
                if (focused) {
                    widget->setFocus(Qt::TabFocusReason);
                    Settle(); // the box formats its value when the focus leaves it
                }
                const QStringList before = ValuesIn(form);
                for (const int turn : {-120, 120, 120, -120, -120}) {
                    Turn(*widget, widget->rect().center(), turn);
                    EXPECT_EQ(ValuesIn(form), before)
                        << qPrintable(name) << ": " << widget->metaObject()->className() << ' '
                        << qPrintable(widget->objectName());
                }
            }
        }
        EXPECT_EQ(form_->CurrentTab(), tab);
    });
    EXPECT_GE(lists, 4); // the communications dialog's, offline and online
}

class WheelOnAdvancedTest : public WheelTest {
protected:
    WheelOnAdvancedTest() {
        Start();
        form_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
        Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(1);
        Settle();
    }

    QTreeView &List() const { return Ui().Get<QTreeView>("ListView1"); }
    QComboBox &Choice() const { return Ui().Get<QComboBox>("Combo1"); }

    void Edit(std::int16_t tag) const {
        List().setFocus();
        List().setCurrentIndex(List().model()->index(tag - 1, 0));
        QTest::keyClick(&List(), Qt::Key_F2);
        ASSERT_TRUE(Choice().isVisible());
    }
};

TEST_F(WheelOnAdvancedTest, LeavesTheChoiceOfTheDropDownList) {
    Edit(ParamDefines::AnalogOutputMode);
    const int before = Choice().currentIndex();
    for (const int turn : {-120, -120, 120, 120, 120}) {
        Turn(Choice(), Choice().rect().center(), turn);
        EXPECT_EQ(Choice().currentIndex(), before);
    }
    EXPECT_TRUE(Choice().isVisible());
    List().setFocus(); // and a click elsewhere
    Settle();
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(WheelOnAdvancedTest, ScrollsTheList) {
    ASSERT_EQ(List().verticalScrollBar()->value(), 0);
    Turn(*List().viewport(), List().viewport()->rect().center(), -120);
    EXPECT_GT(List().verticalScrollBar()->value(), 0);
}

TEST_F(WheelOnAdvancedTest, ScrollsTheTextsOfAListThatIsOpen) {
    auto &longList = *new QComboBox(form_->centralWidget());
    for (int i = 0; i < 100; ++i) {
        longList.addItem(QString::number(i));
    }
    longList.show();
    longList.showPopup();
    Settle();
    QScrollBar &bar = *longList.view()->verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    Turn(*longList.view()->viewport(), longList.view()->viewport()->rect().center(), -120);
    EXPECT_GT(bar.value(), 0);
    longList.hidePopup();
    EXPECT_EQ(longList.currentIndex(), 0);
}

} // namespace ztv
