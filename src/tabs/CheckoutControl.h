#pragma once

#include "model/ClassZentrova.h"
#include "tabs/CheckoutOptions.h"

#include <QObject>
#include <cstdint>
#include <deque>
#include <optional>

namespace ztv {

// Writes the Checkout tab's clicks to the sensor. A write waits for the previous one, and the user may click
// meanwhile, so clicks are queued first in, first out: the sensor receives whole clicks in their order and
// ends in the state that the last click left on screen. The event loop empties the queue.
class CheckoutControl : public QObject {
    Q_OBJECT

public:
    explicit CheckoutControl(ClassZentrova &zentrova, QObject *parent = nullptr);

    // Returns the index of the analog output's option after `index`, cyclically.
    static int NextOption(int index);

    void SetAnalogOut(int index); // an index without a voltage makes the output follow the distance
    void SetRange(int index);     // throws a Fault (subscript) for an unknown index
    void ToggleRelay(int index);  // 0 or 1
    void ToggleClockOut();
    void Reinitialise();

    // Empties the queue now. Does nothing if a caller is already emptying it.
    void Finish();

Q_SIGNALS:
    void Finished(); // the queue is empty

private:
    struct Step {
        std::int16_t tag = 0;
        std::optional<std::int32_t> value; // none: toggles
    };

    void Add(const CheckoutOptions::Option &option);
    void Add(Step step);
    void Do(const Step &step);

    ClassZentrova &zentrova_;
    std::deque<Step> steps_;
    bool busy_ = false;
};

} // namespace ztv
