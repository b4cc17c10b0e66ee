#pragma once

#include "setup/WizardCalibration.h"
#include "setup/ui/StepPicture.h"

#include <QLabel>
#include <array>

// The sensor over a roll, with the roll's diameters and the distances to its surface, empty and full.
class RollGraphic : public StepPicture {
    Q_OBJECT

public:
    explicit RollGraphic(QWidget *parent);

    void Show(const WizardCalibration::Roll &roll);

private:
    std::array<QLabel *, 4> labelGraphic_{};
};
