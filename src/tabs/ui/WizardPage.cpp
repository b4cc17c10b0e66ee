#include "tabs/ui/WizardPage.h"

#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"
#include "widgets/WhyDisabled.h"

namespace ztv {

namespace {

// Pixels at factor 1.
constexpr int margin = 24;
constexpr int textWidth = 420;
constexpr int buttonWidth = 110;

} // namespace

WizardPage::WizardPage(QWidget *parent) : TabPage(3, parent) {
    description_ = Controls::Named(
        new QLabel(
            QStringLiteral("A Wizard has been provided to assist users in setting up the Zentrova. Click the "
                           "'Start Wizard' button below to begin. You must be online to run the wizard."),
            this),
        "lblWizDesc");
    description_->setWordWrap(true);

    start_ = Controls::Captioned<QPushButton>("cmdStartWizard", "Start Wizard", this);
    start_->setEnabled(false);
    WhyDisabled::Explain(*start_, QStringLiteral("Go online first."));
    DeferredWork::OnPress(*start_, [this] { Q_EMIT StartWizard(); });

    layout_ = new QVBoxLayout(this);
    gap_ = new QSpacerItem(0, 0);
    layout_->addWidget(description_);
    layout_->addItem(gap_);
    layout_->addWidget(start_, 0, Qt::AlignLeft);
    layout_->addStretch();
    WizardPage::Fit();
}

void WizardPage::Fit() {
    ScaleFont();
    description_->setMaximumWidth(Scale().Pixels(textWidth));
    start_->setMinimumWidth(Scale().Pixels(buttonWidth));
    const int around = Scale().Pixels(margin);
    layout_->setContentsMargins(around, around, around, around);
    gap_->changeSize(0, around / 2);
    layout_->invalidate();
}

void WizardPage::EnableStart(bool online) {
    start_->setEnabled(online);
}

} // namespace ztv
