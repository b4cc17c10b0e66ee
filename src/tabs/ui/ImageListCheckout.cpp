#include "tabs/ui/ImageListCheckout.h"

#include "widgets/Picture.h"

namespace ztv {

namespace ImageListCheckout {

const QIcon &Picture(Key key) {
    static const QIcon red = IconNamed(QStringLiteral("indicator-red"));
    static const QIcon gray = IconNamed(QStringLiteral("indicator-gray"));
    static const QIcon green = IconNamed(QStringLiteral("indicator-green"));
    static const QIcon on = IconNamed(QStringLiteral("switch-on"));
    static const QIcon off = IconNamed(QStringLiteral("switch-off"));
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
