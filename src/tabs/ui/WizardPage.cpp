#include "tabs/ui/WizardPage.h"

#include "ui/Controls.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int margin = 24;
constexpr int textWidth = 420;
constexpr int buttonWidth = 110;

} // namespace

WizardPage::WizardPage(QWidget *parent) : TabPage(3, parent) {
    auto *description = Controls::Named(
        new QLabel(
            QStringLiteral("A Wizard has been provided to assist users in setting up the Zentrova. Click the "
                           "'Start Wizard' button below to begin. You must be online to run the wizard."),
            this),
        "lblWizDesc");
    description->setWordWrap(true);
    description->setMaximumWidth(textWidth);

    auto *start = Controls::Named(new QPushButton(QStringLiteral("Start Wizard"), this), "cmdStartWizard");
    start->setAccessibleName(start->text());
    start->setMinimumWidth(buttonWidth);
    start->setEnabled(false);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(description);
    layout->addSpacing(margin / 2);
    layout->addWidget(start, 0, Qt::AlignLeft);
    layout->addStretch();
}
