#pragma once

#include "model/ClassZentrova.h"
#include "tabs/CheckoutOptions.h"

#include <cstdint>

namespace ztv {

// Writes the Checkout tab's clicks to the sensor, which receives whole clicks in their order and ends in the
// state that the last click left on screen.
class CheckoutControl {
public:
    // REQUIRES: `zentrova` outlives this.
    explicit CheckoutControl(ClassZentrova &zentrova) : zentrova_(zentrova) {}

    // Returns the index of the analog output's option after `index`, cyclically.
    static int NextOption(int index);

    void SetAnalogOut(int index); // an index without a voltage makes the output follow the distance
    void SetRange(int index);     // throws a Fault (subscript) for an unknown index
    void ToggleRelay(int index);  // 0 or 1
    void ToggleClockOut();
    void Reinitialise();

private:
    void Write(const CheckoutOptions::Option &option);
    void Toggle(std::int16_t tag);

    ClassZentrova &zentrova_;
};

} // namespace ztv
