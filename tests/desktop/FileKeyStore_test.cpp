#include "desktop/FileKeyStore.h"

#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class FileKeyStoreTest : public testing::Test {
protected:
    bool IsThere(const QString &keyPath) { return store_.Open(RootKey::ClassesRoot, keyPath) != nullptr; }
    void Create(const QString &keyPath) { store_.Create(RootKey::ClassesRoot, keyPath); }
    StoreStatus Store(const QString &keyPath, const QString &name, const QByteArray &bytes) {
        return store_.Open(RootKey::ClassesRoot, keyPath)->Store(name, ValueType::Sz, bytes);
    }
    std::optional<QByteArray> Read(const QString &keyPath, const QString &name) {
        return store_.Read(RootKey::ClassesRoot, keyPath, name, ValueType::Sz);
    }

    QStringList FilesOutsideTheStore() const {
        QStringList outside;
        QDirIterator all(folder_.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
        while (all.hasNext()) {
            const QString path = all.next();
            if (path != Root() && !path.startsWith(Root() + u'/')) {
                outside += path;
            }
        }
        return outside;
    }
    QString Root() const { return folder_.filePath(QStringLiteral("keys")); }

    QTemporaryDir folder_;
    FileKeyStore store_{Root()};
};

TEST_F(FileKeyStoreTest, MakesAKeyWithThoseAboveIt) {
    EXPECT_FALSE(IsThere(QStringLiteral("a")));
    Create(QStringLiteral("a\\b\\c"));
    EXPECT_TRUE(IsThere(QStringLiteral("a")));
    EXPECT_TRUE(IsThere(QStringLiteral("a\\b\\c")));
    EXPECT_FALSE(IsThere(QStringLiteral("b")));
}

TEST_F(FileKeyStoreTest, KeepsTheRootsApart) {
    const RootKey roots[] = {RootKey::ClassesRoot, RootKey::CurrentUser, RootKey::LocalMachine};
    for (const RootKey root : roots) {
        const QString name = QString::number(static_cast<std::uint32_t>(root));
        store_.Create(root, name);
        for (const RootKey other : roots) {
            EXPECT_EQ(store_.Open(other, name) != nullptr, other == root) << name.toStdString();
        }
    }
}

TEST_F(FileKeyStoreTest, KeepsBytesAsTheyAre) {
    Create(QStringLiteral("a"));
    QByteArray all;
    for (int i = 0; i < 256; ++i) {
        all.append(static_cast<char>(i));
    }
    EXPECT_EQ(Store(QStringLiteral("a"), QString(), all), 0);
    EXPECT_EQ(Store(QStringLiteral("a"), QStringLiteral("empty"), {}), 0);
    FileKeyStore another(Root());
    EXPECT_EQ(another.Read(RootKey::ClassesRoot, QStringLiteral("a"), QString(), ValueType::Sz), all);
    EXPECT_EQ(Read(QStringLiteral("a"), QStringLiteral("empty")), QByteArray());
    EXPECT_EQ(Read(QStringLiteral("a"), QStringLiteral("gone")), std::nullopt);
    EXPECT_EQ(Read(QStringLiteral("gone"), QString()), std::nullopt);
}

TEST_F(FileKeyStoreTest, KeepsOneValueOfAName) {
    Create(QStringLiteral("a"));
    Store(QStringLiteral("a"), QStringLiteral("n"), "old and long");
    store_.Open(RootKey::ClassesRoot, QStringLiteral("a"))
        ->Store(QStringLiteral("n"), ValueType::Dword, QByteArray("\1\0\0\0", 4));
    EXPECT_EQ(Read(QStringLiteral("a"), QStringLiteral("n")), std::nullopt);
    EXPECT_EQ(store_.Read(RootKey::ClassesRoot, QStringLiteral("a"), QStringLiteral("n"), ValueType::Dword),
              QByteArray("\1\0\0\0", 4));
}

TEST_F(FileKeyStoreTest, MindsNoCaseInNames) {
    Create(QStringLiteral(".ZTV"));
    EXPECT_TRUE(IsThere(QStringLiteral(".ztv")));
}

TEST_F(FileKeyStoreTest, TellsValuesFromKeys) {
    Create(QStringLiteral("a\\b"));
    for (const char *name : {"", "@", "b", "b.value", "@.value"}) {
        EXPECT_EQ(Store(QStringLiteral("a"), QString::fromLatin1(name), name), 0) << name;
    }
    for (const char *name : {"", "@", "b", "b.value", "@.value"}) {
        EXPECT_EQ(Read(QStringLiteral("a"), QString::fromLatin1(name)), QByteArray(name)) << name;
    }
    EXPECT_FALSE(IsThere(QStringLiteral("a\\@")));
    EXPECT_FALSE(IsThere(QStringLiteral("a\\@.value")));
    EXPECT_TRUE(IsThere(QStringLiteral("a\\b")));
}

TEST_F(FileKeyStoreTest, StaysInItsFolderWhateverTheNames) {
    const QString names[] = {
        QStringLiteral(".."),
        QStringLiteral("..\\..\\x"),
        QStringLiteral("../../x"),
        QStringLiteral("/x"),
        QStringLiteral("."),
        QStringLiteral("a/../../../x"),
        QStringLiteral("C:x"),
        QStringLiteral("~"),
        QStringLiteral("%2e%2e"),
        QStringLiteral("a\nb\tc"),
        QStringLiteral("a") + QChar::Null + QStringLiteral("b"),
    };
    for (const QString &name : names) {
        Create(name);
        ASSERT_TRUE(IsThere(name)) << name.toStdString();
        EXPECT_EQ(Store(name, name, name.toUtf8()), 0);
        EXPECT_EQ(Read(name, name), name.toUtf8());
    }
    EXPECT_EQ(FilesOutsideTheStore(), QStringList());
}

TEST_F(FileKeyStoreTest, KnowsNoKeyOfAnEmptyName) {
    for (const char *name : {"", "\\", "\\a", "a\\", "a\\\\b"}) {
        Create(QString::fromLatin1(name));
        EXPECT_FALSE(IsThere(QString::fromLatin1(name))) << name;
        EXPECT_EQ(Read(QString::fromLatin1(name), QString()), std::nullopt) << name;
    }
    EXPECT_FALSE(QFileInfo::exists(Root()));
}

TEST_F(FileKeyStoreTest, HasNoKeyOfANameThatIsTooLong) {
    const QString name(400, u'a');
    Create(name);
    EXPECT_FALSE(IsThere(name));
    Create(QStringLiteral("a"));
    EXPECT_NE(Store(QStringLiteral("a"), name, "x"), 0);
}

TEST_F(FileKeyStoreTest, HasNoKeysWhereItCantWrite) {
    WriteFile(Root(), "in the way");
    Create(QStringLiteral("a"));
    EXPECT_FALSE(IsThere(QStringLiteral("a")));
    EXPECT_EQ(ReadFile(Root()), QByteArray("in the way"));
}

TEST_F(FileKeyStoreTest, KeepsTheOldValueWhereTheNewOneCantBeWrittenWhole) {
    Create(QStringLiteral("a"));
    Store(QStringLiteral("a"), QString(), "old");
    {
        const FileSizeLimit limit(8);
        EXPECT_NE(Store(QStringLiteral("a"), QString(), "new and longer"), 0);
        EXPECT_NE(Store(QStringLiteral("a"), QStringLiteral("n"), "new and longer"), 0);
    }
    EXPECT_EQ(Read(QStringLiteral("a"), QString()), QByteArray("old"));
    EXPECT_EQ(QDir(Root() + QStringLiteral("/classes/a")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("@.value")});
}

TEST_F(FileKeyStoreTest, LeavesNothingOfAValueWhoseKeyIsGone) {
    Create(QStringLiteral("a"));
    Store(QStringLiteral("a"), QString(), "old");
    const auto key = store_.Open(RootKey::ClassesRoot, QStringLiteral("a"));
    store_.Remove(RootKey::ClassesRoot, QStringLiteral("a"));
    EXPECT_NE(key->Store(QString(), ValueType::Sz, "new"), 0);
    EXPECT_FALSE(IsThere(QStringLiteral("a")));
}

TEST_F(FileKeyStoreTest, RemovesAKeyWithAllBelowIt) {
    Create(QStringLiteral("a\\b"));
    Create(QStringLiteral("c"));
    store_.Remove(RootKey::ClassesRoot, QStringLiteral("a"));
    store_.Remove(RootKey::ClassesRoot, QStringLiteral(""));
    EXPECT_FALSE(IsThere(QStringLiteral("a\\b")));
    EXPECT_TRUE(IsThere(QStringLiteral("c")));
}

TEST_F(FileKeyStoreTest, TakesAValueThatSomebodyCutForNone) {
    Create(QStringLiteral("a"));
    WriteFile(Root() + QStringLiteral("/classes/a/@.value"), QByteArray("\1\0", 2));
    EXPECT_EQ(Read(QStringLiteral("a"), QString()), std::nullopt);
}

#ifdef Q_OS_LINUX
TEST(FileKeyStoreFolderTest, IsTheUsersOwn) {
    const EnvironmentVariable home("XDG_DATA_HOME", QStringLiteral("/somewhere"));
    EXPECT_EQ(FileKeyStore::UsersFolder(), QStringLiteral("/somewhere/ztv-link/keys"));
}
#endif

} // namespace ztv
