#include "shell/MainStatusBar.h"

#include "shell/MainCommands.h"
#include "shell/StatusBarCells.h"
#include "shell/UnsavedList.h"
#include "widgets/Controls.h"

#include <QEvent>
#include <QLabel>
#include <QStatusBar>
#include <algorithm>

namespace ztv {

MainStatusBar::MainStatusBar(QMainWindow &window, MainCommands &commands,
                             const StatusWatch::Dependencies &watched)
    : commands_(commands),
      link_(watched.link),
      watch_(watched),
      text_(Controls::Named(new QLabel(QStringLiteral("Communication Status: Offline")), "StatusText")),
      cells_(new StatusBarCells(window.statusBar())),
      list_(new UnsavedList(watched.zentrova, &window)) {
    QStatusBar &bar = *Controls::Named(window.statusBar(), "StatusBar1");
    bar.addWidget(text_);
    bar.addWidget(cells_, 1);
    connect(&link_, &LinkSession::StatusChanged, text_, &QLabel::setText);
    connect(&watch_, &StatusWatch::Changed, cells_, &StatusBarCells::Show);
    connect(&watch_, &StatusWatch::FileChangesTurned, this, &MainStatusBar::FileChangesTurned);
    connect(cells_, &StatusBarCells::Pressed, this, &MainStatusBar::Pressed);
    connect(&link_, &LinkSession::UnsavedChanged, this, &MainStatusBar::ShowUnsaved);
    connect(&link_, &LinkSession::OnlineChanged, list_, [this] { list_->close(); });
    connect(list_, &UnsavedList::SaveWanted, this, [this] { commands_.Button("Save ZTV").trigger(); });
    cells_->Show(watch_.Cells());
    text_->installEventFilter(this);
    window.installEventFilter(this);
    KeepCellsInPlace();
}

bool MainStatusBar::eventFilter(QObject *watched, QEvent *event) {
    if (watched == text_ && event->type() == QEvent::FontChange) {
        KeepCellsInPlace();
    } else if (event->type() == QEvent::WindowBlocked) {
        list_->close(); // a box has opened, which a popup must not hide
    }
    return QObject::eventFilter(watched, event);
}

// The usual words differ in length, and a bad line makes them flip.
void MainStatusBar::KeepCellsInPlace() {
    int widest = 0;
    for (const LinkStatus status : {LinkStatus::Timeout, LinkStatus::CrcError, LinkStatus::ReadError}) {
        const QString text = QStringLiteral("Communication Status: ") + MbaxpErrorDesc(status);
        widest = std::max(widest, text_->fontMetrics().horizontalAdvance(text));
    }
    text_->setMinimumWidth(widest);
}

bool MainStatusBar::CanSave() const {
    return commands_.Button("Save ZTV").isEnabled();
}

void MainStatusBar::ShowUnsaved() {
    commands_.ShowUnsaved(link_.Unsaved().Count());
    if (list_->isVisible()) {
        list_->Show(link_.Unsaved().Rows(), CanSave());
    }
}

void MainStatusBar::ListUnsaved() {
    const auto rows = link_.Unsaved().Rows();
    if (!rows.empty()) {
        list_->Show(rows, CanSave());
        list_->OpenAbove(cells_->Button(StatusCell::Kind::NotSaved));
    }
}

} // namespace ztv
