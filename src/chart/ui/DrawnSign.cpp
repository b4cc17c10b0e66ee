#include "chart/ui/DrawnSign.h"

#include "chart/ui/DrawingPainter.h"
#include "widgets/Controls.h"

#include <QPainter>

namespace ztv {

namespace {

constexpr double numberPart = 5.0 / 6; // of the height

} // namespace

DrawnSign::DrawnSign(const BasicDrawing &drawing, Drawing::ControlId id, QWidget *parent)
    : QWidget(parent),
      drawing_(drawing),
      id_(id) {
    Controls::Named(this, Drawing::ToString(drawing.At(id).name));
}

void DrawnSign::ShowTexts() {
    const QString &text = drawing_.At(id_).toolTip;
    setToolTip(text);
    setAccessibleName(text);
}

void DrawnSign::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const Drawing::Control &sign = drawing_.At(id_);
    const QColor colour = DrawingPainter::ColourOf(drawing_.ColourOf(sign), palette());
    const QRect figure(0, 0, height(), height());
    const QRect number = rect().adjusted(figure.width(), 0, 0, 0);
    painter.fillRect(rect(), palette().color(parentWidget()->backgroundRole()));
    if (sign.figure == Drawing::Figure::Lamp) {
        DrawingPainter::PaintLamp(painter, figure, sign.lit, colour);
    } else if (sign.figure == Drawing::Figure::Warning) {
        DrawingPainter::PaintWarning(painter, figure, palette());
    }
    QFont bold = font();
    bold.setPixelSize(qRound(height() * numberPart));
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(colour);
    painter.drawText(number, Qt::AlignCenter | Qt::TextDontClip, sign.caption);
}

} // namespace ztv
