#pragma once

#include "setup/WizardCalibration.h"
#include "setup/ui/StepPicture.h"

#include <QLabel>
#include <array>

namespace ztv {

// Shows the sensor over a roll, with the diameters of the core and the full roll and the distances to their
// surfaces.
class RollGraphic : public StepPicture {
    Q_OBJECT

public:
    explicit RollGraphic(QWidget *parent);

    void Show(const WizardCalibration::Roll &roll);

private:
    std::array<QLabel *, 4> labelGraphic_{};
};

} // namespace ztv
