#pragma once

#include "help/ClassMyHtmlHelp.h"

#include <QDialog>
#include <QPixmap>
#include <QString>
#include <cstdint>
#include <functional>

class QVBoxLayout;

// The about box: what the program and the sensor are, and the ways from here to the maker and to the system's
// own information.
class FormAbout : public QDialog {
    Q_OBJECT

public:
    static constexpr std::int32_t HelpContextID = 1180;

    // The contents to show.
    struct Contents {
        QString softwareVersion;
        QString firmwareVersion;
        QString bootVersion;
        QString processorId;
        QString processorRevision;
        QString boardRevision;
        QString makersAddress; // one item a line
        QPixmap makersLogo;
    };

    // Where its controls lead.
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
