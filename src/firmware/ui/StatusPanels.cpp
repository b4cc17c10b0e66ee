#include "firmware/ui/StatusPanels.h"

#include "widgets/Controls.h"

#include <QBasicTimer>
#include <QPainter>
#include <QResizeEvent>
#include <QTimerEvent>
#include <algorithm>
#include <numeric>

namespace ztv {

namespace {

constexpr int gap = 2;
constexpr int paintedEachMs = 50;

} // namespace

// Keeps its whole text, for assistive clients that read it out; only the painted text is elided.
class StatusPanels::Label : public QLabel {
public:
    using QLabel::QLabel;

    // Sets the text. Of texts in quick succession, paints only some and the last.
    void Show(const QString &text, const QString &toolTip) {
        if (pause_.isActive()) {
            setUpdatesEnabled(false);
        } else {
            pause_.start(paintedEachMs, this);
        }
        setText(text);
        explanation_ = toolTip;
        Explain();
    }

    void Explain() {
        const QString &usual = explanation_.isEmpty() ? accessibleDescription() : explanation_;
        setToolTip(Fits() ? usual : explanation_.isEmpty() ? text() : text() + u'\n' + explanation_);
    }

protected:
    void paintEvent(QPaintEvent *event) override {
        if (Fits()) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        drawFrame(&painter);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(Room(), Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideRight, Room().width()));
    }

    void resizeEvent(QResizeEvent *event) override {
        QLabel::resizeEvent(event);
        Explain();
    }

    void timerEvent(QTimerEvent *) override {
        pause_.stop();
        setUpdatesEnabled(true);
    }

private:
    bool Fits() const { return fontMetrics().horizontalAdvance(text()) <= Room().width(); }
    QRect Room() const { return contentsRect().adjusted(margin(), 0, -margin(), 0); }

    QBasicTimer pause_;
    QString explanation_;
};

StatusPanels::StatusPanels(const std::vector<Panel> &panels, QWidget *parent) : QWidget(parent) {
    constexpr int inset = 3;
    for (const Panel &panel : panels) {
        auto *label = Controls::Named(new Label(panel.text, this),
                                      Controls::Member("StatusBar1", static_cast<int>(labels_.size()) + 1));
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        label->setMargin(inset);
        label->setTextFormat(Qt::PlainText);
        label->setAccessibleDescription(panel.meaning);
        labels_.push_back(label);
        stretches_.push_back(panel.stretch);
    }
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize StatusPanels::sizeHint() const {
    return minimumSizeHint();
}

QSize StatusPanels::minimumSizeHint() const {
    return QSize(0, labels_.front()->sizeHint().height() + 2 * gap);
}

void StatusPanels::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    const int shares = std::max(std::accumulate(stretches_.begin(), stretches_.end(), 0), 1);
    const int room = width() - gap;
    int share = 0;
    for (std::size_t index = 0; index < labels_.size(); ++index) {
        const int left = gap + room * share / shares;
        share += stretches_[index];
        const int right = gap + room * share / shares;
        labels_[index]->setGeometry(left, gap, right - left - gap, height() - 2 * gap);
    }
}

void StatusPanels::SetText(int panel, const QString &text, const QString &toolTip) {
    labels_.at(static_cast<std::size_t>(panel) - 1)->Show(text, toolTip);
}

} // namespace ztv
