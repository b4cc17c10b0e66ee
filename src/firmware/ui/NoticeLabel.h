#pragma once

#include "firmware/UpgradeReport.h"

#include <QLabel>
#include <QWidget>

namespace ztv {

// Shows a text in a tone: with an icon and, except for a quiet one, in a colour that suits the desktop.
class NoticeLabel : public QWidget {
    Q_OBJECT

public:
    // Elided shortens a text that lacks room, and shows all of it in the tool tip.
    enum class Fit { Wrapped, Elided };

    // `name`: of the label with the text.
    NoticeLabel(const char *name, Fit fit, QWidget *parent = nullptr);

    // `path`: the part of an elided text that is shortened, at its beginning.
    void Show(UpgradeNotice::Tone tone, const QString &text, const QString &path = {});

protected:
    void changeEvent(QEvent *event) override;

private:
    class Text;

    void Paint();

    QLabel *icon_;
    Text *text_;
    UpgradeNotice::Tone tone_ = UpgradeNotice::Tone::Quiet;
};

} // namespace ztv
