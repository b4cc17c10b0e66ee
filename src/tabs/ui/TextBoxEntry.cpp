#include "tabs/ui/TextBoxEntry.h"

#include "support/Numbers.h"
#include "widgets/TextBoxFunctions.h"

#include <QPointer>

namespace ztv {

bool ValidateAndWriteTextBoxVal(QLineEdit &box, EntryRules &rules) {
    const QPointer<QLineEdit> still(&box);
    const std::int16_t tag = ToInt16(ToNumber(box.property("Tag").toString()));
    if (rules.ValidateAndWriteText(box.text(), tag)) {
        return true;
    }
    if (still) {
        TextBoxFunctions::SelectAllText(*still);
    }
    return false;
}

} // namespace ztv
