#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "link/ConnectChoice.h"
#include "link/DirectionText.h"

#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>
#include <cstdint>
#include <vector>

namespace ztv {

// Asks, on going online, whether to read or to write the parameters.
class FormReadWrite : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1110;

    explicit FormReadWrite(ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    // Says beside the buttons what each does.
    void Explain(const DirectionText &text);

    // Returns the choice of the button pressed; Cancel if none was, also when the window was closed.
    ConnectChoice Choice() const { return choice_; }

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QLabel *AddText(const char *name, const QString &text);
    void AddLoss(const char *name, const QString &text);
    void ColourLosses();

    QVBoxLayout *layout_;
    std::vector<QLabel *> losses_; // texts that say what an answer loses
    ConnectChoice choice_;
};

} // namespace ztv
