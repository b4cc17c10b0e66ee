#include "setup/ui/RollGraphic.h"

#include "widgets/Controls.h"

#include <QPainter>

namespace ztv {

namespace {

// A value and its place in the drawing.
struct Value {
    const char *meaning = nullptr;
    QRect place;
    Qt::Alignment alignment;
};
const Value values[] = {{"Core Diameter", {90, 216, 80, 16}, Qt::AlignHCenter},
                        {"Max Diameter", {80, 267, 100, 16}, Qt::AlignHCenter},
                        {"Distance to Core", {204, 80, 52, 16}, Qt::AlignLeft},
                        {"Distance to Max", {4, 66, 52, 16}, Qt::AlignRight}};
const QPoint rollCentre(130, 180);
constexpr int fullRadius = 70;
constexpr int coreRadius = 24;

class Circle : public QWidget {
public:
    Circle(const char *name, int radius, const QColor &ground, const QPen &pen, QWidget *parent)
        : QWidget(parent),
          ground_(ground),
          pen_(pen) {
        Controls::Named(this, name);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(rollCentre.x() - radius - 1, rollCentre.y() - radius - 1, 2 * radius + 2, 2 * radius + 2);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(pen_);
        painter.setBrush(ground_);
        painter.drawEllipse(QRectF(rect()).adjusted(2, 2, -2, -2));
    }

private:
    QColor ground_;
    QPen pen_;
};

} // namespace

RollGraphic::RollGraphic(QWidget *parent) : StepPicture(QStringLiteral(":/wizard/roll"), parent) {
    Controls::Named(this, "FrameGraphic");
    const QColor ink(0x37, 0x47, 0x4f);
    new Circle("ShapeMax", fullRadius, QColor(0xe0, 0xf7, 0xfa), QPen(QColor(0x00, 0x83, 0x8f), 2), this);
    new Circle("ShapeCore", coreRadius, QColor(0xb0, 0xbe, 0xc5), QPen(ink, 2), this);
    new StepPicture(QStringLiteral(":/wizard/roll-measures"), this);
    QFont font = this->font();
    font.setBold(true);
    for (const Value &value : values) { // one size for all
        font = Controls::FittingFont(font, {{.text = QStringLiteral("200.00"),
                                             .width = value.place.width(),
                                             .height = value.place.height()}});
    }
    std::size_t index = 0;
    for (const Value &value : values) {
        auto *label =
            Controls::Named(new QLabel(this), Controls::Member("LabelGraphic", static_cast<int>(index)));
        label->setAccessibleDescription(QString::fromLatin1(value.meaning));
        label->setGeometry(value.place);
        label->setAlignment(value.alignment | Qt::AlignVCenter);
        QPalette colours = label->palette(); // the drawing's ink, in any colour scheme
        colours.setColor(QPalette::WindowText, ink);
        label->setPalette(colours);
        label->setFont(font);
        labelGraphic_[index++] = label;
    }
}

void RollGraphic::Show(const WizardCalibration::Roll &roll) {
    const QString *const texts[] = {&roll.coreDiameter, &roll.maxDiameter, &roll.distanceToCore,
                                    &roll.distanceToMax};
    for (std::size_t index = 0; index < labelGraphic_.size(); ++index) {
        labelGraphic_[index]->setText(*texts[index]);
    }
}

} // namespace ztv
