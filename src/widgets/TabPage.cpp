#include "widgets/TabPage.h"

#include "widgets/Controls.h"

namespace ztv {

TabPage::TabPage(int number, QWidget *parent) : QFrame(parent) {
    Controls::Named(this, Controls::Member("TabFrame", number));
    setFrameShape(QFrame::NoFrame);
}

} // namespace ztv
