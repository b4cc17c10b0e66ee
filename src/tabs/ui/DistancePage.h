#pragma once

#include "model/ClassZentrova.h"
#include "widgets/TabPage.h"

#include <QLabel>
#include <QProgressBar>

namespace ztv {

// The Distance tab: the measured distance, readable from across the room.
class DistancePage : public TabPage {
    Q_OBJECT

public:
    DistancePage(const ClassZentrova &zentrova, QWidget *parent);

    void UpdateDisplay() override;

private:
    const ClassZentrova &zentrova_;
    QLabel *labelLargeLength_ = nullptr;
    QProgressBar *progressBar1_ = nullptr;
};

} // namespace ztv
