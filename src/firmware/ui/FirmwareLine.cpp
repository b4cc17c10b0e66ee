#include "firmware/ui/FirmwareLine.h"

#include <QHBoxLayout>

namespace ztv {

namespace {

// Works for files and folders of all kinds, also for those that don't exist yet; a watcher doesn't.
constexpr int lookEachMs = 1000;

} // namespace

FirmwareLine::FirmwareLine(const QString &usual, QWidget *parent)
    : QWidget(parent),
      usual_(usual),
      file_(usual),
      label_(new NoticeLabel("LabelFirmwareFile", NoticeLabel::Fit::Elided, this)) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label_);
    timer_.setInterval(lookEachMs);
    connect(&timer_, &QTimer::timeout, this, &FirmwareLine::LookAgain);
    Show();
}

void FirmwareLine::Choose(const QString &path) {
    file_ = FirmwareFile(path);
    Show();
    Q_EMIT FileChanged();
}

void FirmwareLine::LookAgain() {
    if (file_.HasChanged()) {
        Choose(file_.Path());
    }
}

void FirmwareLine::Show() {
    label_->Show(file_.IsGood() ? UpgradeNotice::Tone::Quiet : UpgradeNotice::Tone::Caution,
                 file_.Description(), file_.Path());
}

void FirmwareLine::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    timer_.start();
}

void FirmwareLine::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

} // namespace ztv
