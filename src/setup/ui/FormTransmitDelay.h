#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "model/ClassZentrova.h"
#include "model/ParameterLink.h"
#include "support/UserDialogs.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cstdint>

class QVBoxLayout;

namespace ztv {

// Calculates the transmit delay of a master unit from its slaves' settings. If the port is open, it writes
// the delay on request and makes the sensor save its parameters when the window closes.
class FormTransmitDelay : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1150;

    FormTransmitDelay(ClassZentrova &zentrova, const ParameterLink &link, UserDialogs &dialogs,
                      ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    // Handles every way of closing the window. Ignored behind the question.
    void done(int result) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void BuildEntries(QVBoxLayout &column);
    void BuildResults(QVBoxLayout &column);
    void BuildButtons(QVBoxLayout &column, ClassMyHtmlHelp &help);
    QLineEdit *NewEntry(const char *name, const char *text);
    void AddExplanation(QVBoxLayout &column, int index, const char *text);
    enum class Unit { Inches, Microseconds, HighWords };

    void AddRow(QVBoxLayout &column, const char *labelName, const char *caption, QLineEdit &box, Unit unit);
    static QLabel *NewUnitLabel(Unit unit, QLineEdit &box);
    void AddNote(QVBoxLayout &column);
    void ShowNote();
    void RecalculateDelay();
    void CheckLeftBox(const QLineEdit &box);
    void SetTransmitDelayValues();
    bool ResultsFit() const;

    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
    const bool online_;
    bool asking_ = false;
    QLineEdit *sumOfRanges_ = nullptr;
    QLineEdit *sumOfDelays_ = nullptr;
    QLabel *actualDelay_ = nullptr;
    QLineEdit *low_ = nullptr;
    QLineEdit *high_ = nullptr;
    QPushButton *write_ = nullptr;
    QCheckBox *saveSettings_ = nullptr;
    QLabel *note_ = nullptr;
};

} // namespace ztv
