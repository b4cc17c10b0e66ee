#include "tabs/ui/ImageListCheckout.h"

namespace ztv {

namespace ImageListCheckout {

const QIcon &Picture(Key key) {
    static const QIcon red(QStringLiteral(":/icons/indicator-red.svg"));
    static const QIcon gray(QStringLiteral(":/icons/indicator-gray.svg"));
    static const QIcon green(QStringLiteral(":/icons/indicator-green.svg"));
    static const QIcon on(QStringLiteral(":/icons/switch-on.svg"));
    static const QIcon off(QStringLiteral(":/icons/switch-off.svg"));
    switch (key) {
    case Key::Red:
        return red;
    case Key::Green:
        return green;
    case Key::On:
        return on;
    case Key::Off:
        return off;
    case Key::Gray:
        break;
    }
    return gray;
}

QString Word(Key key) {
    return key == Key::Gray || key == Key::Off ? QStringLiteral("off") : QStringLiteral("on");
}

} // namespace ImageListCheckout

} // namespace ztv
