#include "widgets/FailedMark.h"

#include "widgets/Colours.h"

#include <QEvent>

namespace ztv {

namespace {

constexpr const char *markName = "FailedMark";
constexpr int edge = 2;   // pixels
constexpr int corner = 7; // side of the triangle that tells the mark from a coloured frame

const QString description = QStringLiteral("The sensor hasn't confirmed this value");

} // namespace

FailedMark::FailedMark(QWidget &control) : QWidget(&control) {
    setObjectName(QString::fromLatin1(markName));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    control.installEventFilter(this);
    Cover();
    show();
}

void FailedMark::Show(QWidget &control, bool failed) {
    auto *mark = control.findChild<FailedMark *>(QString::fromLatin1(markName), Qt::FindDirectChildrenOnly);
    if (failed && mark == nullptr) {
        mark = new FailedMark(control);
    }
    if (failed) {
        mark->Describe();
    } else if (mark != nullptr) {
        mark->TakeDescriptionBack();
        delete mark;
    }
}

// The control may have got another description of its own meanwhile.
void FailedMark::Describe() {
    if (parentWidget()->accessibleDescription() != description) {
        givenDescription_ = parentWidget()->accessibleDescription();
        parentWidget()->setAccessibleDescription(description);
    }
}

void FailedMark::TakeDescriptionBack() {
    if (parentWidget()->accessibleDescription() == description) {
        parentWidget()->setAccessibleDescription(givenDescription_);
    }
}

void FailedMark::Cover() {
    setGeometry(parentWidget()->rect());
    raise();
}

bool FailedMark::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize) {
        Cover();
    }
    return QWidget::eventFilter(watched, event);
}

void FailedMark::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    Paint(painter, rect(), palette());
}

void FailedMark::Paint(QPainter &painter, const QRect &place, const QPalette &palette) {
    const QColor colour = Colours::Of(Colours::Red, palette);
    painter.save();
    painter.setPen(QPen(colour, edge, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(place.adjusted(1, 1, -1, -1));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygon(
        {place.topLeft(), place.topLeft() + QPoint(corner, 0), place.topLeft() + QPoint(0, corner)}));
    painter.restore();
}

} // namespace ztv
