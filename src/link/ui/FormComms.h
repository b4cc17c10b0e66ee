#pragma once

#include "help/ClassMyHtmlHelp.h"
#include "link/LinkSession.h"
#include "link/ui/DeviceBox.h"
#include "model/ClassZentrova.h"
#include "support/SettingsStore.h"
#include "support/UserDialogs.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

class QVBoxLayout;

namespace ztv {

// Edits the communication settings while the link is offline, shows the poll's error counts, and opens the
// search for devices. It neither opens nor closes the port.
class FormComms : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1120;

    FormComms(LinkSession &link, ClassZentrova &zentrova, UserDialogs &dialogs, SettingsStore &settings,
              ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    // Locks the controls that must not change while the port is open; unlocks them otherwise.
    void EnableDisableCommSettings(bool online);

    // Opens the search, and takes what it found into the boxes.
    void Search();

public Q_SLOTS:
    void accept() override;
    void reject() override;

private:
    void BuildSettings(QVBoxLayout &column);
    void BuildStatistics(QVBoxLayout &column);
    void BuildButtons(QVBoxLayout &column);
    void FillFromTable(QComboBox &list, std::int16_t tag) const;
    bool IsValid(QLineEdit &box);
    bool EntryIsValid(QLineEdit &box);
    void ShowLine();
    void ShowDevice();
    void ShowLocks(bool online);
    void TakeDevice(const QString &device);
    void PutDevicesBack();
    std::optional<std::int16_t> Port() const;

    LinkSession &link_;
    ClassZentrova &zentrova_;
    UserDialogs &dialogs_;
    SettingsStore &settings_;
    ClassMyHtmlHelp &help_;
    QLineEdit *port_ = nullptr;
    DeviceBox *device_ = nullptr;
    QComboBox *baudRate_ = nullptr;
    QComboBox *parityStop_ = nullptr;
    QLineEdit *address_ = nullptr;
    QLabel *timeouts_ = nullptr;
    QLabel *crcErrors_ = nullptr;
    QLabel *locked_ = nullptr;
    QLabel *echo_ = nullptr; // shown while there is an echo
    QTimer timer_{this};
    std::vector<QWidget *> lockedOnline_;
    std::map<std::int16_t, QString> devicesBefore_; // of the ports whose device was changed here
};

} // namespace ztv
