#pragma once

#include "link/LinkSession.h"
#include "model/ClassZentrova.h"
#include "setup/AskedValues.h"

#include <QObject>
#include <functional>
#include <vector>

namespace ztv {

// Follows what became of the values that the wizard asked for, also after it closed: its last writes end
// later.
class WizardOutcome : public QObject {
    Q_OBJECT

public:
    // REQUIRES: both outlive this.
    WizardOutcome(LinkSession &link, const ClassZentrova &zentrova);

    void Ask(const std::vector<ParameterValue> &values);
    void Forget(); // a new run begins, or the user has read the message

    // Returns the values if the sensor didn't take all of them.
    const std::vector<AskedValues::Value> &Values() const { return values_.Judged(); }

Q_SIGNALS:
    void Changed();

private:
    void Update(const std::function<void()> &work);

    const LinkSession &link_;
    const ClassZentrova &zentrova_;
    AskedValues values_;
};

} // namespace ztv
