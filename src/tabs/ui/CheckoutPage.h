#pragma once

#include "model/ClassZentrova.h"
#include "tabs/CheckoutControl.h"
#include "tabs/ui/Indicator.h"
#include "tabs/ui/LargeNumber.h"
#include "tabs/ui/SwitchButton.h"
#include "widgets/PageScale.h"
#include "widgets/TabPage.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <array>
#include <cstdint>

namespace ztv {

// The Checkout tab: tests the hardware of an installed sensor. It forces the analog output, switches relays
// and clock by hand, and shows the inputs, the distance and the echo.
class CheckoutPage : public TabPage {
    Q_OBJECT

public:
    // `manualOutput` is a box of the Basic tab that this page keeps current; it shows the parameter
    // `manualOutputTag`.
    CheckoutPage(ClassZentrova &zentrova, QLineEdit &manualOutput, std::int16_t manualOutputTag,
                 QWidget *parent);

    // Makes a forced output follow the distance again.
    void Entered() override;

    // Greys the measured values alone. The clock output is a setting.
    void ShowState(ValueState state) override;

    void UpdateDisplay() override;

protected:
    void Fit() override;

private:
    QSize LeastContent();
    void FitFont();
    void ScaleLayouts();
    QGroupBox *BuildRelays();
    QGroupBox *BuildClkOut();
    QGroupBox *BuildDigInputs();
    QGroupBox *BuildClockSel();
    QGroupBox *BuildAnalogOut();
    QGroupBox *BuildAnalogInput();
    QGroupBox *BuildDistance();
    QGroupBox *BuildDistRange();

    void CountFrom(int option);
    void AnalogOutClick(int index);
    void NextClick();
    void ClkOutClick();
    void ReInitClick();
    void SelectAnalogOut(int index);
    void ClearRange();
    ImageListCheckout::Key Lit(std::int16_t tag, ImageListCheckout::Key key) const;

    ClassZentrova &zentrova_;
    QLineEdit &manualOutput_;
    std::int16_t manualOutputTag_;
    CheckoutControl control_;
    std::array<SwitchButton *, 2> imgRelay_{};
    SwitchButton *imgClkOut_ = nullptr;
    Indicator *imageTeachInput_ = nullptr;
    Indicator *imageExtClkInStatus_ = nullptr;
    Indicator *imageNoEcho_ = nullptr;
    QButtonGroup *optionClockSel_ = nullptr; // button ids are indices in the control array
    QButtonGroup *optionAnalogOut_ = nullptr;
    QButtonGroup *optionRange_ = nullptr;
    int counter_ = 0; // the option that CommandNext counts from
    QLineEdit *textCheckoutVoltageOut_ = nullptr;
    QLineEdit *textCheckoutVoltageIn_ = nullptr;
    QPushButton *commandNext_ = nullptr;
    QPushButton *commandReInit_ = nullptr;
    LargeNumber *labelDist_ = nullptr;
    QGridLayout *grid_ = nullptr;
    QGridLayout *clkOutGrid_ = nullptr;
    QGridLayout *echo_ = nullptr;
    QHBoxLayout *distanceRow_ = nullptr;
    PageScale fitted_; // the scale of the present margins and pictures
};

} // namespace ztv
