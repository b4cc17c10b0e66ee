#include "firmware/ui/NoticeLabel.h"

#include "widgets/Colours.h"
#include "widgets/Controls.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <optional>

namespace ztv {

namespace {

using Tone = UpgradeNotice::Tone;

struct Look {
    Colours::Pair colour;
    QStyle::StandardPixmap icon;
};

std::optional<Look> LookOf(Tone tone) {
    switch (tone) {
    case Tone::Caution:
        return Look{Colours::Amber, QStyle::SP_MessageBoxWarning};
    case Tone::Failure:
        return Look{Colours::Red, QStyle::SP_MessageBoxCritical};
    case Tone::Success:
        return Look{Colours::Green, QStyle::SP_DialogApplyButton};
    default:
        return std::nullopt;
    }
}

} // namespace

// Keeps its whole text, for assistive clients that read it out; only the painted text is elided.
class NoticeLabel::Text : public QLabel {
public:
    Text(Fit fit, QWidget *parent) : QLabel(parent), fit_(fit) {
        setTextFormat(Qt::PlainText);
        setWordWrap(fit == Fit::Wrapped);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

    // A wrapped text's space doesn't depend on the text, so that nothing moves.
    QSize minimumSizeHint() const override {
        const int lines = fit_ == Fit::Wrapped ? LinesOfALongText() : 1;
        return {0, lines * fontMetrics().lineSpacing()};
    }

    void Show(const QString &text, const QString &path) {
        path_ = path;
        setText(text);
        Explain();
    }

    void Explain() { setToolTip(Fits() ? QString() : text()); }

protected:
    void paintEvent(QPaintEvent *event) override {
        if (Fits()) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::TextSingleLine, Shortened());
    }
    void resizeEvent(QResizeEvent *event) override {
        QLabel::resizeEvent(event);
        Explain();
    }

private:
    int LinesOfALongText() const {
        constexpr int characters = 140;
        constexpr int usualWidth = 480;
        return (characters * fontMetrics().averageCharWidth() + usualWidth - 1) / usualWidth;
    }
    bool Fits() const { return fit_ == Fit::Wrapped || WidthOf(text()) <= contentsRect().width(); }

    QString Shortened() const {
        const int width = contentsRect().width();
        const int withoutPath = WidthOf(text()) - WidthOf(path_);
        QString shortened = text();
        shortened.replace(shortened.indexOf(path_), path_.size(),
                          fontMetrics().elidedText(path_, Qt::ElideLeft, width - withoutPath));
        return fontMetrics().elidedText(shortened, Qt::ElideMiddle, width);
    }
    int WidthOf(const QString &text) const { return fontMetrics().horizontalAdvance(text); }

    Fit fit_;
    QString path_;
};

NoticeLabel::NoticeLabel(const char *name, Fit fit, QWidget *parent)
    : QWidget(parent),
      icon_(new QLabel(this)),
      text_(Controls::Named(new Text(fit, this), name)) {
    icon_->hide();
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(icon_);
    row->addWidget(text_, 1);
}

void NoticeLabel::Show(Tone tone, const QString &text, const QString &path) {
    tone_ = tone;
    text_->Show(text, path);
    Paint();
}

void NoticeLabel::Paint() {
    const std::optional<Look> look = LookOf(tone_);
    QPalette palette;
    if (look) {
        palette.setColor(QPalette::WindowText, Colours::Of(look->colour, this->palette()));
        const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        icon_->setPixmap(style()->standardIcon(look->icon, nullptr, this).pixmap(side, side));
    }
    icon_->setVisible(look.has_value());
    text_->setPalette(palette);
}

void NoticeLabel::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        Paint();
    }
}

} // namespace ztv
