#pragma once

#include "help/HelpSearch.h"
#include "help/HelpTopics.h"
#include "help/ui/HelpPage.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTreeWidget>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <vector>

class QToolBar;

namespace ztv {

// The help's own window: contents, index and search at the left, the page at the right. It is a separate
// window that the user can use also while another window is modal.
class HelpWindow : public QWidget {
    Q_OBJECT

public:
    // `openUrl` opens an address in the system's browser.
    HelpWindow(HelpTopics topics, std::function<bool(const QUrl &)> openUrl);

    const HelpTopics &Topics() const { return topics_; }

    // Shows the window, above all others, with this topic.
    void ShowTopic(const HelpTopic &topic);

    // The same, with the contents at the left.
    void ShowContents(const HelpTopic &topic);

    // Returns the topic that is shown.
    const HelpTopic *Topic() const { return topics_.OfFile(page_->File()); }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QToolBar *BuildToolbar();
    QWidget *BuildContents();
    QWidget *BuildIndex();
    QWidget *BuildSearch();
    QTreeWidget *NewList(const char *name, const QString &spokenName);
    void FollowLink(const QUrl &link);
    void FollowPage(const QUrl &page);
    void FollowModalWindow();
    void NarrowIndex(const QString &text);
    void Search();
    void Open(const QTreeWidgetItem *item);
    void Find();

    HelpTopics topics_;
    std::function<bool(const QUrl &)> openUrl_;
    std::vector<HelpSearch::Page> pages_; // the searched texts, in the order of the topics
    HelpPage *page_ = nullptr;
    QTabWidget *lists_ = nullptr;
    QTreeWidget *contents_ = nullptr;
    QTreeWidget *index_ = nullptr;
    QTreeWidget *results_ = nullptr;
    QLineEdit *indexBox_ = nullptr;
    QLineEdit *searchBox_ = nullptr;
};

} // namespace ztv
