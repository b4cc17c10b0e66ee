#pragma once

#include "tabs/ui/TabPage.h"

#include <QPushButton>

// The Wizard tab: the way into the setup wizard.
class WizardPage : public TabPage {
    Q_OBJECT

public:
    explicit WizardPage(QWidget *parent);
};
