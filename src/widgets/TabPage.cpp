#include "widgets/TabPage.h"

#include "widgets/Controls.h"

#include <QApplication>

namespace ztv {

TabPage::TabPage(int number, QWidget *parent) : QFrame(parent) {
    Controls::Named(this, Controls::Member("TabFrame", number));
    setFrameShape(QFrame::NoFrame);
}

void TabPage::resizeEvent(QResizeEvent *event) {
    QFrame::resizeEvent(event);
    scale_ = PageScale::Fitting(size());
    Fit();
}

void TabPage::ScaleFont() {
    const QFont scaled =
        scale_.Font(parentWidget() == nullptr ? QApplication::font() : parentWidget()->font());
    if (font() != scaled) {
        setFont(scaled);
    }
}

} // namespace ztv
