#include "firmware/ui/StatusPanels.h"

#include "ui/Controls.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyleOption>

// Keeps its text whole, for whoever reads it out; only the painting cuts it.
class StatusPanels::Label : public QLabel {
public:
    using QLabel::QLabel;

    void Explain() { setToolTip(Fits() ? accessibleDescription() : text()); }

    QSize minimumSizeHint() const override { return QSize(0, QLabel::minimumSizeHint().height()); }

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

private:
    bool Fits() const { return fontMetrics().horizontalAdvance(text()) <= Room().width(); }
    QRect Room() const { return contentsRect().adjusted(margin(), 0, -margin(), 0); }
};

StatusPanels::StatusPanels(const std::vector<Panel> &panels, QWidget *parent) : QWidget(parent) {
    constexpr int gap = 2;
    constexpr int inset = 3;
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(gap, gap, gap, gap);
    row->setSpacing(gap);
    for (const Panel &panel : panels) {
        auto *label = Controls::Named(new Label(panel.text, this),
                                      Controls::Member("StatusBar1", static_cast<int>(labels_.size()) + 1));
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        label->setMargin(inset);
        label->setTextFormat(Qt::PlainText);
        label->setAccessibleDescription(panel.meaning);
        row->addWidget(label, panel.stretch);
        labels_.push_back(label);
    }
}

void StatusPanels::SetText(int panel, const QString &text) {
    Label &label = *labels_.at(static_cast<std::size_t>(panel) - 1);
    label.setText(text);
    label.Explain();
}

QString StatusPanels::Text(int panel) const {
    return labels_.at(static_cast<std::size_t>(panel) - 1)->text();
}
