#include "tests/support/QtWarnings.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char *argv[]) {
    QTemporaryDir configuration;
    qputenv("XDG_CONFIG_HOME", configuration.path().toLocal8Bit());
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    FailOnQtWarnings();
    return RUN_ALL_TESTS();
}
