#include "shell/MessageStrip.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace ztv {

namespace {

using Severity = StripMessage::Severity;

constexpr int margin = 6;
constexpr int leastWidth = 657; // in the smallest form
constexpr double worthwhile =
    1.25; // a line that is less larger than the usual one isn't worth losing two lines

constexpr Colours::Pair alarmGround{0xffb3261e, 0xffff8a80};
constexpr Colours::Pair warningGround{0xffffc94d, 0xffe0a526};
constexpr Colours::Pair noteGround{0xffd7e3f4, 0xff33475e};

Colours::Pair GroundOf(Severity severity) {
    switch (severity) {
    case Severity::Alarm:
        return alarmGround;
    case Severity::Warning:
        return warningGround;
    default:
        return noteGround;
    }
}

// Differs by severity, for those who can't tell the colours apart.
QString SymbolOf(Severity severity) {
    switch (severity) {
    case Severity::Alarm:
        return QStringLiteral("\u2716");
    case Severity::Warning:
        return QStringLiteral("\u25B2");
    default:
        return QStringLiteral("\u25CF");
    }
}

struct ButtonRow {
    StripAction action;
    const char *name;
    const char *caption;
    const char *toolTip;
};

constexpr ButtonRow buttonRows[] = {
    {StripAction::ResetCounters, "StripReset", "Reset", "Sets both counters to 0"},
    {StripAction::Online, "StripOnline", "Online", "Connects to the sensor"},
    {StripAction::Communications, "StripCommunications", "Communications...", "Shows port, line and address"},
    {StripAction::Search, "StripSearch", "Search...", "Goes offline and searches the line for sensors"},
    {StripAction::GoOffline, "StripOffline", "Go Offline", "Closes the serial port"},
    {StripAction::StartWizard, "StripWizard", "Start Wizard", "Opens the setup wizard"},
    {StripAction::OpenFile, "StripOpen", "Open File...", "Opens another settings file"},
    {StripAction::SaveAs, "StripSaveAs", "Save As...", "Saves to another file"},
    {StripAction::Dismiss, "StripDismiss", "Dismiss", "Takes this message away"},
    {StripAction::Help, "StripHelp", "Help", "Says what to do"},
};

// Makes a screen reader speak the strip when it shows: it does so for an alert.
class SpokenStrip : public QAccessibleWidget {
public:
    explicit SpokenStrip(MessageStrip *strip) : QAccessibleWidget(strip, QAccessible::AlertMessage) {}
};

QAccessibleInterface *SpokenInterface(const QString &, QObject *object) {
    auto *strip = qobject_cast<MessageStrip *>(object);
    return strip != nullptr ? new SpokenStrip(strip) : nullptr;
}

void Tell(QWidget &widget, QAccessible::Event type) {
    QAccessibleEvent event(&widget, type);
    QAccessible::updateAccessibility(&event);
}

} // namespace

MessageStrip::MessageStrip(QWidget *parent)
    : QFrame(parent),
      symbol_(new QLabel(this)),
      headline_(Controls::Named(new QLabel(this), "StripHeadline")),
      detail_(Controls::Named(new QLabel(this), "StripDetail")) {
    QAccessible::installFactory(SpokenInterface);
    Controls::Named(this, "MessageStrip");
    setAutoFillBackground(true);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    for (QLabel *label : {headline_, detail_}) {
        label->setTextFormat(Qt::PlainText);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // never wider than the room there is
        texts->addWidget(label);
    }
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(margin, 0, margin, 0);
    row->addWidget(symbol_);
    row->addLayout(texts, 1);
    for (const ButtonRow &entry : buttonRows) {
        auto *button = Controls::Captioned<QPushButton>(entry.name, entry.caption, this);
        button->setToolTip(QString::fromLatin1(entry.toolTip));
        DeferredWork::OnPress(*button, [this, action = entry.action] { Q_EMIT Pressed(action); });
        row->addWidget(button);
        buttons_.emplace_back(entry.action, button);
    }
    hide();
}

void MessageStrip::Show(const std::optional<StripMessage> &message) {
    if (message == shown_) {
        return;
    }
    const std::optional<StripMessage> before = std::exchange(shown_, message);
    if (!shown_) {
        hide();
        return;
    }
    const bool isOther = !before || before->kind != shown_->kind;
    if (isOther) {
        ShowButtons();
        Colour();
        ChooseFont();
    }
    ShowTexts();
    if (isOther) {
        const bool wasVisible = isVisible();
        show();
        Tell(*this, QAccessible::Alert);
        if (wasVisible) {
            Tell(*this, QAccessible::ObjectShow); // Qt passes no Alert on to the bus of Linux
        }
    }
}

void MessageStrip::PlaceIn(const QRect &band, int lowest) {
    constexpr int gap = 2;
    QRect place = band.adjusted(0, gap, 0, -gap);
    const int missing = sizeHint().height() - place.height();
    place.setTop(std::max(lowest + gap, place.top() - std::max(missing, 0)));
    setGeometry(place);
}

void MessageStrip::ShowButtons() {
    for (const auto &[action, button] : buttons_) {
        button->setVisible(std::ranges::find(shown_->actions, action) != shown_->actions.end());
    }
}

void MessageStrip::Colour() {
    if (!shown_) {
        return;
    }
    const QWidget &around = *parentWidget();
    const QColor ground = Colours::Of(GroundOf(shown_->severity), around.palette());
    QPalette palette = around.palette();
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, Colours::TextOn(ground));
    setPalette(palette);
    symbol_->setText(SymbolOf(shown_->severity));
}

// Elides what doesn't fit; the tool tip has it all.
void MessageStrip::ShowTexts() {
    if (!shown_) {
        return;
    }
    const auto show = [](QLabel &label, const QString &text) {
        label.setText(label.isHidden() ? text
                                       : label.fontMetrics().elidedText(text, Qt::ElideRight, label.width()));
        label.setAccessibleName(text);
    };
    const QString line = shown_->headline + QStringLiteral(". ") + shown_->detail;
    const bool large = large_ != bold_;
    headline_->setFont(large ? large_ : bold_);
    symbol_->setFont(headline_->font());
    const bool hasTwoLines =
        !large && height() >= headline_->sizeHint().height() + detail_->sizeHint().height();
    detail_->setVisible(hasTwoLines);
    layout()->activate();
    show(*headline_, hasTwoLines ? shown_->headline : line);
    show(*detail_, shown_->detail);
    const QString whole = line + u'.';
    setAccessibleName(whole);
    setToolTip(Qt::convertFromPlainText(whole, Qt::WhiteSpaceNormal)); // rich text is wrapped
}

// Makes the usual fonts smaller where a low window leaves less than a line of them.
void MessageStrip::FitUsualFonts() {
    const auto fitting = [this](const QFont &font) {
        return Controls::FittingFont(font, {{.text = {}, .width = 0, .height = std::max(height(), 1)}});
    };
    QFont bold = font();
    bold.setBold(true);
    bold_ = fitting(bold);
    const QFont usual = fitting(font());
    for (const auto &[action, button] : buttons_) {
        button->setFont(usual);
    }
}

// Chooses a font in which the whole message is one line that is read from afar; the usual one where the strip
// has no room for that.
void MessageStrip::ChooseFont() {
    FitUsualFonts();
    large_ = bold_;
    if (!shown_) {
        return;
    }
    const int usual = QFontInfo(bold_).pixelSize();
    int room = width() - 2 * margin - height() - layout()->spacing(); // the symbol is at most as wide as high
    for (const auto &[action, button] : buttons_) {
        room -= button->isHidden() ? 0 : button->sizeHint().width() + layout()->spacing();
    }
    constexpr const char *growing = "0000"; // times and counts grow
    large_.setPixelSize(std::max(std::min(height(), usual * width() / leastWidth), usual));
    large_ = Controls::FittingFont(
        large_,
        {{.text = shown_->headline + QString::fromLatin1(growing) + QStringLiteral(". ") + shown_->detail,
          .width = room,
          .height = height()}},
        usual);
    if (QFontInfo(large_).pixelSize() < worthwhile * usual) {
        large_ = bold_;
    }
}

void MessageStrip::resizeEvent(QResizeEvent *event) {
    QFrame::resizeEvent(event);
    ChooseFont();
    ShowTexts();
}

} // namespace ztv
