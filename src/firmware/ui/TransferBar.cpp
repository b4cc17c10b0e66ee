#include "firmware/ui/TransferBar.h"

#include "firmware/TimeLeft.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"

#include <QEvent>
#include <QHBoxLayout>

namespace ztv {

namespace {

constexpr int steps = 1000;
constexpr qint64 wordsEachMs = 500; // a time that changes faster is hard to read

} // namespace

TransferBar::TransferBar(QWidget *parent)
    : QWidget(parent),
      progress_(Controls::Named(new QProgressBar(this), "ProgressTransfer")),
      timeLeft_(Controls::Named(new QLabel(this), "LabelTimeLeft")) {
    progress_->setRange(0, steps);
    progress_->setAccessibleName(QStringLiteral("Progress of the transfer"));
    timeLeft_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    timeLeft_->setMinimumWidth(
        timeLeft_->fontMetrics().horizontalAdvance(QStringLiteral("00 min 00 s left")));
    for (QWidget *part : {static_cast<QWidget *>(progress_), static_cast<QWidget *>(timeLeft_)}) {
        QSizePolicy policy = part->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        part->setSizePolicy(policy);
        part->hide();
    }
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(progress_, 1);
    row->addWidget(timeLeft_);
}

void TransferBar::Start(const QString &what) {
    transfers_.push_back({.what = what, .elapsed = {}});
    transfers_.back().elapsed.start();
    Show(what);
}

void TransferBar::Advance(double done) {
    Transfer &transfer = transfers_.back();
    progress_->setValue(static_cast<int>(done * steps));
    const qint64 now = transfer.elapsed.elapsed();
    if (now - transfer.shownAtMs >= wordsEachMs) {
        transfer.shownAtMs = now;
        timeLeft_->setText(TimeLeft(now, done));
    }
}

void TransferBar::End(bool finished) {
    const QString what = transfers_.back().what;
    transfers_.pop_back();
    if (!transfers_.empty()) {
        Show(transfers_.back().what);
    } else if (finished) {
        Hide();
    } else {
        ShowFailed(what);
    }
}

void TransferBar::Clear() {
    if (transfers_.empty()) {
        Hide();
    }
}

void TransferBar::Hide() {
    progress_->hide();
    timeLeft_->hide();
}

void TransferBar::Show(const QString &what) {
    failed_ = false;
    Colour();
    progress_->setFormat(what + QStringLiteral(" %p%"));
    progress_->setValue(0);
    timeLeft_->clear();
    progress_->show();
    timeLeft_->show();
}

void TransferBar::ShowFailed(const QString &what) {
    failed_ = true;
    Colour();
    progress_->setFormat(what + QStringLiteral(" stopped at %p%"));
    timeLeft_->hide();
}

void TransferBar::Colour() {
    QPalette palette;
    if (failed_) {
        const QColor red = Colours::Of(Colours::Red, this->palette());
        palette.setColor(QPalette::Highlight, red);
        palette.setColor(QPalette::HighlightedText, Colours::TextOn(red));
    }
    progress_->setPalette(palette);
}

void TransferBar::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        Colour();
    }
}

} // namespace ztv
