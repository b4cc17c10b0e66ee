#pragma once

#include "help/ClassMyHtmlHelp.h"

#include <QDialog>
#include <QPixmap>
#include <QString>
#include <cstdint>
#include <functional>

class QVBoxLayout;

namespace ztv {

// The about box: shows the versions of the program and the sensor, and opens the maker's web pages and the
// system's own information.
class FormAbout : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1180;

    // The displayed texts and picture.
    struct Contents {
        QString softwareVersion;
        QString firmwareVersion;
        QString bootVersion;
        QString processorId;
        QString processorRevision;
        QString boardRevision;
        QString makersAddress; // one item per line
        QPixmap makersLogo;
    };

    // The actions of the controls.
    struct Commands {
        std::function<void()> showMakersPages;
        std::function<void()> showMasterAbout;
        std::function<void()> startSysInfo;
        std::function<void()> addCheckoutTab;
    };

    FormAbout(const Contents &contents, Commands commands, ClassMyHtmlHelp &help, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildHead(QVBoxLayout &column);
    void BuildVersions(QVBoxLayout &column, const Contents &contents);
    void BuildMaker(QVBoxLayout &column, const Contents &contents);
    void BuildButtons(QVBoxLayout &column);
    void PressToolbar();

    Commands commands_;
    QWidget *toolbar_ = nullptr;
};

} // namespace ztv
