#include "shell/StatusBarCells.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QTextDocument>
#include <algorithm>
#include <array>

namespace ztv {

namespace {

using Kind = StatusCell::Kind;
using Shape = StatusCell::Shape;
using Tone = StatusCell::Tone;

constexpr int gap = 3;
constexpr int sideMargin = 5;
constexpr int corner = 3;
constexpr int shapeGap = 2;
constexpr double chipFont = 1.1;   // of the bar's
constexpr double shapePart = 0.75; // of a capital letter's line

struct CellName {
    const char *name;
    const char *spoken; // until it has a fact
};

// By kind.
constexpr std::array names = {
    CellName{"CellState", "State of the values"},
    CellName{"CellNotSaved", "Changes not saved in the sensor"},
    CellName{"CellOutputForced", "Analog output"},
    CellName{"CellLineQuality", "Line quality"},
    CellName{"CellAddress", "Network address"},
    CellName{"CellDevice", "Port"},
    CellName{"CellLineSetting", "Line setting"},
    CellName{"CellSensor", "Sensor"},
    CellName{"CellEcho", "Echo strength"},
    CellName{"CellFile", "Settings file"},
};

constexpr Colours::Pair liveGround{0xff1b7a2f, 0xff5fc46a};
constexpr Colours::Pair warningGround{0xffffc94d, 0xffe0a526};
constexpr Colours::Pair dimmedGround{0xffc4c4c4, 0xff5a5a5a};

QColor GroundOf(Tone tone, const QPalette &palette) {
    switch (tone) {
    case Tone::Good:
        return Colours::Of(liveGround, palette);
    case Tone::Warning:
        return Colours::Of(warningGround, palette);
    default:
        return Colours::Of(dimmedGround, palette);
    }
}

QColor TextColour(Tone tone, const QPalette &palette) {
    switch (tone) {
    case Tone::Warning:
        return Colours::Of(Colours::Amber, palette);
    case Tone::Alarm:
        return Colours::Of(Colours::Red, palette);
    case Tone::Dimmed:
        return Colours::LegibleDisabledText(palette);
    default:
        return palette.color(QPalette::WindowText);
    }
}

void DrawShape(QPainter &painter, Shape shape, const QRectF &place) {
    constexpr double line = 2;
    switch (shape) {
    case Shape::Circle:
        painter.drawEllipse(place);
        break;
    case Shape::Triangle:
        painter.drawPolygon(
            QPolygonF({place.bottomLeft(), {place.center().x(), place.top()}, place.bottomRight()}));
        break;
    case Shape::Bars:
        for (const double left : {place.left(), place.right() - place.width() / 3}) {
            painter.drawRect(QRectF(left, place.top(), place.width() / 3, place.height()));
        }
        break;
    case Shape::Square:
        painter.setPen(QPen(painter.brush().color(), line, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(place.adjusted(line / 2, line / 2, -line / 2, -line / 2));
        break;
    default:
        break;
    }
}

} // namespace

StatusCellButton::StatusCellButton(Kind kind, QWidget *parent) : QAbstractButton(parent) {
    const CellName &row = names.at(static_cast<std::size_t>(kind));
    Controls::Named(this, row.name);
    setAccessibleName(QString::fromLatin1(row.spoken));
    cell_.kind = kind;
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus); // a click leaves the focus with the text being typed
    hide();
}

QFont StatusCellButton::CellFont() const {
    QFont font = this->font();
    if (IsChip()) {
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * chipFont);
    } else if (cell_.tone == Tone::Warning || cell_.tone == Tone::Alarm) {
        font.setBold(true);
    }
    return font;
}

int StatusCellButton::ShapeWidth() const {
    return cell_.shape == Shape::None ? 0 : QFontMetrics(CellFont()).ascent() + shapeGap;
}

// Once for each change: a poll must not measure texts that are the same.
void StatusCellButton::Measure() {
    QFont widest = CellFont();
    const QFontMetrics metrics(widest);
    widest.setBold(true); // as it may become
    const int text =
        std::max(metrics.horizontalAdvance(cell_.text), QFontMetrics(widest).horizontalAdvance(cell_.widest));
    size_ = QSize(text + ShapeWidth() + 2 * sideMargin, metrics.height());
}

QSize StatusCellButton::sizeHint() const {
    return size_;
}

void StatusCellButton::Show(const StatusCell &cell) {
    if (cell == cell_) {
        return;
    }
    cell_ = cell;
    Measure();
    setText(cell.text);
    setAccessibleName(cell.spoken);
    setAccessibleDescription(cell.action);
    const QString toolTip = QStringLiteral("%1.\n%2").arg(cell.spoken, cell.action);
    setToolTip(Qt::mightBeRichText(toolTip) ? Qt::convertFromPlainText(toolTip) : toolTip); // a file's name
    update();
}

void StatusCellButton::changeEvent(QEvent *event) {
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        Measure();
    }
}

void StatusCellButton::enterEvent(QEnterEvent *event) {
    QAbstractButton::enterEvent(event);
    update();
}

void StatusCellButton::leaveEvent(QEvent *event) {
    QAbstractButton::leaveEvent(event);
    update();
}

void StatusCellButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(CellFont());
    QColor colour = TextColour(cell_.tone, palette());
    const QRectF edge = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (IsChip()) {
        const QColor ground = GroundOf(cell_.tone, palette());
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(edge, corner, corner);
        colour = Colours::TextOn(ground);
    }
    if (hasFocus() || underMouse()) {
        painter.setPen(
            QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2 : 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(edge, corner, corner);
    }
    const QFontMetrics metrics(painter.font());
    const double side = metrics.ascent() * shapePart;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    DrawShape(painter, cell_.shape, {double(sideMargin), (height() - side) / 2, side, side});
    painter.setPen(colour);
    painter.drawText(rect().adjusted(sideMargin + ShapeWidth(), 0, -sideMargin, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, cell_.text);
}

StatusBarCells::StatusBarCells(QWidget *parent) : QWidget(parent) {
    Controls::Named(this, "StatusCells");
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    for (std::size_t index = 0; index < names.size(); ++index) {
        const auto kind = static_cast<Kind>(index);
        auto *button = new StatusCellButton(kind, this);
        DeferredWork::OnPress(*button, [this, kind] { Q_EMIT Pressed(kind); });
        buttons_.push_back(button);
    }
}

void StatusBarCells::Show(const std::vector<StatusCell> &cells) {
    std::vector<Kind> kinds;
    bool isMoved = false;
    for (const StatusCell &cell : cells) {
        StatusCellButton &button = Button(cell.kind);
        const QSize before = button.sizeHint();
        button.Show(cell);
        isMoved = isMoved || button.sizeHint() != before;
        kinds.push_back(cell.kind);
    }
    if (isMoved || kinds != shown_) {
        shown_ = std::move(kinds);
        updateGeometry();
        LayOut();
    }
}

void StatusBarCells::LayOut() {
    std::vector<int> widths;
    widths.reserve(shown_.size());
    for (const Kind kind : shown_) {
        widths.push_back(Button(kind).sizeHint().width());
    }
    const std::size_t count = CellsThatFit(widths, gap, width());
    const auto fitting = shown_.begin() + static_cast<std::ptrdiff_t>(count);
    for (StatusCellButton *button : buttons_) {
        button->setVisible(std::find(shown_.begin(), fitting, button->Cell().kind) != fitting);
    }
    int left = 0;
    for (std::size_t index = 0; index < count; ++index) {
        Button(shown_[index]).setGeometry(left, 0, widths[index], height());
        left += widths[index] + gap;
    }
}

QSize StatusBarCells::sizeHint() const {
    QSize size(0, 0);
    for (const Kind kind : shown_) {
        const QSize cell = Button(kind).sizeHint();
        size = {size.width() + gap + cell.width(), std::max(size.height(), cell.height())};
    }
    return size;
}

QSize StatusBarCells::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void StatusBarCells::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    LayOut();
}

// A change of font reaches the cells first, which then measure anew.
bool StatusBarCells::event(QEvent *event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
        LayOut();
    }
    return done;
}

} // namespace ztv
