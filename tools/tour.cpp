// Runs the program against the simulated sensor without a user: goes online, visits each tab and dialog,
// prints the distances that it sees and saves a picture of each.

#include "firmware/SerialBootLine.h"
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
#include "shell/Application.h"
#include "shell/FormAbout.h"
#include "shell/FormMain.h"
#include "sim/SimulatedSensor.h"
#include "support/Fault.h"
#include "support/ProgramFolder.h"
#include "tabs/TabTable.h"
#include "tabs/ui/FormEdit.h"
#include "tabs/ui/ParameterList.h"
#include "tools/DarkPalette.h"
#include "tools/HelpProject.h"
#include "tools/PrintedDialogs.h"
#include "tools/SensorProcess.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QHeaderView>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace ztv {

namespace {

void Watch(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class Tour {
public:
    // Saves only the pictures whose names match `wanted`. The main form has the size `size`.
    Tour(FormMain &form, sim::SimulatedSensor &sensor, UserDialogs &dialogs, SettingsStore &settings,
         const QString &folder, const QRegularExpression &wanted, const QSize &size)
        : form_(form),
          sensor_(sensor),
          dialogs_(dialogs),
          settings_(settings),
          folder_(folder),
          wanted_(wanted) {
        form_.show();
        form_.setMinimumSize(0, 0); // that of the offscreen screen, which differs by the scale factor
        form_.resize(size);
    }

    // Visits only the tabs: before a sensor was read, online, with each fault of sensor and line, and
    // offline.
    bool RunOverTabs() {
        constexpr int timeToShow = 3200; // also for a silence
        TabPictures(QStringLiteral("-offline"));
        form_.GoOnline(ConnectPrompt::Skip);
        Watch(timeToShow);
        TabPictures({});
        form_.Zentrova().ParamValue(ParamDefines::FarDistance, 32'000);
        form_.Zentrova().ParamValue(ParamDefines::NearVoltage, 100);
        Watch(timeToShow);
        TabPictures(QStringLiteral("-not-saved"));
        for (const auto &[state, fault, end] :
             {std::array{"-no-echo", "set 38 0", "set 38 1"},
              std::array{"-bad-line", "corrupt 0.2", "corrupt 0"},
              std::array{"-no-answer", "mute on", "mute off"}, std::array{"-port-gone", "unplug", "plug"}}) {
            sensor_.Execute(QString::fromLatin1(fault));
            Watch(timeToShow);
            TabPictures(QString::fromLatin1(state));
            sensor_.Execute(QString::fromLatin1(end));
            Watch(timeToShow);
        }
        form_.GoOffline();
        TabPictures(QStringLiteral("-stale"));
        return ok_;
    }

    bool Run() {
        TabPictures(QStringLiteral("-offline")); // before any sensor was read
        FormReadWrite direction(form_.hHelp(), &form_);
        direction.Explain(TextOf({.values = 95,
                                  .sensor = {},
                                  .file = QStringLiteral("machine7.ztv"),
                                  .edits = {QStringLiteral("Near Distance"), QStringLiteral("Far Distance")},
                                  .backupFor = QStringLiteral("10427")}));
        direction.show();
        Picture(direction, QStringLiteral("read-write"));
        direction.close();

        CommsPicture(QStringLiteral("communications-offline"));
        SearchPictures();
        TransmitDelayPicture(QStringLiteral("transmit-delay-offline"));

        form_.GoOnline(ConnectPrompt::Skip);
        const QStringList distances = WatchDistances();
        std::printf("distances seen: %s\n", qPrintable(distances.join(QStringLiteral(", "))));
        TabPictures({});
        form_.GoOffline();
        TabPictures(QStringLiteral("-stale"));
        form_.GoOnline(ConnectPrompt::Skip);
        Watch(1000);
        auto *strip = form_.findChild<QTabWidget *>(QStringLiteral("TabStrip1"));
        strip->setCurrentIndex(Tab::Advanced - 1);
        VisitList();
        CommsPicture(QStringLiteral("communications-online"));
        EchoPicture();
        TransmitDelayPicture(QStringLiteral("transmit-delay-online"));
        WizardPictures();
        strip->setCurrentIndex(Tab::Basic - 1);
        EditingPictures();
        StripPictures();
        for (const std::int32_t mode : {ParamDefines::ManualMode, ParamDefines::HyperbolicMode}) {
            form_.Zentrova().ParamValue(ParamDefines::AnalogOutputMode, mode);
            form_.ConfigureBasicTab();
            Watch(400);
            Picture(form_, QStringLiteral("basic-mode-%1").arg(mode));
        }
        form_.resize(form_.size() * 1.4);
        strip->setCurrentIndex(Tab::Distance - 1);
        Watch(500);
        Picture(form_, QStringLiteral("distance-large"));
        form_.GoOffline();
        UpgradePictures();
        AboutPicture();
        HelpPictures();
        return ok_ && distances.size() > 1;
    }

private:
    // Takes a picture of each tab and returns to the first.
    void TabPictures(const QString &state) {
        auto *strip = form_.findChild<QTabWidget *>(QStringLiteral("TabStrip1"));
        for (int index = 0; index < strip->count(); ++index) {
            strip->setCurrentIndex(index);
            Watch(500);
            const char *key = Tab::Table[static_cast<std::size_t>(index)].key;
            Picture(form_, QString::fromLatin1(key).toLower() + state);
        }
        strip->setCurrentIndex(Tab::Basic - 1);
    }

    // Returns the different distances within two seconds.
    QStringList WatchDistances() {
        QStringList distances;
        QElapsedTimer elapsed;
        for (elapsed.start(); elapsed.elapsed() < 2000;) {
            Watch(100);
            const std::int16_t tag = ParamDefines::ActualDistance;
            const QString text = form_.Zentrova().FormatRaw(form_.Zentrova().ParamValue(tag), tag);
            if (distances.isEmpty() || distances.last() != text) {
                distances.append(text);
            }
        }
        return distances;
    }

    // Takes pictures of the strip below the pages: of a sensor that doesn't answer, and of a counter near its
    // end.
    void StripPictures() {
        constexpr int silenceMs = 3200;
        sensor_.Execute(QStringLiteral("mute on"));
        Watch(silenceMs);
        Picture(form_, QStringLiteral("strip-no-answer"));
        form_.Link().TimeoutCount(30'112);
        Watch(1100);
        Picture(form_, QStringLiteral("strip-counter"));
        form_.Link().TimeoutCount(0);
        sensor_.Execute(QStringLiteral("mute off"));
        Watch(1500);
    }

    // Takes pictures of the Advanced list in its states, with each of its editors.
    void VisitList() {
        auto &list = *form_.findChild<ParameterList *>();
        form_.activateWindow();
        list.setFocus();
        for (const auto &[tag, name] : {std::pair{ParamDefines::NearDistance, "advanced-text"},
                                        {ParamDefines::AnalogOutputMode, "advanced-choice"}}) {
            list.SelectRow(tag - 1);
            Press(list, Qt::Key_Return);
            Picture(form_, QString::fromLatin1(name));
            Press(*QApplication::focusWidget(), Qt::Key_Escape);
        }
        form_.Zentrova().ParamValue(ParamDefines::ManualOutput, 2048);
        form_.Zentrova().ParamValue(ParamDefines::NearVoltage, 100);
        form_.findChild<QRadioButton *>(QStringLiteral("OptionViewParameters(1)"))->setChecked(true);
        Q_EMIT list.header()->sectionClicked(ParameterListModel::Name);
        Picture(form_, QStringLiteral("advanced-changed-sorted"));
        form_.findChild<QRadioButton *>(QStringLiteral("OptionViewParameters(0)"))->setChecked(true);
        Q_EMIT list.header()->sectionClicked(ParameterListModel::Tag);

        EntryRules rules(form_.Zentrova(), dialogs_);
        FormEdit edit(rules, dialogs_, form_.hHelp(), &form_);
        edit.RawMax = 4095;
        edit.EngMax = 10;
        edit.SetEntry(QStringLiteral("2048"), QStringLiteral("40"));
        edit.show();
        Picture(edit, QStringLiteral("enter-value-raw"));
        edit.findChild<QRadioButton *>(QStringLiteral("OptionDataType(1)"))->setChecked(true);
        Picture(edit, QStringLiteral("enter-value-volts"));
        edit.close();
    }

    static void Press(QWidget &widget, Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }

    void CommsPicture(const QString &name) {
        FormComms comms(form_.Link(), form_.Zentrova(), dialogs_, settings_, form_.hHelp(), &form_);
        comms.show();
        Picture(comms, name);
        comms.close();
    }

    // Online behind an adapter that gives back what is sent.
    void EchoPicture() {
        const SensorProcess sensor({QStringLiteral("--echo")});
        ClassZentrova zentrova(ProgramFolder());
        LinkSession link(zentrova, {.deviceOfPort = [&sensor](std::int16_t) { return sensor.Device(); },
                                    .askDirection = [] { return ConnectChoice::Read; }});
        link.SetMbaxp1CommProperties(1, link.BaudRate(), link.ParityStop(), 0);
        link.GoOnline(ConnectPrompt::Skip);
        Watch(600);
        FormComms comms(link, zentrova, dialogs_, settings_, form_.hHelp(), &form_);
        comms.show();
        Picture(comms, QStringLiteral("communications-echo"));
        ok_ = ok_ && link.EchoIsPresent();
        comms.close();
        link.GoOffline();
    }

    void TransmitDelayPicture(const QString &name) {
        FormTransmitDelay calculator(form_.Zentrova(), form_.Link(), dialogs_, form_.hHelp(), &form_);
        calculator.findChild<QLineEdit *>(QStringLiteral("TextSumOfRanges"))
            ->setText(QStringLiteral("840.00"));
        calculator.show();
        Picture(calculator, name);
        calculator.findChild<QCheckBox *>(QStringLiteral("chkSaveSettings"))->setChecked(false);
        calculator.close();
    }

    // Takes pictures of both routes of the wizard: each step just before leaving it.
    void WizardPictures() {
        for (const int use : {0, 1}) {
            frmWizard wizard(form_.Zentrova(), dialogs_, form_.hHelp(), &form_);
            form_.ConnectWizard(wizard);
            wizard.show();
            const auto press = [&wizard](const char *name) {
                wizard.findChild<QAbstractButton *>(QString::fromLatin1(name))->click();
            };
            const auto type = [&wizard](const char *name, const char *text) {
                wizard.findChild<QLineEdit *>(QString::fromLatin1(name))->setText(QString::fromLatin1(text));
            };
            const auto leave = [&](const char *step) {
                Picture(wizard, QStringLiteral("wizard-") + QString::fromLatin1(step));
                press("cmdNav(3)");
                Watch(300);
            };
            Watch(1200); // until the first reading
            leave("introduction");
            if (use == 0) {
                press("OptionZentrovaMode(0)");
                leave("mode");
                press("CommandRecordDistance(0)");
                type("TextVoltageOutput(0)", "10");
                leave("far");
                press("CommandRecordDistance(1)");
                type("TextVoltageOutput(1)", "0");
                leave("near");
            } else {
                press("OptionZentrovaMode(1)");
                leave("mode-diameter");
                type("TextCoreDia", "3");
                type("TextMaxDia", "24");
                leave("diameters");
                Picture(wizard, QStringLiteral("wizard-core-not-recorded"));
                press("CommandRecordDistance(2)");
                wizard.ShowState(ValueState::Stale); // as on a dead line
                Picture(wizard, QStringLiteral("wizard-no-answer"));
                wizard.ShowState(ValueState::Live);
                Watch(1000);
                leave("core");
                press("OptionDriveMode(0)");
                leave("drive");
            }
            Picture(wizard, QStringLiteral("wizard-finished"));
            ok_ = ok_ && wizard.findChild<QWidget *>(QStringLiteral("cmdNav(4)"))->isEnabled();
            wizard.close();
        }
    }

    // Takes pictures of a search: the sensor replies at its address, and the other addresses are silent.
    void SearchPictures() {
        FormSearch search(
            form_.Link(), form_.Zentrova(), dialogs_, form_.hHelp(),
            {.port = form_.CommPort(), .baud = form_.BaudRate(), .parityStop = form_.ParityStop()}, &form_);
        search.show();
        Picture(search, QStringLiteral("search"));
        search.findChild<QPushButton *>(QStringLiteral("CommandStart"))->click();
        Watch(1500);
        Picture(search, QStringLiteral("search-running"));
        search.findChild<QPushButton *>(QStringLiteral("CommandStop"))->click();
        Watch(200);
        auto *results = search.findChild<QTreeWidget *>(QStringLiteral("ListViewResults"));
        results->setCurrentItem(results->topLevelItem(0));
        Picture(search, QStringLiteral("search-done"));
        ok_ = ok_ && results->topLevelItemCount() == 1;
        search.close();
        form_.SetMbaxp1CommProperties(form_.CommPort(), form_.BaudRate(), form_.ParityStop(), 0);
    }

    // Takes pictures of the upgrade of a sensor that is in its boot loader: each phase, and the failures. The
    // sensor runs in a separate process, because the boot link blocks.
    void UpgradePictures() {
        const QTemporaryDir home(QDir::tempPath() + QStringLiteral("/ztv-tour-XXXXXX"));
        const QString firmware = home.filePath(QStringLiteral("Firmware/B70214.hex"));
        QDir(home.path()).mkdir(QStringLiteral("Firmware"));
        SensorProcess sensor({QStringLiteral("--boot"), QStringLiteral("--latency"), QStringLiteral("2")});
        BootComm boot(SerialBootLine::Opener([&sensor](std::int16_t) { return sensor.Device(); }));
        FormUpgradeFirmware console({.bootComm = boot,
                                     .link = form_.Link(),
                                     .zentrova = form_.Zentrova(),
                                     .dialogs = dialogs_,
                                     .help = form_.hHelp(),
                                     .programFolder = home.path(),
                                     .showInEditor = [](auto &, auto &) { return true; }},
                                    &form_);
        console.show();
        Picture(console, QStringLiteral("upgrade"));
        const auto press = [&console](const char *name) {
            console.findChild<QPushButton *>(QString::fromLatin1(name))->click();
            Watch(100); // runs the command, which may take longer
            Watch(100); // paints its last texts
        };
        press("CommandUpgradeFirmware");
        Picture(console, QStringLiteral("upgrade-no-firmware"));
        press("CommandDisconnect");
        sensor.Command(QStringLiteral("mute on")); // no boot loader replies, as with a running sensor
        const int timeoutMs = std::exchange(boot.Settings().TimeoutMs, 100);
        press("CommandUpgradeFirmware");
        Picture(console, QStringLiteral("upgrade-firmware-not-found"));
        boot.Settings().TimeoutMs = timeoutMs;
        sensor.Command(QStringLiteral("mute off"));
        WriteFirmware(firmware, 400);
        Watch(1100); // looks at the file again
        Picture(console, QStringLiteral("upgrade-firmware-found"));
        const auto mute = QObject::connect(&console.Console(), &UpgradeConsole::TransferAdvanced, &console,
                                           [&](double done) {
                                               if (done > 0.2) {
                                                   sensor.Command(QStringLiteral("mute on"));
                                               }
                                           });
        boot.Settings().TimeoutMs = 100;
        press("CommandUpgradeFirmware");
        Picture(console, QStringLiteral("upgrade-stopped"));
        QObject::disconnect(mute);
        boot.Settings().TimeoutMs = timeoutMs;
        sensor.Command(QStringLiteral("mute off"));
        QString picture = QStringLiteral("upgrade-erasing");
        QObject::connect(&console.Console(), &UpgradeConsole::TransferAdvanced, &console, [&](double done) {
            if (done > 0.7 && !picture.isEmpty()) {
                Picture(console, std::exchange(picture, {}));
            }
        });
        QObject::connect(&console.Console(), &UpgradeConsole::TransferEnded, &console,
                         [&] { picture = QStringLiteral("upgrade-writing"); });
        press("CommandUpgradeFirmware");
        Picture(console, QStringLiteral("upgrade-done"));
        ok_ = ok_ && console.findChild<QLabel *>(QStringLiteral("StatusBar1(1)"))->text() ==
                         QStringLiteral("Run mode is set...");
        auto *title = console.findChild<QLabel *>(QStringLiteral("lblTitle"));
        QMouseEvent ctrl(QEvent::MouseButtonPress, QPointF(5, 5), title->mapToGlobal(QPointF(5, 5)),
                         Qt::LeftButton, Qt::LeftButton, Qt::ControlModifier);
        QCoreApplication::sendEvent(title, &ctrl);
        press("CommandDisconnect");
        Picture(console, QStringLiteral("upgrade-panel"));
        for (const char *command : {"mark 255", "reset", "latency 20"}) {
            sensor.Command(QString::fromLatin1(command));
        }
        press("CommandConnect");
        Picture(console, QStringLiteral("upgrade-panel-connected"));
        QTimer::singleShot(400, &console, [&] { press("CommandAbort"); });
        picture = QStringLiteral("upgrade-panel-reading");
        press("CommandRead");
        Picture(console, QStringLiteral("upgrade-panel-aborted"));
        sensor.Command(QStringLiteral("mute on"));
        boot.Settings().TimeoutMs = 100;
        press("CommandErase");
        Picture(console, QStringLiteral("upgrade-panel-failed"));
        console.close();
    }

    // Writes the first records of a simulated sensor's firmware.
    void WriteFirmware(const QString &fileName, int records) {
        QProcess maker;
        maker.start(ProgramFolder() + QStringLiteral("/ztv-sim"),
                    {QStringLiteral("--make-firmware"), fileName});
        maker.waitForFinished();
        QFile file(fileName);
        ok_ = file.open(QFile::ReadWrite) && ok_;
        QByteArray content;
        for (int line = 0; line <= records; ++line) {
            content += file.readLine();
        }
        ok_ = file.resize(0) && file.seek(0) && file.write(content + ":00000001FF\r\n") > 0 && ok_;
    }

    void AboutPicture() {
        FormAbout about(AboutContents(form_.Zentrova(), settings_), {}, form_.hHelp(), &form_);
        about.show();
        Picture(about, QStringLiteral("about"));
        about.close();
    }

    // Takes pictures of the help: the contents, the results of index and search, and each topic.
    void HelpPictures() {
        form_.hHelp().HHDisplayContents(form_.winId());
        HelpWindow *help = nullptr;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            help = help == nullptr ? qobject_cast<HelpWindow *>(window) : help;
        }
        ok_ = ok_ && help != nullptr;
        if (help == nullptr) {
            return;
        }
        for (const HelpTopic &topic : help->Topics().All()) {
            form_.hHelp().HHDisplayTopicID(form_.winId(), topic.number);
            Picture(*help, QStringLiteral("help-") + topic.file.section(u'.', 0, 0));
        }
        auto *lists = help->findChild<QTabWidget *>(QStringLiteral("Lists"));
        lists->setCurrentIndex(1);
        help->findChild<QLineEdit *>(QStringLiteral("IndexBox"))->setText(QStringLiteral("distance"));
        Picture(*help, QStringLiteral("help-index"));
        lists->setCurrentIndex(2);
        help->findChild<QLineEdit *>(QStringLiteral("SearchBox"))->setText(QStringLiteral("parity baud"));
        auto *results = help->findChild<QTreeWidget *>(QStringLiteral("Results"));
        results->setCurrentItem(results->topLevelItem(0));
        Picture(*help, QStringLiteral("help-search"));
        help->close();
    }

    // Takes pictures of a threshold being dragged and a value being typed.
    void EditingPictures() {
        auto *marker = form_.findChild<QWidget *>(QStringLiteral("PicRelay(0)"));
        const auto mouse = [&](QEvent::Type type, int x, Qt::MouseButtons buttons) {
            const QPointF place(x - marker->x(), marker->height() / 2.0);
            QMouseEvent event(type, place, marker->mapToGlobal(place), Qt::LeftButton, buttons,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(marker, &event);
        };
        mouse(QEvent::MouseButtonPress, marker->x() + 5, Qt::LeftButton);
        mouse(QEvent::MouseMove, 290, Qt::LeftButton);
        Picture(form_, QStringLiteral("basic-drag"));
        mouse(QEvent::MouseButtonRelease, 290, Qt::NoButton);

        auto *box = form_.findChild<QWidget *>(QStringLiteral("TextParam(4)"));
        box->setFocus();
        for (const int key : {Qt::Key_3, Qt::Key_5}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QChar(key));
            QCoreApplication::sendEvent(form_.focusWidget(), &press);
        }
        Picture(form_, QStringLiteral("basic-entry"));
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(form_.focusWidget(), &escape);
    }

    void Picture(QWidget &widget, const QString &name) {
        Watch(50);
        if (!wanted_.match(name).hasMatch()) {
            return;
        }
        const QString file = folder_ + u'/' + name + QStringLiteral(".png");
        const bool saved = widget.grab().save(file);
        std::printf("%s %s\n", saved ? "picture" : "can't write", qPrintable(file));
        ok_ = ok_ && saved;
    }

    FormMain &form_;
    sim::SimulatedSensor &sensor_;
    UserDialogs &dialogs_;
    SettingsStore &settings_;
    QString folder_;
    QRegularExpression wanted_;
    bool ok_ = true;
};

QList<QRgb> CommonestColours(const QImage &picture) {
    constexpr qsizetype most = 256;
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    QList<QRgb> colours = counts.keys();
    std::sort(colours.begin(), colours.end(), [&counts](QRgb one, QRgb other) {
        return std::pair(counts[one], one) > std::pair(counts[other], other);
    });
    return colours.first(std::min(most, colours.size()));
}

// Copies the pictures that the help's topics show into the help's folder, scaled down. Returns true if all of
// them existed and were written.
bool GiveHelpItsPictures(const QString &tour, const QString &help) {
    constexpr int widest = 560;
    try {
        const HelpTopics topics = HelpTopics::Read(help);
        for (const QString &name : HelpProject::Pictures(topics)) {
            QImage picture(tour + u'/' + name);
            if (picture.width() > widest) {
                picture = picture.scaledToWidth(widest, Qt::SmoothTransformation);
            }
            if (picture.isNull() ||
                !picture.convertToFormat(QImage::Format_Indexed8, CommonestColours(picture))
                     .save(help + QStringLiteral("/pictures/") + name)) {
                std::fprintf(stderr, "no picture %s\n", qPrintable(name));
                return false;
            }
        }
        return true;
    } catch (const Fault &fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return false;
    }
}

} // namespace

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Takes a picture of each tab and dialog."));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("As a dark desktop shows it."));
    const QCommandLineOption fontSize(QStringLiteral("font-size"),
                                      QStringLiteral("With the desktop's font larger."),
                                      QStringLiteral("points"));
    const QCommandLineOption only(QStringLiteral("only"),
                                  QStringLiteral("Keep the pictures whose names match this."),
                                  QStringLiteral("expression"));
    const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("With a main window of that size."),
                                  QStringLiteral("width x height"), QStringLiteral("680x596"));
    const QCommandLineOption tabs(QStringLiteral("tabs"), QStringLiteral("Visit the tabs alone."));
    options.addOptions({dark, fontSize, only, size, tabs});
    options.addHelpOption();
    options.addPositionalArgument(QStringLiteral("FOLDER"), QStringLiteral("Where the pictures go."));
    options.addPositionalArgument(QStringLiteral("HELP_FOLDER"),
                                  QStringLiteral("The help that gets its pictures anew."),
                                  QStringLiteral("[HELP_FOLDER]"));
    options.process(application);
    QStringList arguments = options.positionalArguments();
    if (arguments.isEmpty() || arguments.size() > 2) {
        options.showHelp(2);
    }
    const QStringList sides = options.value(size).split(u'x');
    const QSize formSize(sides.value(0).toInt(), sides.value(1).toInt());
    if (sides.size() != 2 || formSize.isEmpty()) {
        std::fprintf(stderr, "A size is width x height, as 1366x768.\n");
        return 2;
    }
    if (options.isSet(dark)) {
        QApplication::setPalette(DarkPalette());
    }
    if (options.isSet(fontSize)) {
        QFont font = QApplication::font();
        font.setPointSizeF(options.value(fontSize).toDouble());
        if (font.pointSizeF() <= 0) {
            std::fprintf(stderr, "A font has a size above 0.\n");
            return 2;
        }
        QApplication::setFont(font);
    }
    // Absolute: an import of a hex file changes the current folder.
    for (QString &argument : arguments) {
        argument = QDir(argument).absolutePath();
    }
    const QString &folder = arguments.first();
    QDir().mkpath(folder);
    const QTemporaryDir configuration; // a tour leaves no settings behind
    qputenv("XDG_CONFIG_HOME", configuration.path().toLocal8Bit());

    sim::SensorOptions sensorOptions;
    sensorOptions.presets = ProgramFolder() + QStringLiteral("/Presets.fil");
    sim::SimulatedSensor sensor(sensorOptions);
    const QString error = sensor.Start();
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return EXIT_FAILURE;
    }
    qputenv("ZTVLINK_PORT_1", sensor.Path().toLocal8Bit());

    PrintedDialogs dialogs;
    SettingsStore settings(QStringLiteral("ZTV Link"));
    HelpViewer help(dialogs, [](const QUrl &) { return false; });
    FormMain form({.dialogs = dialogs,
                   .settings = settings,
                   .helpEngine = help,
                   .programFolder = ProgramFolder(),
                   .arguments = {QStringLiteral("/CHECKOUT")},
                   .ctrlKeyIsDown = [] { return false; }});
    Tour tour(form, sensor, dialogs, settings, folder, QRegularExpression(options.value(only)), formSize);
    const bool toured = options.isSet(tabs) ? tour.RunOverTabs() : tour.Run();
    const bool gave = arguments.size() == 1 || GiveHelpItsPictures(folder, arguments.at(1));
    return toured && gave ? EXIT_SUCCESS : EXIT_FAILURE;
}
