#include "tabs/ui/WizardPage.h"

#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"
#include "widgets/WhyDisabled.h"

#include <QLabel>
#include <QVBoxLayout>

namespace ztv {

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

    start_ = Controls::Captioned<QPushButton>("cmdStartWizard", "Start Wizard", this);
    start_->setMinimumWidth(buttonWidth);
    start_->setEnabled(false);
    WhyDisabled::Explain(*start_, QStringLiteral("Go online first."));
    DeferredWork::OnPress(*start_, [this] { Q_EMIT StartWizard(); });

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(description);
    layout->addSpacing(margin / 2);
    layout->addWidget(start_, 0, Qt::AlignLeft);
    layout->addStretch();
}

void WizardPage::EnableStart(bool online) {
    start_->setEnabled(online);
}

} // namespace ztv
