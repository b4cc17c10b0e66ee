#pragma once

#include "model/ClassZentrova.h"
#include "tabs/ui/TabPage.h"

#include <QLabel>
#include <QLineEdit>
#include <vector>

// The Basic tab: the values around the chart of the sensor's output.
class BasicPage : public TabPage {
    Q_OBJECT

public:
    BasicPage(const ClassZentrova &zentrova, QWidget *parent);

    void UpdateDisplay() override;

    // A value box by its index; its property "Tag" is the parameter that it shows.
    QLineEdit &TextParam(std::size_t index) const { return *textParams_.at(index); }

private:
    void ChooseFonts();
    void AddField(int index, QWidget *home);

    const ClassZentrova &zentrova_;
    QFont labelFont_;
    QFont boxFont_;
    QLabel *labelMode_ = nullptr;
    std::vector<QLineEdit *> textParams_;
};
