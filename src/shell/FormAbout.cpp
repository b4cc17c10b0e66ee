#include "shell/FormAbout.h"

#include "support/ApplicationTitle.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"
#include "widgets/FormHelp.h"
#include "widgets/Picture.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace ztv {

namespace {

constexpr char16_t registeredMark = 174;
constexpr int margin = 14;
constexpr int textWidth = 400;
constexpr int iconSize = 48;
constexpr int valueWidth = 80;
constexpr int lineSpacing = 4;
constexpr double titleScale = 2.0;

// The value of ShiftArgument for Ctrl alone.
constexpr int ctrlAlone = 2;

int ShiftArgument(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) | (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

QLabel *NewLabel(const QString &name, const QString &text) {
    auto *label = Controls::Named(new QLabel(text), name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QFrame *NewRule() {
    auto *rule = new QFrame;
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    return rule;
}

} // namespace

FormAbout::FormAbout(const Contents &contents, Commands commands, ClassMyHtmlHelp &help, QWidget *parent)
    : QDialog(parent),
      commands_(std::move(commands)) {
    Controls::Named(this, "FormAbout");
    setWindowTitle(QStringLiteral("About ") + ApplicationTitle());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin);
    BuildHead(*column);
    BuildVersions(*column, contents);
    column->addWidget(NewRule());
    BuildMaker(*column, contents);
    column->addWidget(NewRule());
    BuildButtons(*column);
    column->setSizeConstraint(QLayout::SetFixedSize);
    FormHelp::Offer(*this, help.Topic(HelpContextID));
}

// Builds the button with the program's picture, which looks like an ornament and does nothing on a plain
// click.
void FormAbout::BuildHead(QVBoxLayout &column) {
    auto *toolbar = Controls::Named(new QToolBar, "Toolbar1");
    toolbar->setIconSize(QSize(iconSize, iconSize));
    QAction *action = toolbar->addAction(IconNamed(QStringLiteral("ztvlink")), ApplicationTitle());
    action->setToolTip(QString());
    QWidget *button = Controls::Named(toolbar->widgetForAction(action), "Toolbar1(1)");
    button->setAccessibleName(ApplicationTitle());
    for (QWidget *part : std::initializer_list<QWidget *>{toolbar, button}) {
        part->installEventFilter(this);
    }
    connect(action, &QAction::triggered, this, &FormAbout::PressToolbar);
    toolbar_ = toolbar;

    QLabel *title = NewLabel(QStringLiteral("lblTitle"), QStringLiteral("Zentrova"));
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * titleScale);
    large.setBold(true);
    title->setFont(large);
    QLabel *mark = NewLabel(QStringLiteral("lblCircleR"), QString(QChar(registeredMark)));
    mark->setAlignment(Qt::AlignTop);
    auto *name = new QHBoxLayout;
    name->setSpacing(0);
    name->addWidget(title);
    name->addWidget(mark);
    auto *row = new QHBoxLayout;
    row->addWidget(toolbar);
    row->addLayout(name);
    row->addStretch();
    row->setAlignment(name, Qt::AlignVCenter);
    column.addLayout(row);

    QLabel *description =
        NewLabel(QStringLiteral("lblDescription"),
                 QStringLiteral("This software is designed to be used with Halvern's ZTV500-100 Zentrova "
                                "ultrasound ranging unit."));
    description->setWordWrap(true);
    description->setFixedWidth(textWidth);
    column.addWidget(description);
}

void FormAbout::BuildVersions(QVBoxLayout &column, const Contents &contents) {
    struct Row {
        const char *name;
        const char *caption;
        const QString &value;
    };
    const Row rows[] = {
        {"lblSwVersion", "Software Version...................................", contents.softwareVersion},
        {"lblFwVersion", "Firmware Version.................................", contents.firmwareVersion},
        {"lblBootVersion", "Boot Version.........................................", contents.bootVersion},
        {"lblProcID", "Processor ID.......................................", contents.processorId},
        {"lblProcRevision", "Processor Revision...............................", contents.processorRevision},
        {"lblPCBRev", "PCB Revision......................................", contents.boardRevision},
    };
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(lineSpacing);
    std::vector<QLabel *> captions;
    int line = 0;
    for (const Row &row : rows) {
        const QString caption = QString::fromLatin1(row.caption);
        captions.push_back(NewLabel(Controls::Member(row.name, 0), caption));
        QLabel *value = NewLabel(Controls::Member(row.name, 1), row.value);
        // An accessible name would hide the value.
        value->setAccessibleDescription(caption.section(u'.', 0, 0));
        value->setMinimumWidth(valueWidth);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(captions.back(), line, 0);
        grid->addWidget(value, line, 1);
        ++line;
    }
    // The dots of all captions end where those of the narrowest one end.
    const auto narrowest =
        std::min_element(captions.begin(), captions.end(), [](const QLabel *one, const QLabel *other) {
            return one->sizeHint().width() < other->sizeHint().width();
        });
    const int width = (*narrowest)->sizeHint().width();
    for (QLabel *caption : captions) {
        caption->setFixedWidth(width);
    }
    grid->setColumnStretch(1, 1);
    column.addLayout(grid);
}

void FormAbout::BuildMaker(QVBoxLayout &column, const Contents &contents) {
    QLabel *notes = NewLabel(QStringLiteral("lblNotes"), contents.makersAddress);
    notes->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *logo = Controls::Named(new QToolButton, "Picture1");
    logo->setIcon(contents.makersLogo);
    logo->setIconSize(contents.makersLogo.size() / contents.makersLogo.devicePixelRatio());
    logo->setAutoRaise(true);
    logo->setCursor(Qt::PointingHandCursor);
    logo->setFocusPolicy(Qt::TabFocus);
    logo->setAccessibleName(QStringLiteral("Manufacturer's Web Site"));
    DeferredWork::OnPress(*logo, commands_.showMakersPages);
    auto *row = new QHBoxLayout;
    row->addWidget(logo);
    row->addSpacing(margin);
    row->addWidget(notes, 1);
    column.addLayout(row);
}

void FormAbout::BuildButtons(QVBoxLayout &column) {
    struct Row {
        const char *name;
        const char *caption;
        std::function<void()> work;
    };
    const Row rows[] = {{"cmdMbaxpAbout", "MBAXP Info...", commands_.showMasterAbout},
                        {"cmdSysInfo", "&System Info...", commands_.startSysInfo},
                        {"cmdOK", "&OK", [this] { accept(); }}};
    auto *line = new QHBoxLayout;
    for (const Row &row : rows) {
        auto *button = Controls::Captioned<QPushButton>(row.name, row.caption);
        button->setDefault(row.name == QStringLiteral("cmdOK"));
        DeferredWork::OnPress(*button, row.work);
        line->addWidget(button);
        if (row.name == QStringLiteral("cmdSysInfo")) {
            line->addStretch();
        }
        if (button->isDefault()) {
            button->setFocus();
        }
    }
    column.addLayout(line);
}

bool FormAbout::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::MouseButtonPress) {
        toolbar_->setProperty("Tag", ShiftArgument(static_cast<QMouseEvent *>(event)->modifiers()));
    }
    return QDialog::eventFilter(watched, event);
}

// Calls the command from the event loop, so that a fault doesn't unwind through the delivery of a click.
void FormAbout::PressToolbar() {
    if (toolbar_->property("Tag").toInt() == ctrlAlone) {
        QMetaObject::invokeMethod(
            this, [this] { commands_.addCheckoutTab(); }, Qt::QueuedConnection);
    }
}

} // namespace ztv
