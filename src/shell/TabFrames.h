#pragma once

#include "tabs/TabTable.h"
#include "widgets/TabPage.h"

#include <QObject>
#include <QRect>
#include <QSize>
#include <QTabWidget>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ztv {

// The strip of tabs and the pages over it, of which one is visible.
class TabFrames : public QObject {
    Q_OBJECT

public:
    // The smallest form for which the pages are laid out, in twips.
    static constexpr int LeastHeight = 8940;
    static constexpr int LeastWidth = 10200;

    // Makes the strip a child of `area`, whose size it follows from LayOutBeside on. REQUIRES: each page is a
    // child of `area` before SetPage.
    TabFrames(QWidget &area, bool withCheckout);

    // REQUIRES: called for every number of the table before the first tab is selected.
    void SetPage(std::int16_t number, TabPage *page);

    // Adds the Checkout tab. Throws a Fault (duplicate key) if it exists.
    void AddCheckout();

    bool IsShown(std::int16_t number) const { return IndexOf(number) >= 0; }

    // Selects the tab, as a click does. REQUIRES: IsShown(number).
    void Show(std::int16_t number);

    std::int16_t CurrentTab() const { return currentTab_; }
    TabPage &CurrentPage() const { return Page(currentTab_); }

    // Returns the help topic of the visible page.
    std::int16_t HelpContext() const { return helpContext_; }

    // Lays out the strip and the visible page, now and whenever the area's size changes. `bars` is the room
    // that the form's own bars take beside the area, in pixels: the layout is given for the form's size.
    void LayOutBeside(QSize bars);

    // Returns the part of the area below the strip, which the layout leaves free for a bar of the pages'
    // width.
    QRect Band() const;

    // Gives the pages the background colour of the strip, so that the strip needn't paint behind them.
    void Colour();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void Leaving(); // the user selected another tab; the previous page is still the current one
    void Changed(); // another page is visible
    void LaidOut(); // Band() may have changed

private:
    struct Shown {
        const Tab::Description *tab;
        QString caption;
    };

    TabPage &Page(std::int16_t number) const { return *pages_.at(static_cast<std::size_t>(number) - 1); }
    void AddTab(const Tab::Description &tab, const char *caption);
    int IndexOf(std::int16_t number) const; // in the strip; -1 for a tab that isn't shown
    void Select(int stripIndex);
    void LayOut();
    void LeaveMnemonicsToPage();

    QWidget &area_;
    QTabWidget *strip_;
    std::vector<Shown> shown_; // by the index in the strip, which a hidden tab makes differ from the table's
    std::array<TabPage *, Tab::Table.size()> pages_{}; // in the order of the table
    std::int16_t currentTab_ = Tab::Basic;
    std::int16_t helpContext_ = Tab::Table.front().helpContext;
    QSize bars_;
};

} // namespace ztv
