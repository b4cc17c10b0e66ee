#pragma once

#include "model/ClassZentrova.h"
#include "widgets/TabPage.h"

#include <QVBoxLayout>

namespace ztv {

class FlatBar;
class LargeNumber;

// The Distance tab: the measured distance, readable from across the room.
class DistancePage : public TabPage {
    Q_OBJECT

public:
    DistancePage(const ClassZentrova &zentrova, QWidget *parent);

    void ShowState(ValueState state) override;
    void UpdateDisplay() override;

protected:
    void Fit() override;

private:
    const ClassZentrova &zentrova_;
    QVBoxLayout *layout_ = nullptr;
    QSpacerItem *gap_ = nullptr; // above the description
    LargeNumber *labelLargeLength_ = nullptr;
    FlatBar *progressBar1_ = nullptr;
};

} // namespace ztv
