#include "widgets/FocusStyle.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace ztv {

namespace {

constexpr int buttonInset = 3;

bool HasFocusByKey(const QStyleOption &option) {
    return option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

void DrawOutline(QPainter &painter, const QRect &place, const QPen &pen) {
    painter.save();
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    painter.restore();
}

} // namespace

int FocusStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    const bool isMark = metric == PM_ExclusiveIndicatorWidth || metric == PM_ExclusiveIndicatorHeight;
    if (!isMark || widget == nullptr) {
        return usual;
    }
    const int text = QFontInfo(widget->font()).pixelSize();
    const int usualText = QFontInfo(QApplication::font()).pixelSize();
    return usual * std::max(text, usualText) / usualText;
}

void FocusStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_PanelButtonCommand && HasFocusByKey(*option)) {
        const QRect inside = option->rect.adjusted(buttonInset, buttonInset, -buttonInset, -buttonInset);
        DrawOutline(*painter, inside, QPen(option->palette.color(QPalette::ButtonText), 1, Qt::DotLine));
    }
}

void FocusStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    const bool isArea = qobject_cast<const QAbstractScrollArea *>(widget) != nullptr;
    if (element == CE_ShapedFrame && isArea && option->state.testFlag(State_HasFocus)) {
        DrawOutline(*painter, option->rect, QPen(option->palette.color(QPalette::Highlight)));
    }
}

} // namespace ztv
