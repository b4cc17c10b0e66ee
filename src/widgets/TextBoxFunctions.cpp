#include "widgets/TextBoxFunctions.h"

#include "support/Numbers.h"

namespace ztv {

namespace {

constexpr int significantDigits = 15;

bool IsWithin(const QString &text, double minimum, double maximum) {
    if (!IsNumeric(text)) {
        return false;
    }
    const double value = ToNumber(text);
    return value >= minimum && value <= maximum;
}

} // namespace

namespace TextBoxFunctions {

void SelectAllText(QLineEdit &box) {
    box.selectAll();
}

QChar DigitOf(const QKeyEvent &key) {
    const bool isDigit = key.key() >= Qt::Key_0 && key.key() <= Qt::Key_9;
    return isDigit ? QChar(u'0' + (key.key() - Qt::Key_0)) : QChar();
}

bool ValidateNumericEntry(QLineEdit &box, const QString &name, double minimum, double maximum, bool round,
                          UserDialogs &dialogs) {
    if (!IsWithin(box.text(), minimum, maximum)) {
        Warn(dialogs, QStringLiteral("Please enter a numeric value between\n%1 and %2 for %3.")
                          .arg(QString::number(minimum, 'g', significantDigits),
                               QString::number(maximum, 'g', significantDigits), name));
        return false;
    }
    if (round) {
        box.setText(QString::number(ToInt16(ToNumber(box.text()))));
    }
    return true;
}

} // namespace TextBoxFunctions

} // namespace ztv
