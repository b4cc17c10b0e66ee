#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "link/ConnectChoice.h"

#include <QDialog>
#include <cstdint>

namespace ztv {

// Asks, on going online, whether to read or to write the parameters.
class FormReadWrite : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1110;

    explicit FormReadWrite(ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    // Returns the choice of the button pressed; Cancel if none was, also when the window was closed.
    ConnectChoice Choice() const { return choice_; }

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    ConnectChoice choice_;
};

} // namespace ztv
