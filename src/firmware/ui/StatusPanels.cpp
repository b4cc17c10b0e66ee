#include "firmware/ui/StatusPanels.h"

#include "ui/Controls.h"

#include <QPainter>
#include <QResizeEvent>
#include <numeric>

namespace {

constexpr int gap = 2;

} // namespace

// Keeps its text whole, for whoever reads it out; only the painting cuts it.
class StatusPanels::Label : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent *event) override {
        if (fontMetrics().horizontalAdvance(text()) <= contentsRect().width()) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        drawFrame(&painter);
        painter.setPen(palette().color(foregroundRole()));
        const QRect room = contentsRect().adjusted(margin(), 0, -margin(), 0);
        painter.drawText(room, Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
    }
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
        label->setToolTip(panel.meaning);
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
    const int shares = std::accumulate(stretches_.begin(), stretches_.end(), 0);
    const int room = width() - gap;
    int share = 0;
    for (std::size_t index = 0; index < labels_.size(); ++index) {
        const int left = gap + room * share / shares;
        share += stretches_[index];
        const int right = gap + room * share / shares;
        labels_[index]->setGeometry(left, gap, right - left - gap, height() - 2 * gap);
    }
}

void StatusPanels::SetText(int panel, const QString &text) {
    Label &label = *labels_.at(static_cast<std::size_t>(panel) - 1);
    label.setText(text);
    const bool fits = label.fontMetrics().horizontalAdvance(text) <= label.contentsRect().width();
    label.setToolTip(fits ? label.accessibleDescription() : text);
}

QString StatusPanels::Text(int panel) const {
    return labels_.at(static_cast<std::size_t>(panel) - 1)->text();
}
