#include "shell/SystemHelp.h"

#include "help/ui/HelpViewer.h"

#include <QDesktopServices>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include "help/HtmlHelpEngine.h"
#endif

namespace ztv {

std::unique_ptr<HelpEngine> SystemHelp([[maybe_unused]] const QString &programFolder, UserDialogs &dialogs) {
#ifdef Q_OS_WIN
    if (HtmlHelpEngine::IsThere() && QFileInfo::exists(programFolder + QStringLiteral("/ZTV.chm"))) {
        return std::make_unique<HtmlHelpEngine>();
    }
#endif
    return std::make_unique<HelpViewer>(dialogs, QDesktopServices::openUrl);
}

} // namespace ztv
