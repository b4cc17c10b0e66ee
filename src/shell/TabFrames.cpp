#include "shell/TabFrames.h"

#include "support/Fault.h"
#include "widgets/Controls.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeySequence>
#include <QPixmap>
#include <QSet>
#include <QTabBar>
#include <algorithm>

namespace ztv {

namespace {

// Twips.
constexpr int stripLeft = 120;
constexpr int stripTop = 150;
constexpr int frameLeftInStrip = 250;
constexpr int frameTopInStrip = 325;
constexpr int besideStrip = 350;
constexpr int aboveAndBelowStrip = 2300;
constexpr int besideFrame = 400;
constexpr int aboveAndBelowFrame = 800;

// The least of them, in a form that is smaller than the least one.
constexpr int leastBesideFrame = 60; // on either side
constexpr int leastBelowFrame = 75;
constexpr int leastBelowStrip = 30;

constexpr int tabFrame = 5; // pixels of a tab above and below its caption

int ToTwips(int pixels) {
    return pixels * Controls::TwipsPerPixel;
}

} // namespace

TabFrames::TabFrames(QWidget &area, bool withCheckout)
    : QObject(&area),
      area_(area),
      strip_(Controls::Named(new QTabWidget(&area), "TabStrip1")) {
    strip_->setUsesScrollButtons(false);
    // A click on a tab moves the focus too, so that the entry being edited is validated before the page
    // hides.
    strip_->tabBar()->setFocusPolicy(Qt::StrongFocus);
    // The pages lie over the strip, directly below its tabs.
    const int tabHeight = Controls::FromTwips(0, 0, 0, frameTopInStrip).height();
    strip_->tabBar()->setFixedHeight(tabHeight);
    strip_->tabBar()->setFont(
        Controls::FittingFont(area.font(), {{.text = {}, .width = 0, .height = tabHeight - tabFrame}}));
    for (const Tab::Description &tab : Tab::Table) {
        if (tab.number != Tab::Checkout || withCheckout) {
            AddTab(tab, tab.caption);
        }
    }
    connect(strip_, &QTabWidget::currentChanged, this, &TabFrames::Select);
}

void TabFrames::AddTab(const Tab::Description &tab, const char *caption) {
    shown_.push_back({.tab = &tab, .caption = QString::fromLatin1(caption)});
    strip_->addTab(Controls::Named(new QWidget, tab.key), shown_.back().caption);
}

void TabFrames::AddCheckout() {
    const Tab::Description &tab = Tab::Table[Tab::Checkout - 1];
    if (strip_->findChild<QWidget *>(QString::fromLatin1(tab.key)) != nullptr) {
        throw Fault::DuplicateKey(QString::fromLatin1(tab.key));
    }
    AddTab(tab, tab.key);
}

void TabFrames::SetPage(std::int16_t number, TabPage *page) {
    pages_.at(static_cast<std::size_t>(number) - 1) = page;
    page->setVisible(number == currentTab_);
    strip_->lower();
}

int TabFrames::IndexOf(std::int16_t number) const {
    const auto found =
        std::ranges::find(shown_, number, [](const Shown &shown) { return shown.tab->number; });
    return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

void TabFrames::Show(std::int16_t number) {
    strip_->setCurrentIndex(IndexOf(number));
}

void TabFrames::Select(int stripIndex) {
    if (stripIndex < 0) {
        return;
    }
    const Tab::Description &selected = *shown_.at(static_cast<std::size_t>(stripIndex)).tab;
    if (selected.number == currentTab_) {
        return;
    }
    Q_EMIT Leaving();
    // Moves the focus, because a tab's mnemonic doesn't, and the control being edited hides with its page.
    strip_->tabBar()->setFocus(Qt::OtherFocusReason);
    if (strip_->currentIndex() != stripIndex) {
        return; // the user has selected another tab meanwhile
    }
    CurrentPage().hide();
    if (selected.helpContext != 0) {
        helpContext_ = selected.helpContext;
    }
    currentTab_ = selected.number;
    LayOut();
    CurrentPage().show();
    LeaveMnemonicsToPage();
    Q_EMIT Changed();
}

// Removes the mnemonic of a tab while a button on the visible page has the same one.
void TabFrames::LeaveMnemonicsToPage() {
    QSet<QKeySequence> taken;
    for (const QAbstractButton *button : CurrentPage().findChildren<QAbstractButton *>()) {
        taken.insert(QKeySequence::mnemonic(button->text()));
    }
    for (int index = 0; index < strip_->count(); ++index) {
        QString caption = shown_.at(static_cast<std::size_t>(index)).caption;
        if (taken.contains(QKeySequence::mnemonic(caption))) {
            caption.remove(u'&');
        }
        strip_->setTabText(index, caption);
    }
}

void TabFrames::LayOutBeside(QSize bars) {
    bars_ = bars;
    area_.installEventFilter(this);
    LayOut();
}

bool TabFrames::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize && !area_.window()->isMinimized()) {
        LayOut();
    }
    return QObject::eventFilter(watched, event);
}

// Lays out by the given distances. A form that is smaller than the least one, on a screen without room for
// it, takes from the space around the page first, so that the page is as large as it can be.
void TabFrames::LayOut() {
    const QSize form = (area_.size() + bars_) * Controls::TwipsPerPixel;
    const int narrower = std::max(LeastWidth - form.width(), 0);
    const int lower = std::max(LeastHeight - form.height(), 0);

    const int stripWidth = form.width() - besideStrip;
    const int frameLeft = std::max(frameLeftInStrip - narrower, leastBesideFrame);
    const int frameRight = std::max(besideFrame - frameLeftInStrip - narrower, leastBesideFrame);

    const int below = std::max(aboveAndBelowFrame - frameTopInStrip - lower, leastBelowFrame);
    const int aroundFrame = frameTopInStrip + below;
    const int wanted =
        ToTwips(PageScale(PageScale::Least).Pixels(PageScale::LeastPage).height()) + aroundFrame;
    const int most = area_.height() * Controls::TwipsPerPixel - stripTop - leastBelowStrip;
    const int stripHeight = std::max(form.height() - aboveAndBelowStrip, std::min(wanted, most));

    strip_->setGeometry(Controls::FromTwips(stripLeft, stripTop, stripWidth, stripHeight));
    CurrentPage().setGeometry(Controls::FromTwips(stripLeft + frameLeft, stripTop + frameTopInStrip,
                                                  stripWidth - frameLeft - frameRight,
                                                  stripHeight - aroundFrame));
    Q_EMIT LaidOut();
}

QRect TabFrames::Band() const {
    const QRect strip = strip_->geometry();
    return {strip.left(), strip.bottom() + 1, strip.width(), area_.height() - strip.bottom() - 1};
}

void TabFrames::Colour() {
    constexpr int sample = 3;
    QPixmap behind(sample, sample);
    const QPoint middle = strip_->rect().center();
    strip_->render(&behind, QPoint(), QRect(middle, behind.size()), QWidget::DrawWindowBackground);
    for (TabPage *page : pages_) {
        QPalette palette = page->palette();
        palette.setColor(QPalette::Window, behind.toImage().pixelColor(sample / 2, sample / 2));
        page->setPalette(palette);
    }
}

} // namespace ztv
