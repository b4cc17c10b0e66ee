#pragma once

#include "widgets/TabPage.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ztv {

// The Wizard tab: starts the setup wizard.
class WizardPage : public TabPage {
    Q_OBJECT

public:
    explicit WizardPage(QWidget *parent);

    // Enables the start button only online, because the wizard needs live distances.
    void EnableStart(bool online);

Q_SIGNALS:
    // Emitted from the event loop, so that an assistive client that pressed the button isn't blocked.
    void StartWizard();

protected:
    void Fit() override;

private:
    QVBoxLayout *layout_ = nullptr;
    QSpacerItem *gap_ = nullptr; // between the text and the button
    QLabel *description_ = nullptr;
    QPushButton *start_ = nullptr;
};

} // namespace ztv
