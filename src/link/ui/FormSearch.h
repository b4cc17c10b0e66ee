#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "link/DeviceSearch.h"
#include "model/ClassZentrova.h"
#include "support/UserDialogs.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ztv {

class ResultsList;

// Searches the line for devices. However the dialog is closed, it leaves the port closed, no probe under way,
// and the master on the settings tried last.
// REQUIRES: the link is offline.
class FormSearch : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1130;

    FormSearch(LinkSession &link, ClassZentrova &zentrova, UserDialogs &dialogs, ClassMyHtmlHelp &help,
               const CommSettings &start, QWidget *parent = nullptr);

    // The settings of the device that the user picked from the results. Known once the dialog is closed.
    std::optional<CommSettings> Used() const { return used_; }

    void done(int result) override;

private:
    QWidget *BuildAddressRange();
    QLayout *BuildStatus();
    QLayout *BuildResults();
    QLayout *BuildButtons();
    void SetTabOrder();
    void ConnectControls();
    void ConnectSearch();

    void Start();
    void ShowStarted();
    void ShowProbe();
    void ShowWhere(const QString &words, const QString &toolTip);
    void ShowBrokenOff(LinkStatus status);
    QString CommStatus() const;
    void ShowProgress(int probesDone, const SearchWork &left);
    void AddResult(const CommSettings &place);
    void ShowEnded();
    void FollowSelection();
    void UseSelected();
    void Unload();

    bool AddressRangeIsValid(std::size_t box);
    DeviceSearch::AddressRange AddressRange();

    LinkSession &link_;
    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;

    std::array<QRadioButton *, 2> optionAddressRange_{};
    std::array<QLineEdit *, 2> textAddressRange_{};
    QCheckBox *checkVaryCommSettings_ = nullptr;
    QPushButton *commandStart_ = nullptr;
    QPushButton *commandStop_ = nullptr;
    QPushButton *commandClose_ = nullptr;
    QPushButton *commandHelp_ = nullptr;
    QLabel *labelSearchStatus_ = nullptr;
    QLabel *labelCommStatus_ = nullptr;
    QLabel *labelDevicesFound_ = nullptr;
    QProgressBar *progress_ = nullptr;
    QLabel *timeLeft_ = nullptr;
    ResultsList *listViewResults_ = nullptr;
    QCheckBox *checkUseSelectedCommSettings_ = nullptr;

    std::array<std::int16_t, 2> addressRange_{1, 247}; // the last numbers in the boxes
    DeviceSearch search_;
    std::optional<CommSettings> used_;
};

} // namespace ztv
