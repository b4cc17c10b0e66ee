#include "shell/MainCommands.h"

#include "shell/MarkedIcon.h"
#include "shell/StatusCells.h"
#include "widgets/Controls.h"
#include "widgets/DeferredWork.h"
#include "widgets/EntryFocus.h"
#include "widgets/Picture.h"
#include "widgets/WhyDisabled.h"

#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace ztv {

namespace {

struct Entry {
    const char *name;
    const char *caption;
    const char *shortcut;
};

struct Menu {
    const char *name;
    const char *caption;
    std::vector<Entry> entries;
};

const std::vector<Menu> &Menus() {
    static const std::vector<Menu> menus = {
        {"mnuFile",
         "&File",
         {{"mnuFileOpen", "&Open...", ""},
          {"mnuFileSave(0)", "&Save", ""},
          {"mnuFileSave(1)", "Save &As...", ""},
          {"mnuFileSep", "-", ""},
          {"mnuFileExit", "E&xit", ""},
          {"mnuFileBackupSep", "-", ""},
          {"mnuFileOpenBackup", "Open &Backup...", ""}}},
        {"mnuOptions",
         "&Options",
         {{"mnuCommunications", "&Communications...", ""},
          {"mnuOptionsUpgradeFirmware", "&Upgrade Firmware...", ""}}},
        {"mnuTools",
         "&Tools",
         {{"mnuOnline", "&Online", ""},
          {"mnuReinit", "&Re-initialize", ""},
          {"mnuTransmitDelayCalc", "Transmit Delay &Calculator", ""}}},
        {"mnuHelp",
         "&Help",
         {{"mnuZtvHelp", "ZTV Link Help", "F1"},
          {"mnuHalvernWeb", "Manufacturer's Web Site", ""},
          {"mnuHelpAbout", "&About...", ""}}},
    };
    return menus;
}

struct ToolbarButton {
    const char *key; // also the caption
    const char *toolTip;
    const char *icon;
};

constexpr std::array toolbarButtons = {
    ToolbarButton{"Online", "Open communications with ZTV500-100", "online"},
    ToolbarButton{"Offline", "Close communications with ZTV500-100", "offline"},
    ToolbarButton{"Open File", "Open a file", "open-file"},
    ToolbarButton{"Save File", "Save current settings to a file", "save-file"},
    ToolbarButton{"Save ZTV", "Save changes in the ZTV500-100", "save-ztv"},
    ToolbarButton{"Help", "Display Help File", "help"},
    ToolbarButton{"Exit", "Exit program", "exit"},
};

constexpr int iconSize = 32;
constexpr int iconSizeInLittleRoom = 16;

QIcon IconOf(const ToolbarButton &button) {
    return IconNamed(QString::fromLatin1(button.icon));
}

QString ButtonName(const char *key) {
    return QStringLiteral("Toolbar1(%1)").arg(QLatin1String(key));
}

} // namespace

MainCommands::MainCommands(QMainWindow &window)
    : window_(window),
      fullScreen_(Controls::Named(new QAction(QStringLiteral("Full Screen"), &window), "FullScreen")) {
    BuildMenus();
    BuildToolbar();
    fullScreen_->setShortcut(Qt::Key_F11);
    fullScreen_->setAutoRepeat(false); // or a key that is held would fill the screen and return
    window_.addAction(fullScreen_);
    QAction &online = Menu("mnuOnline");
    online.setCheckable(true);
    // A click toggles the mark, but only the link's state may set it, whatever the outcome of the work.
    QObject::connect(&online, &QAction::triggered, &window_, [this, &online] { online.setChecked(online_); });
}

void MainCommands::BuildMenus() {
    EntryFocus::ComeBackFrom(*window_.menuBar());
    for (const ztv::Menu &menu : Menus()) {
        QMenu *shown =
            Controls::Named(window_.menuBar()->addMenu(QString::fromLatin1(menu.caption)), menu.name);
        for (const Entry &entry : menu.entries) {
            const QString caption = QString::fromLatin1(entry.caption);
            QAction *action =
                caption == QStringLiteral("-") ? shown->addSeparator() : shown->addAction(caption);
            Controls::Named(action, entry.name);
            action->setShortcut(QKeySequence(QString::fromLatin1(entry.shortcut)));
            action->setEnabled(false);
        }
    }
}

void MainCommands::BuildToolbar() {
    auto *toolbar = Controls::Named(window_.addToolBar(QStringLiteral("Toolbar")), "Toolbar1");
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu); // the user must not hide it
    toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar->setIconSize(QSize(iconSize, iconSize));
    toolbar_ = toolbar;
    for (const ToolbarButton &button : toolbarButtons) {
        const QString key = QString::fromLatin1(button.key);
        QAction *action = toolbar->addAction(IconOf(button), key);
        Controls::Named(action, ButtonName(button.key));
        action->setToolTip(QString::fromLatin1(button.toolTip));
        action->setEnabled(false);
        QWidget *widget = Controls::Named(toolbar->widgetForAction(action), key);
        widget->setAccessibleName(key);
        widget->setFocusPolicy(Qt::TabFocus);
    }
}

void MainCommands::SaveRoom(bool wanted) {
    const int side = wanted ? iconSizeInLittleRoom : iconSize;
    toolbar_->setIconSize(QSize(side, side));
}

QAction &MainCommands::Find(const QString &name) const {
    auto *action = window_.findChild<QAction *>(name);
    Q_ASSERT_X(action != nullptr, "MainCommands", qPrintable(name));
    return *action;
}

QAction &MainCommands::Menu(const char *name) const {
    return Find(QString::fromLatin1(name));
}
QAction &MainCommands::Button(const char *key) const {
    return Find(ButtonName(key));
}

void MainCommands::SetHandler(QAction &action, std::function<void()> work) {
    withWork_.insert(&action);
    action.setEnabled(true);
    DeferredWork::OnTrigger(action, std::move(work));
}

void MainCommands::ShowUnsaved(std::size_t count) {
    const ToolbarButton &button =
        *std::ranges::find(toolbarButtons, std::string_view("Save ZTV"),
                           [](const ToolbarButton &row) { return std::string_view(row.key); });
    QAction &action = Button(button.key);
    const QString words = UnsavedWords(count);
    const QString toolTip = QString::fromLatin1(button.toolTip);
    action.setToolTip(words.isEmpty() ? toolTip : toolTip + u'\n' + words);
    // Made once: Qt keeps the pictures of each icon that was ever shown.
    if (saveIcon_.isNull()) {
        saveIcon_ = action.icon();
        markedSaveIcon_ = MarkedIcon(saveIcon_);
    }
    action.setIcon(words.isEmpty() ? saveIcon_ : markedSaveIcon_);
    WhyDisabled::Describe(*window_.findChild<QWidget *>(QString::fromLatin1(button.key)), words);
}

void MainCommands::ExplainDisabled() {
    const QString goOnline = QStringLiteral("Go online first.");
    const QString goOffline = QStringLiteral("Go offline first.");
    struct Entry {
        const char *menu;
        const char *name;
        QString reason;
    };
    const Entry entries[] = {
        {"mnuTools", "mnuReinit", goOnline},
        {"mnuOptions", "mnuOptionsUpgradeFirmware", goOffline},
        {"mnuFile", "mnuFileOpenBackup",
         QStringLiteral("There is no backup yet. The first write to a sensor makes one.")}};
    for (const Entry &entry : entries) {
        WhyDisabled::Explain(*window_.findChild<QMenu *>(QString::fromLatin1(entry.menu)), Menu(entry.name),
                             entry.reason);
    }
    const std::pair<const char *, QString> toolButtons[] = {{"Online", QStringLiteral("Already online.")},
                                                            {"Offline", QStringLiteral("Already offline.")},
                                                            {"Save ZTV", goOnline}};
    for (const auto &[key, reason] : toolButtons) {
        WhyDisabled::Explain(*window_.findChild<QToolButton *>(QString::fromLatin1(key)), reason);
    }
}

void MainCommands::ShowLinkState(bool online) {
    struct Row {
        QAction &action;
        bool whenOffline;
        bool whenOnline;
    };
    const Row rows[] = {
        {Menu("mnuReinit"), false, true},
        {Button("Online"), true, false},
        {Button("Offline"), false, true},
        {Button("Save ZTV"), false, true},
        {Menu("mnuOptionsUpgradeFirmware"), true, false},
    };
    for (const Row &row : rows) {
        row.action.setEnabled(withWork_.count(&row.action) != 0 &&
                              (online ? row.whenOnline : row.whenOffline));
    }
    online_ = online;
    Menu("mnuOnline").setChecked(online);
}

} // namespace ztv
