#include "support/SettingsStore.h"

#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class SettingsStoreTest : public testing::Test {
protected:
    SettingsStoreTest() : previous_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit());
    }
    ~SettingsStoreTest() override { qputenv("XDG_CONFIG_HOME", previous_); }

    QTemporaryDir folder_;
    QByteArray previous_;
    SettingsStore store_{QStringLiteral("ZTV Link")};
};

TEST_F(SettingsStoreTest, GivesTheFallbackWhereNothingIsStored) {
    EXPECT_EQ(store_.Read(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("1")),
              QStringLiteral("1"));
}

TEST_F(SettingsStoreTest, KeepsTextsBySectionAndKey) {
    EXPECT_TRUE(store_.Write(QStringLiteral("Options"), QStringLiteral("Top"), QStringLiteral("7")));
    EXPECT_TRUE(
        store_.Write(QStringLiteral("Startup"), QStringLiteral("Top"), QStringLiteral("a, b = \"c\"")));
    const SettingsStore another(QStringLiteral("ZTV Link"));
    EXPECT_EQ(another.Read(QStringLiteral("Options"), QStringLiteral("Top"), {}), QStringLiteral("7"));
    EXPECT_EQ(another.Read(QStringLiteral("Startup"), QStringLiteral("Top"), {}),
              QStringLiteral("a, b = \"c\""));
}

TEST_F(SettingsStoreTest, ClearsAllOfTheApplicationAndNothingElse) {
    SettingsStore other(QStringLiteral("Another Program"));
    other.Write(QStringLiteral("Options"), QStringLiteral("Key"), QStringLiteral("kept"));
    store_.Write(QStringLiteral("Options"), QStringLiteral("Key"), QStringLiteral("gone"));
    EXPECT_TRUE(store_.Clear());
    EXPECT_EQ(store_.Read(QStringLiteral("Options"), QStringLiteral("Key"), {}), QString());
    EXPECT_EQ(other.Read(QStringLiteral("Options"), QStringLiteral("Key"), {}), QStringLiteral("kept"));
}

TEST_F(SettingsStoreTest, KeepsForTheRunWhatCantBeStoredAndStoresItLater) {
    const QString options = QStringLiteral("Options");
    const QString kept = QStringLiteral("Kept");
    const QString removed = QStringLiteral("Removed");
    EXPECT_TRUE(store_.Write(options, removed, QStringLiteral("old")));
    {
        const EnvironmentVariable noFolder("XDG_CONFIG_HOME", QStringLiteral("/dev/null"));
        EXPECT_FALSE(store_.Write(options, kept, QStringLiteral("new")));
        EXPECT_FALSE(store_.Remove(options, removed));
        EXPECT_EQ(store_.Read(options, kept, {}), QStringLiteral("new"));
        EXPECT_EQ(store_.Read(options, removed, QStringLiteral("none")), QStringLiteral("none"));
        EXPECT_EQ(store_.Place(), QStringLiteral("/dev/null/ZTV Link.conf"));
    }
    EXPECT_EQ(store_.Read(options, removed, QStringLiteral("none")), QStringLiteral("none"));
    EXPECT_TRUE(store_.Write(options, QStringLiteral("Another"), QStringLiteral("1")));
    const SettingsStore another(QStringLiteral("ZTV Link"));
    EXPECT_EQ(another.Read(options, kept, {}), QStringLiteral("new"));
    EXPECT_EQ(another.Read(options, removed, QStringLiteral("none")), QStringLiteral("none"));
}

TEST_F(SettingsStoreTest, StoresOverAFileThatItCantMakeOut) {
    WriteFile(store_.Place(), "[Options\n\xff=\x00 %%%\nno line\n");
    EXPECT_EQ(store_.Read(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("1")),
              QStringLiteral("1"));
    EXPECT_TRUE(store_.Write(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("7")));
    EXPECT_EQ(store_.Read(QStringLiteral("Options"), QStringLiteral("CommPort"), {}), QStringLiteral("7"));
}

} // namespace ztv
