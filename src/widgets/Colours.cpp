#include "widgets/Colours.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>
#include <cmath>
#include <optional>

namespace ztv {

namespace Colours {

namespace {

double Luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor Between(const QColor &from, const QColor &to, double part) {
    const auto mix = [part](double a, double b) { return static_cast<float>(a + (b - a) * part); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

class LegibilityKeeper : public QObject {
public:
    explicit LegibilityKeeper(QWidget &control) : QObject(&control), control_(control) {
        control.installEventFilter(this);
    }

    void Keep(Legible what) {
        if (what_ != what) {
            what_ = what;
            Colour();
        }
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::PaletteChange) {
            Colour();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static constexpr QPalette::ColorRole roles_[] = {QPalette::Text, QPalette::WindowText,
                                                     QPalette::ButtonText};

    // Starts from the disabled colour of the desktop: the control's own may be one that was set here. Sets
    // these roles alone, so that the others follow the page and the desktop.
    void Colour() {
        if (colouring_) {
            return;
        }
        colouring_ = true;
        QPalette present = control_.palette();
        present.setColor(QPalette::Disabled, QPalette::Text,
                         QApplication::palette(&control_).color(QPalette::Disabled, QPalette::Text));
        const QColor dimmed = LegibleDisabledText(present);
        QPalette own;
        for (const QPalette::ColorRole role : roles_) {
            own.setColor(QPalette::Disabled, role,
                         what_ == Legible::Entry ? dimmed : present.color(QPalette::Active, role));
        }
        control_.setPalette(own);
        colouring_ = false;
    }

    QWidget &control_;
    std::optional<Legible> what_;
    bool colouring_ = false;
};

} // namespace

QColor Of(const Pair &pair, const QPalette &palette) {
    const bool dark = TextOn(palette.color(QPalette::Active, QPalette::Base)) == QColor(Qt::white);
    return QColor::fromRgb(dark ? pair.onDark : pair.onLight);
}

QColor TextOn(const QColor &ground) {
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return Contrast(ground, white) > Contrast(ground, black) ? white : black;
}

double Contrast(const QColor &one, const QColor &other) {
    const double a = Luminance(one);
    const double b = Luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor LegibleDisabledText(const QPalette &palette, double contrast) {
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor start = palette.color(QPalette::Disabled, QPalette::Text);
    QColor colour = start;
    constexpr int steps = 20;
    const auto legible = [&] {
        for (const QPalette::ColorRole ground : {QPalette::Base, QPalette::Window, QPalette::Button}) {
            if (Contrast(colour, palette.color(QPalette::Disabled, ground)) < contrast) {
                return false;
            }
        }
        return true;
    };
    for (int step = 1; step <= steps && !legible(); ++step) {
        colour = Between(start, text, 1.0 * step / steps);
    }
    return colour;
}

void KeepLegibleWhileDisabled(QWidget &control, Legible what) {
    for (QObject *child : control.children()) {
        if (auto *keeper = dynamic_cast<LegibilityKeeper *>(child)) {
            keeper->Keep(what);
            return;
        }
    }
    (new LegibilityKeeper(control))->Keep(what);
}

} // namespace Colours

} // namespace ztv
