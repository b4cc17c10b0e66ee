#include "tabs/ui/TabPage.h"

#include "ui/Controls.h"

TabPage::TabPage(int number, QWidget *parent) : QFrame(parent) {
    Controls::Named(this, Controls::Member("TabFrame", number));
    setFrameShape(QFrame::NoFrame);
}
