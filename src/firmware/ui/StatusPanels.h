#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

// A status bar of panels. A text that is too long for its panel is cut short with a mark, and stands whole in
// the panel's tool tip. A text that is set is there at once; it shows within 50 ms.
class StatusPanels : public QWidget {
    Q_OBJECT

public:
    struct Panel {
        QString text;    // until another is set
        QString meaning; // its accessible name
        int stretch;
    };

    explicit StatusPanels(const std::vector<Panel> &panels, QWidget *parent = nullptr);

    // Panels count from 1. The tool tip is the text's; without one it is the panel's meaning.
    void SetText(int panel, const QString &text, const QString &toolTip = {});

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Label;

    // In no layout: a text that changes with each packet mustn't lay the window out anew.
    std::vector<Label *> labels_;
    std::vector<int> stretches_;
};
