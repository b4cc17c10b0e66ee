#include "link/ui/FormReadWrite.h"

#include "support/ApplicationTitle.h"
#include "widgets/Colours.h"
#include "widgets/Controls.h"
#include "widgets/FormHelp.h"
#include "widgets/Picture.h"

#include <QKeyEvent>
#include <QToolBar>
#include <QToolButton>
#include <array>
#include <string>

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
    Button{"Read", "&Read", "Read parameters from ZTV-5000", "read", ConnectChoice::Read},
    Button{"Write", "&Write", "Write parameters to ZTV-5000", "write", ConnectChoice::Write},
    Button{"Cancel", "&Cancel", "Cancel and stay offline", "cancel", ConnectChoice::Cancel},
};

constexpr int buttonWidth = 96;
constexpr int iconSize = 32;
constexpr int textCharacters = 64; // in a line

} // namespace

FormReadWrite::FormReadWrite(ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      layout_(new QVBoxLayout(this)),
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
        tool->setIcon(IconNamed(QString::fromLatin1(button.icon)));
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
    layout_->addWidget(toolbar);
    layout_->setSizeConstraint(QLayout::SetFixedSize);
}

void FormReadWrite::Explain(const DirectionText &text) {
    setAccessibleDescription(text.question);
    QLabel *question = AddText("LabelQuestion", text.question);
    layout_->removeWidget(question);
    layout_->insertWidget(0, question);
    struct Answer {
        std::size_t button;
        const char *textName;
        const QString &does;
        const char *lossName;
        const QString &loses;
    };
    const Answer answers[] = {{0, "LabelRead", text.read, "LabelLostOnRead", text.lostOnRead},
                              {1, "LabelWrite", text.write, "LabelLostOnWrite", text.lostOnWrite}};
    for (const Answer &answer : answers) {
        const QString caption = QString::fromLatin1(buttons.at(answer.button).key);
        QFont bold = font();
        bold.setBold(true);
        layout_->addSpacing(fontMetrics().height() / 2);
        AddText((std::string(answer.textName) + "Caption").c_str(), caption)->setFont(bold);
        AddText(answer.textName, answer.does);
        AddLoss(answer.lossName, answer.loses);
        // Read out with the button, so that a listener knows before pressing it.
        findChild<QToolButton *>(caption)->setAccessibleDescription(
            (answer.does + u' ' + answer.loses).trimmed());
    }
    ColourLosses();
}

QLabel *FormReadWrite::AddText(const char *name, const QString &text) {
    auto *label = Controls::Named(new QLabel(text, this), name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    const int width = textCharacters * fontMetrics().averageCharWidth();
    label->setFixedWidth(width);
    label->setMinimumHeight(label->heightForWidth(width)); // a window of fixed size would clip wrapped text
    layout_->addWidget(label);
    return label;
}

void FormReadWrite::AddLoss(const char *name, const QString &text) {
    if (!text.isEmpty()) {
        losses_.push_back(
            AddText(name, QStringLiteral("\u26A0 ") + text)); // a sign that isn't a colour alone
    }
}

void FormReadWrite::ColourLosses() {
    for (QLabel *loss : losses_) {
        QPalette colours;
        colours.setColor(QPalette::WindowText, Colours::Of(Colours::Amber, palette()));
        loss->setPalette(colours);
    }
}

void FormReadWrite::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        ColourLosses();
    }
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
