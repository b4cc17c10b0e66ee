#include "shell/Application.h"
#include "tests/helpers/QtWarnings.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace ztv;

int main(int argc, char *argv[]) {
    QTemporaryDir folder; // keeps the user's own files out of the tests
    qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    Application application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    application.OnFault([](const Fault &fault) { ADD_FAILURE() << "fault: " << fault.what(); });
    FailOnQtWarnings();
    return RUN_ALL_TESTS();
}
