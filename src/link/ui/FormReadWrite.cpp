#include "link/ui/FormReadWrite.h"

#include "support/ApplicationTitle.h"
#include "widgets/Controls.h"
#include "widgets/FormHelp.h"

#include <QKeyEvent>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

namespace ztv {

namespace {

struct Button {
    const char *key;
    const char *caption;
    const char *toolTip;
    const char *icon;
    ConnectChoice choice;
};

constexpr std::array buttons = {
    // Deliberate: the tool tips name another model.
    Button{"Read", "&Read", "Read parameters from ZTV-5000", ":/icons/read.svg", ConnectChoice::Read},
    Button{"Write", "&Write", "Write parameters to ZTV-5000", ":/icons/write.svg", ConnectChoice::Write},
    Button{"Cancel", "&Cancel", "Cancel and stay offline", ":/icons/cancel.svg", ConnectChoice::Cancel},
};

constexpr int buttonWidth = 96;
constexpr int iconSize = 32;

} // namespace

FormReadWrite::FormReadWrite(ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      choice_(ConnectChoice::Cancel) {
    Controls::Named(this, "FormReadWrite");
    setWindowTitle(ApplicationTitle());
    setModal(true);
    FormHelp::Offer(*this, help.Topic(HelpContextID));

    auto *toolbar = Controls::Named(new QToolBar(this), "Toolbar1");
    toolbar->setMovable(false);
    toolbar->setIconSize(QSize(iconSize, iconSize));
    for (const Button &button : buttons) {
        auto *tool = Controls::Named(new QToolButton(toolbar), button.key);
        tool->setText(QString::fromLatin1(button.caption));
        tool->setToolTip(QString::fromLatin1(button.toolTip));
        tool->setIcon(QIcon(QString::fromLatin1(button.icon)));
        tool->setAccessibleName(Controls::SpokenCaption(tool->text()));
        tool->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        tool->setMinimumWidth(buttonWidth);
        tool->setFocusPolicy(Qt::StrongFocus);
        connect(tool, &QToolButton::clicked, this, [this, choice = button.choice] {
            choice_ = choice;
            hide();
        });
        toolbar->addWidget(tool);
    }
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(toolbar);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FormReadWrite::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    findChild<QToolButton *>(QString::fromLatin1(buttons.front().key))->setFocus();
}

// Presses the focused tool button on Enter, which not every platform does.
void FormReadWrite::keyPressEvent(QKeyEvent *event) {
    auto *button = qobject_cast<QToolButton *>(focusWidget());
    if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
    } else {
        QDialog::keyPressEvent(event);
    }
}

} // namespace ztv
