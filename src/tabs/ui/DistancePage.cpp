#include "tabs/ui/DistancePage.h"

#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tabs/DistanceReading.h"
#include "tabs/ui/FlatBar.h"
#include "tabs/ui/LargeNumber.h"
#include "widgets/Controls.h"

#include <QHBoxLayout>
#include <QLabel>

namespace ztv {

namespace {

constexpr int barMin = 600; // raw units of the distance
constexpr int barMax = 42000;
constexpr int barHeight = 28; // pixels at factor 1, as the margin
constexpr int margin = 24;

} // namespace

DistancePage::DistancePage(const ClassZentrova &zentrova, QWidget *parent)
    : TabPage(4, parent),
      zentrova_(zentrova) {
    labelLargeLength_ =
        Controls::Named(new LargeNumber(QStringLiteral("420.00\""), this), "LabelLargeLength");

    progressBar1_ = Controls::Named(new FlatBar(this), "ProgressBar1");
    progressBar1_->setRange(barMin, barMax);
    progressBar1_->setValue(barMin);
    progressBar1_->setTextVisible(false);
    progressBar1_->setAccessibleName(zentrova_.ParamName(ParamDefines::ActualDistance));

    auto *labelMin = Controls::Named(new QLabel(QStringLiteral("6.00\""), this), "LabelMin");
    auto *label1 = Controls::Named(new QLabel(QStringLiteral("240.00\""), this), "Label1");

    auto *description = Controls::Named(
        new QLabel(
            QStringLiteral("This large distance display is useful for debugging when your computer is not "
                           "located near the Zentrova."),
            this),
        "LabelDistanceDesc");
    description->setWordWrap(true);
    description->setAlignment(Qt::AlignHCenter | Qt::AlignTop);

    auto *ends = new QHBoxLayout;
    ends->addWidget(labelMin);
    ends->addStretch();
    ends->addWidget(label1);

    layout_ = new QVBoxLayout(this);
    gap_ = new QSpacerItem(0, 0);
    layout_->addWidget(labelLargeLength_, 1);
    layout_->addWidget(progressBar1_);
    layout_->addLayout(ends);
    layout_->addItem(gap_);
    layout_->addWidget(description);
    DistancePage::Fit();
}

void DistancePage::Fit() {
    ScaleFont();
    progressBar1_->setFixedHeight(Scale().Pixels(barHeight));
    const int around = Scale().Pixels(margin);
    layout_->setContentsMargins(around, around, around, around);
    gap_->changeSize(0, around);
    layout_->invalidate();
}

void DistancePage::ShowState(ValueState state) {
    const bool live = state == ValueState::Live;
    labelLargeLength_->Dim(!live);
    progressBar1_->Dim(!live);
}

void DistancePage::UpdateDisplay() {
    const DistanceReading reading = ReadDistance(zentrova_, static_cast<float>(progressBar1_->minimum()),
                                                 static_cast<float>(progressBar1_->maximum()));
    labelLargeLength_->Show(reading.caption);
    if (reading.barValue) {
        progressBar1_->setValue(*reading.barValue);
    }
}

} // namespace ztv
