#include "tests/helpers/QtWarnings.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace ztv;

int main(int argc, char *argv[]) {
    QTemporaryDir folder; // keeps the user's own files out of the tests
    qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    FailOnQtWarnings();
    return RUN_ALL_TESTS();
}
