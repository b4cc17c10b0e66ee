#pragma once

#include "model/ClassZentrova.h"
#include "tabs/CheckoutOptions.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <deque>
#include <optional>

// Writes the Checkout tab's clicks to the sensor. A write waits for the one before it, and the user may click
// meanwhile, so clicks queue first in, first out: the sensor receives whole clicks in their order and ends
// where the last one left the screen. The queue is worked off from the event loop.
class CheckoutControl : public QObject {
    Q_OBJECT

public:
    explicit CheckoutControl(ClassZentrova &zentrova, QObject *parent = nullptr);

    // The index of the option of the analog output that comes after `tag`'s, in turn. Fault (conversion,
    // overflow) when `tag` isn't the text of an index.
    static QString NextTag(const QString &tag);

    void SetAnalogOut(int index); // one that has no voltage lets the output follow the distance
    void SetRange(int index);     // fault (subscript) for one that isn't there
    void ToggleRelay(int index);  // 0 or 1
    void ToggleClockOut();
    void Reinitialise();

    // Works the queue off now. Does nothing while it is being worked off further up.
    void Finish();

Q_SIGNALS:
    void Finished(); // the queue is worked off

private:
    struct Step {
        std::int16_t tag = 0;
        std::optional<std::int32_t> value; // nothing: toggles
    };

    void Add(const CheckoutOptions::Option &option);
    void Add(Step step);
    void Do(const Step &step);

    ClassZentrova &zentrova_;
    std::deque<Step> steps_;
    bool busy_ = false;
};
