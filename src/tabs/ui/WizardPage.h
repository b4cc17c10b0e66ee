#pragma once

#include "widgets/TabPage.h"

#include <QPushButton>

// The Wizard tab: the way into the setup wizard.
class WizardPage : public TabPage {
    Q_OBJECT

public:
    explicit WizardPage(QWidget *parent);

    // The wizard needs live distances.
    void EnableStart(bool online);

Q_SIGNALS:
    // From the event loop: an assistive client that pressed the button mustn't be kept waiting.
    void StartWizard();

private:
    QPushButton *start_ = nullptr;
};
