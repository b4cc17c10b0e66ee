#include "help/ui/HelpWindow.h"

#include "support/ApplicationTitle.h"
#include "widgets/Controls.h"
#include "widgets/Picture.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMap>
#include <QSplitter>
#include <QStyle>
#include <QTextDocumentFragment>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

namespace ztv {

namespace {

constexpr QSize startSize(900, 640);
constexpr int listsWidth = 250;
constexpr int fileRole = Qt::UserRole;

void GiveFile(QTreeWidgetItem &item, const QString &file) {
    item.setData(0, fileRole, file);
}

// Returns true if the entry is visible and opens a topic. A word of the index may have topics only below it.
bool LeadsSomewhere(const QTreeWidgetItem &item) {
    const bool shows = !item.isHidden() && (item.parent() == nullptr || !item.parent()->isHidden());
    return shows && !item.data(0, fileRole).toString().isEmpty();
}

} // namespace

HelpWindow::HelpWindow(HelpTopics topics, std::function<bool(const QUrl &)> openUrl)
    : topics_(std::move(topics)),
      openUrl_(std::move(openUrl)) {
    Controls::Named(this, "HelpWindow");
    setWindowTitle(ApplicationTitle() + QStringLiteral(" Help"));
    setWindowIcon(IconNamed(QStringLiteral("help")));
    setAttribute(Qt::WA_QuitOnClose, false); // the program quits when its main form closes
    for (const HelpTopic &topic : topics_.All()) {
        pages_.push_back({topic.title, QTextDocumentFragment::fromHtml(topics_.Page(topic)).toPlainText()});
    }

    page_ = Controls::Named(new HelpPage(topics_.Folder()), "Page");
    page_->setAccessibleName(QStringLiteral("Topic"));
    lists_ = Controls::Named(new QTabWidget, "Lists");
    lists_->addTab(BuildContents(), QStringLiteral("&Contents"));
    lists_->addTab(BuildIndex(), QStringLiteral("&Index"));
    lists_->addTab(BuildSearch(), QStringLiteral("&Search"));
    lists_->setUsesScrollButtons(false); // all three stay visible
    auto *halves = new QSplitter;
    halves->addWidget(lists_);
    halves->addWidget(page_);
    halves->setStretchFactor(1, 1);
    halves->setChildrenCollapsible(false);
    halves->setSizes({listsWidth, startSize.width() - listsWidth});
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(BuildToolbar());
    column->addWidget(halves, 1);
    resize(startSize);

    connect(page_, &QTextBrowser::anchorClicked, this, &HelpWindow::FollowLink);
    connect(page_, &QTextBrowser::sourceChanged, this, &HelpWindow::FollowPage);
}

QToolBar *HelpWindow::BuildToolbar() {
    auto *toolbar = Controls::Named(new QToolBar, "HelpToolbar");
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](QStyle::StandardPixmap icon, const char *name, const char *caption,
                         const QKeySequence &keys) {
        QAction *action = Controls::Named(
            toolbar->addAction(style()->standardIcon(icon), QString::fromLatin1(caption)), name);
        action->setShortcut(keys);
        action->setToolTip(
            QStringLiteral("%1 (%2)").arg(action->text(), keys.toString(QKeySequence::NativeText)));
        toolbar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
        static_cast<QToolButton *>(toolbar->widgetForAction(action))->setAccessibleName(action->text());
        return action;
    };
    QAction *back = add(QStyle::SP_ArrowBack, "Back", "Back", Qt::ALT | Qt::Key_Left);
    QAction *forward = add(QStyle::SP_ArrowForward, "Forward", "Forward", Qt::ALT | Qt::Key_Right);
    QAction *home = add(QStyle::SP_DirHomeIcon, "Home", "Home", Qt::ALT | Qt::Key_Home);
    QAction *find = add(QStyle::SP_FileDialogContentsView, "Find", "Find", QKeySequence::Find);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(back, &QAction::triggered, page_, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, page_, &QTextBrowser::forward);
    connect(home, &QAction::triggered, this, [this] { ShowContents(topics_.All().front()); });
    connect(find, &QAction::triggered, this, &HelpWindow::Find);
    return toolbar;
}

// Builds a list that opens an entry as soon as the user selects it, by mouse or by cursor keys.
QTreeWidget *HelpWindow::NewList(const char *name, const QString &spokenName) {
    auto *list = Controls::Named(new QTreeWidget, name);
    list->setAccessibleName(spokenName);
    list->header()->hide();
    list->setTextElideMode(Qt::ElideRight);
    connect(list, &QTreeWidget::currentItemChanged, this, &HelpWindow::Open);
    connect(list, &QTreeWidget::itemActivated, this, &HelpWindow::Open);
    connect(list, &QTreeWidget::itemClicked, this, &HelpWindow::Open);
    return list;
}

QWidget *HelpWindow::BuildContents() {
    contents_ = NewList("Contents", QStringLiteral("Contents"));
    QTreeWidgetItem *chapter = nullptr;
    for (const HelpTopic &topic : topics_.All()) {
        auto *item = topic.level == 0 ? new QTreeWidgetItem(contents_, {topic.title})
                                      : new QTreeWidgetItem(chapter, {topic.title});
        GiveFile(*item, topic.file);
        chapter = topic.level == 0 ? item : chapter;
    }
    contents_->expandAll();
    return contents_;
}

// A word of one topic opens it; a word of several topics has them below it.
QWidget *HelpWindow::BuildIndex() {
    indexBox_ = Controls::Named(new QLineEdit, "IndexBox");
    indexBox_->setAccessibleName(QStringLiteral("Look for in the index"));
    indexBox_->setPlaceholderText(QStringLiteral("Type a word"));
    indexBox_->setClearButtonEnabled(true);
    index_ = NewList("Index", QStringLiteral("Index"));
    QMap<QString, std::vector<const HelpTopic *>> words;
    for (const HelpTopic &topic : topics_.All()) {
        for (const QString &word : topic.keywords) {
            words[word].push_back(&topic);
        }
    }
    for (const auto &[word, topics] : words.asKeyValueRange()) {
        auto *item = new QTreeWidgetItem(index_, {word});
        if (topics.size() == 1) {
            GiveFile(*item, topics.front()->file);
            continue;
        }
        for (const HelpTopic *topic : topics) {
            GiveFile(*new QTreeWidgetItem(item, {topic->title}), topic->file);
        }
    }
    index_->sortItems(0, Qt::AscendingOrder);
    index_->expandAll();
    connect(indexBox_, &QLineEdit::textChanged, this, &HelpWindow::NarrowIndex);

    auto *tab = new QWidget;
    auto *column = new QVBoxLayout(tab);
    column->addWidget(indexBox_);
    column->addWidget(index_, 1);
    return tab;
}

QWidget *HelpWindow::BuildSearch() {
    searchBox_ = Controls::Named(new QLineEdit, "SearchBox");
    searchBox_->setAccessibleName(QStringLiteral("Search for"));
    searchBox_->setPlaceholderText(QStringLiteral("Search the help"));
    searchBox_->setClearButtonEnabled(true);
    results_ = NewList("Results", QStringLiteral("Topics found"));
    results_->setRootIsDecorated(false);
    auto *count = Controls::Named(new QLabel, "ResultCount");
    connect(searchBox_, &QLineEdit::textChanged, this, &HelpWindow::Search);

    auto *tab = new QWidget;
    auto *column = new QVBoxLayout(tab);
    column->addWidget(searchBox_);
    column->addWidget(results_, 1);
    column->addWidget(count);
    return tab;
}

void HelpWindow::ShowTopic(const HelpTopic &topic) {
    page_->Show(QUrl(topic.file));
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
}

void HelpWindow::ShowContents(const HelpTopic &topic) {
    lists_->setCurrentIndex(0);
    ShowTopic(topic);
    contents_->setFocus();
}

// Follows links to other pages, and opens web addresses in the system's browser. Ignores any other link.
void HelpWindow::FollowLink(const QUrl &link) {
    const bool onTheWeb = link.scheme() == QStringLiteral("http") || link.scheme() == QStringLiteral("https");
    if (onTheWeb) {
        openUrl_(link);
    } else if (link.host().isEmpty() && (link.isLocalFile() || link.isRelative())) {
        const QString file = link.fileName().isEmpty() ? page_->File() : link.fileName();
        if (topics_.OfFile(file) != nullptr) {
            QUrl address(file);
            address.setFragment(link.fragment());
            page_->Show(address);
        }
    }
}

// Selects the shown page in the contents, however the user came to it.
void HelpWindow::FollowPage(const QUrl &page) {
    for (QTreeWidgetItemIterator item(contents_); *item != nullptr; ++item) {
        if ((*item)->data(0, fileRole).toString() == page.fileName()) {
            const QSignalBlocker blocker(contents_);
            contents_->setCurrentItem(*item);
        }
    }
}

void HelpWindow::Open(const QTreeWidgetItem *item) {
    const QString file = item == nullptr ? QString() : item->data(0, fileRole).toString();
    if (file.isEmpty()) {
        return;
    }
    if (file != page_->File()) {
        page_->Show(QUrl(file));
    }
    if (item->treeWidget() == results_) {
        page_->Mark(HelpSearch::Words(searchBox_->text()));
    }
}

void HelpWindow::NarrowIndex(const QString &text) {
    for (int row = 0; row < index_->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = index_->topLevelItem(row);
        item->setHidden(!item->text(0).contains(text.trimmed(), Qt::CaseInsensitive));
    }
}

void HelpWindow::Search() {
    const std::vector<std::size_t> found = HelpSearch::Find(pages_, searchBox_->text());
    {
        const QSignalBlocker blocker(results_);
        results_->clear();
        for (const std::size_t place : found) {
            const HelpTopic &topic = topics_.All()[place];
            GiveFile(*new QTreeWidgetItem(results_, {topic.title}), topic.file);
        }
    }
    auto *count = findChild<QLabel *>(QStringLiteral("ResultCount"));
    if (searchBox_->text().trimmed().isEmpty()) {
        count->clear();
    } else {
        count->setText(found.empty()       ? QStringLiteral("No topic has all of these words.")
                       : found.size() == 1 ? QStringLiteral("1 topic")
                                           : QStringLiteral("%1 topics").arg(found.size()));
    }
}

void HelpWindow::Find() {
    lists_->setCurrentIndex(2);
    searchBox_->setFocus(Qt::ShortcutFocusReason);
    searchBox_->selectAll();
}

void HelpWindow::keyPressEvent(QKeyEvent *event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QTreeWidget *const list = !enters                  ? nullptr
                              : searchBox_->hasFocus() ? results_
                              : indexBox_->hasFocus()  ? index_
                                                       : nullptr;
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (list != nullptr) { // Enter in a box opens the first visible entry of its list
        QTreeWidgetItemIterator first(list);
        while (*first != nullptr && !LeadsSomewhere(**first)) {
            ++first;
        }
        if (*first != nullptr) {
            list->setCurrentItem(*first);
            Open(*first);
        }
    } else {
        QWidget::keyPressEvent(event);
    }
}

// Modal windows. ------------------------------------------------------------------------------------

void HelpWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    qApp->installEventFilter(this);
    FollowModalWindow();
}

void HelpWindow::hideEvent(QHideEvent *event) {
    qApp->removeEventFilter(this);
    QWidget::hideEvent(event);
}

bool HelpWindow::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
        const auto *widget = qobject_cast<const QWidget *>(watched);
        if (widget != nullptr && widget->isWindow() && widget->isModal()) {
            // Queued, so that the window system already knows the change.
            QMetaObject::invokeMethod(this, &HelpWindow::FollowModalWindow, Qt::QueuedConnection);
        }
    }
    return QWidget::eventFilter(watched, event);
}

// Makes the help a child of the last modal window, which blocks all windows except its children.
void HelpWindow::FollowModalWindow() {
    const QWidget *modal = QApplication::activeModalWidget();
    if (windowHandle() != nullptr) {
        windowHandle()->setTransientParent(modal == nullptr ? nullptr : modal->windowHandle());
    }
}

} // namespace ztv
