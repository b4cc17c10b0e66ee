#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

namespace ztv {

// A status bar of panels. A text too long for its panel is elided, and the panel's tool tip shows the whole
// text. A new text is set at once and painted within 50 ms.
class StatusPanels : public QWidget {
    Q_OBJECT

public:
    struct Panel {
        QString text;    // until another is set
        QString meaning; // its accessible name
        int stretch;
    };

    explicit StatusPanels(const std::vector<Panel> &panels, QWidget *parent = nullptr);

    // Panels count from 1. The tool tip belongs to the text; without one, the panel shows its meaning.
    void SetText(int panel, const QString &text, const QString &toolTip = {});

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Label;

    // Not in a layout: a text that changes with each packet must not cause a new layout of the window.
    std::vector<Label *> labels_;
    std::vector<int> stretches_;
};

} // namespace ztv
