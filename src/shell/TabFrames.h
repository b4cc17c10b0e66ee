#pragma once

#include "tabs/TabTable.h"
#include "widgets/TabPage.h"

#include <QObject>
#include <QTabWidget>
#include <array>
#include <cstdint>
#include <vector>

// The strip of tabs and the pages that lie over it, one of which shows.
class TabFrames : public QObject {
    Q_OBJECT

public:
    // Twips: no form is laid out smaller.
    static constexpr int LeastHeight = 8940;
    static constexpr int LeastWidth = 10200;

    // The strip becomes a child of `area`, and so does each page before it is handed over.
    TabFrames(QWidget &area, bool withCheckout);

    // Every number of the table must get its page before the first tab is chosen.
    void SetPage(std::int16_t number, TabPage *page);

    // Fault (duplicate key) when the tab is there.
    void AddCheckout();

    std::int16_t CurrentTab() const { return currentTab_; }
    TabPage &CurrentPage() const { return Page(currentTab_); }

    // The help topic of what shows.
    std::int16_t HelpContext() const { return helpContext_; }

    // Lays out the strip and the page that shows for a form of that size in pixels.
    void LayOut(QSize form);

    // Gives the pages the background of the strip, so that what they paint over needn't be painted from
    // there.
    void Colour();

Q_SIGNALS:
    void Leaving(); // another tab was chosen; the page of the last one is still the current one
    void Changed(); // the page of another tab shows

private:
    struct Shown {
        const Tab::Description *tab;
        QString caption;
    };

    TabPage &Page(std::int16_t number) const { return *pages_.at(static_cast<std::size_t>(number) - 1); }
    void AddTab(const Tab::Description &tab, const char *caption);
    void Select(int stripIndex);
    void LeaveMnemonicsToPage();

    QTabWidget *strip_;
    std::vector<Shown> shown_; // by the index in the strip, which a hidden tab makes differ from the table's
    std::array<TabPage *, Tab::Table.size()> pages_{}; // in the order of the table
    std::int16_t currentTab_ = Tab::Basic;
    std::int16_t helpContext_ = Tab::Table.front().helpContext;
    QSize form_;
};
