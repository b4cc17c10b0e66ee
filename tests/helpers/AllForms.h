#pragma once

#include "tests/helpers/MainForm.h"
#include "tests/helpers/Wait.h"

#include "firmware/ui/FormUpgradeFirmware.h"
#include "help/ui/HelpViewer.h"
#include "help/ui/HelpWindow.h"
#include "link/ui/FormComms.h"
#include "link/ui/FormReadWrite.h"
#include "link/ui/FormSearch.h"
#include "model/ParamDefines.h"
#include "setup/ui/FormTransmitDelay.h"
#include "setup/ui/frmWizard.h"
#include "shell/AboutContents.h"
#include "shell/FormAbout.h"
#include "tabs/ui/FormEdit.h"
#include "tools/DarkPalette.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

namespace ztv {

struct Desktop {
    const char *name;
    bool dark;
    double fontScale;
};

inline constexpr Desktop light{"light", false, 1};
inline constexpr Desktop dark{"dark", true, 1};
inline constexpr Desktop largeFont{"large font", false, 1.5};

// Sets the desktop of one test; the destructor restores the previous one.
class OnDesktop {
public:
    explicit OnDesktop(const Desktop &desktop) {
        if (desktop.dark) {
            QApplication::setPalette(DarkPalette());
        }
        QFont font = font_;
        font.setPointSizeF(font.pointSizeF() * desktop.fontScale);
        QApplication::setFont(font);
    }
    ~OnDesktop() {
        QApplication::setPalette(palette_);
        QApplication::setFont(font_);
    }
    OnDesktop(const OnDesktop &) = delete;
    OnDesktop &operator=(const OnDesktop &) = delete;

private:
    QPalette palette_ = QApplication::palette();
    QFont font_ = QApplication::font();
};

// Opens all forms of the program, for rules that apply to each.
class AllFormsTest : public MainFormTest {
protected:
    HelpEngine &Engine() override { return viewer_; }

    using Visit = std::function<void(QWidget &form, const QString &name)>;

    // Builds the forms on that desktop and calls `visit` for each of them, in each of its states, while it is
    // visible.
    void VisitForms(const Desktop &desktop, const Visit &visit) {
        const OnDesktop here(desktop);
        const QString on = QLatin1String(desktop.name) + QStringLiteral(", ");
        Start(QStringLiteral("/checkout"));
        auto &strip = Ui().Get<QTabWidget>("TabStrip1");
        for (int tab = 0; tab < strip.count(); ++tab) {
            strip.setCurrentIndex(tab);
            Show(*form_, on + strip.tabText(tab), visit);
        }
        ClassMyHtmlHelp &help = form_->hHelp();
        FormReadWrite direction(help);
        direction.Explain(TextOf({.values = 95,
                                  .sensor = {},
                                  .file = QStringLiteral("machine7.ztv"),
                                  .edits = {QStringLiteral("Near Distance"), QStringLiteral("Far Distance")},
                                  .backupFor = {}}));
        ShowAndClose(direction, on, visit);
        FormComms comms(form_->Link(), form_->Zentrova(), dialogs_, settings_, help);
        ShowAndClose(comms, on, visit);
        comms.EnableDisableCommSettings(true);
        ShowAndClose(comms, on + QStringLiteral("online "), visit);
        FormSearch search(form_->Link(), form_->Zentrova(), dialogs_, help,
                          {.port = 1, .baud = 4, .parityStop = 1});
        ShowAndClose(search, on, visit);
        FormTransmitDelay calculator(form_->Zentrova(), form_->Link(), dialogs_, help);
        ShowAndClose(calculator, on, visit);
        EntryRules rules(form_->Zentrova(), dialogs_);
        FormEdit edit(rules, dialogs_, help);
        edit.RawMax = 4095;
        edit.EngMax = 10;
        edit.SetEntry(QStringLiteral("0"), QStringLiteral("40"));
        ShowAndClose(edit, on, visit);
        FormAbout about(AboutContents(form_->Zentrova(), settings_), {}, help);
        ShowAndClose(about, on, visit);
        VisitUpgrade(on, visit);
        VisitWizard(on, visit);
        VisitHelp(on, visit);
        form_.reset();
    }

private:
    static void Show(QWidget &form, const QString &name, const Visit &visit) {
        form.show();
        form.activateWindow();
        ASSERT_TRUE(WaitUntil([&form] { return form.isActiveWindow(); }));
        Settle();
        visit(form, name);
    }

    static void ShowAndClose(QWidget &form, const QString &on, const Visit &visit) {
        Show(form, on + form.objectName(), visit);
        form.close();
    }

    void VisitUpgrade(const QString &on, const Visit &visit) {
        BootComm boot([](auto &, auto) { return nullptr; });
        FormUpgradeFirmware upgrade({.bootComm = boot,
                                     .link = form_->Link(),
                                     .zentrova = form_->Zentrova(),
                                     .dialogs = dialogs_,
                                     .help = form_->hHelp(),
                                     .programFolder = presets_,
                                     .showInEditor = [](auto &, auto &) { return false; }});
        Show(upgrade, on + QStringLiteral("upgrade"), visit);
        QTest::mouseClick(&Form(upgrade).Get<QLabel>("lblTitle"), Qt::LeftButton, Qt::ControlModifier);
        QTest::keyRelease(&upgrade, Qt::Key_Control); // for the tests to come
        EXPECT_TRUE(Form(upgrade).Get<QWidget>("Frame1").isVisible());
        Show(upgrade, on + QStringLiteral("upgrade with its panel"), visit);
        upgrade.close();
    }

    static void Record(const Form &ui, int place) {
        const std::string reading = "LabelActualDistance(" + std::to_string(place) + ')';
        EXPECT_TRUE(WaitUntil([&] { return ui.Text(reading.c_str()) != QStringLiteral("---.--"); }));
        ui.Press(("CommandRecordDistance(" + std::to_string(place) + ')').c_str());
    }

    // Each step of both routes.
    void VisitWizard(const QString &on, const Visit &visit) {
        form_->Zentrova().ParamUpdate(ParamDefines::ActualDistance, 12000); // as a sensor would measure
        for (const bool distance : {true, false}) {
            frmWizard wizard(form_->Zentrova(), dialogs_, form_->hHelp());
            const Form ui(wizard);
            const auto leave = [&] {
                Show(wizard, on + QStringLiteral("wizard"), visit);
                ui.Press("cmdNav(3)");
            };
            const auto type = [&](const char *box, const char *text) {
                ui.Get<QLineEdit>(box).setText(QString::fromLatin1(text));
            };
            leave();
            ui.Get<QAbstractButton>(distance ? "OptionZentrovaMode(0)" : "OptionZentrovaMode(1)").click();
            leave();
            if (distance) {
                type("TextVoltageOutput(0)", "10");
                Record(ui, 0);
                leave();
                type("TextVoltageOutput(1)", "0");
                Record(ui, 1);
                leave();
            } else {
                type("TextCoreDia", "199.99");
                type("TextMaxDia", "200.00");
                leave();
                Record(ui, 2);
                leave();
                ui.Get<QAbstractButton>("OptionDriveMode(0)").click();
                leave();
            }
            EXPECT_TRUE(ui.Enabled("cmdNav(4)"));
            Show(wizard, on + QStringLiteral("wizard's end"), visit);
            wizard.close();
        }
    }

    void VisitHelp(const QString &on, const Visit &visit) {
        form_->hHelp().HHDisplayContents(form_->winId());
        for (QWidget *window : QApplication::topLevelWidgets()) {
            auto *help = qobject_cast<HelpWindow *>(window);
            for (int list = 0; help != nullptr && list < 3; ++list) {
                Form(*help).Get<QTabWidget>("Lists").setCurrentIndex(list);
                Show(*help, on + QStringLiteral("help"), visit);
            }
            if (help != nullptr) {
                help->close();
            }
        }
    }

    HelpViewer viewer_{dialogs_, [](const QUrl &) { return false; }};
};

} // namespace ztv
