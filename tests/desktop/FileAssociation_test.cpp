#include "desktop/FileAssociation.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ztv {

namespace {

// Keeps keys in memory and records each call.
class RecordingStore : public KeyStore {
public:
    std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) override {
        const std::string key = NameOf(root, keyPath);
        record.push_back("open " + key);
        if (keys.count(key) == 0) {
            return nullptr;
        }
        return std::make_unique<Key>(*this, key);
    }

    void Create(RootKey root, const QString &keyPath) override {
        const std::string key = NameOf(root, keyPath);
        record.push_back("create " + key);
        if (!writable) {
            return;
        }
        for (std::size_t at = key.find('\\'); at != std::string::npos; at = key.find('\\', at + 1)) {
            keys.insert(key.substr(0, at));
        }
        keys.insert(key);
    }

    std::vector<std::string> record;
    std::set<std::string> keys;
    std::map<std::string, QByteArray> values; // by "key name type"
    StoreStatus status = 0;
    bool writable = true;

private:
    class Key : public OpenKey {
    public:
        Key(RecordingStore &store, const std::string &key) : store_(store), key_(key) {}
        ~Key() override { store_.record.push_back("close " + key_); }
        Key(const Key &) = delete;
        Key &operator=(const Key &) = delete;

        StoreStatus Store(const QString &valueName, ValueType type, const QByteArray &bytes) override {
            const std::string value =
                key_ + " '" + valueName.toStdString() + "' " + std::to_string(static_cast<int>(type));
            store_.record.push_back("store " + value);
            store_.values[value] = bytes;
            return store_.status;
        }

    private:
        RecordingStore &store_;
        std::string key_;
    };

    static std::string NameOf(RootKey root, const QString &keyPath) {
        return (root == RootKey::ClassesRoot ? "" : "USER:") + keyPath.toStdString();
    }
};

void Associate(KeyStore &store, const QString &extension = QStringLiteral(".ztv")) {
    FileAssociation::CreateAssociation(store, extension, QStringLiteral("ZTV Link"),
                                       QStringLiteral("Zentrova File"),
                                       QStringLiteral("C:\\ZTV Link\\ZtvLink"));
}

using Record = std::vector<std::string>;

} // namespace

TEST(FileAssociationTest, StoresTheThreeKeysAsTextsThatEndInANul) {
    RecordingStore store;
    Associate(store);
    const std::map<std::string, QByteArray> expected = {
        {".ztv '' 1", QByteArray("ZTV Link\0", 9)},
        {"ZTV Link '' 1", QByteArray("Zentrova File\0", 14)},
        {"ZTV Link\\shell\\open\\command '' 1", QByteArray("\"C:\\ZTV Link\\ZtvLink\" \"%1\"\0", 27)},
    };
    EXPECT_EQ(store.values, expected);
}

TEST(FileAssociationTest, MakesTheKeysInTheirOrderAndClosesEach) {
    RecordingStore store;
    Associate(store);
    const Record expected = {
        "open .ztv",
        "create .ztv",
        "open .ztv",
        "store .ztv '' 1",
        "close .ztv",
        "create ZTV Link\\shell\\open\\command",
        "open ZTV Link",
        "store ZTV Link '' 1",
        "close ZTV Link",
        "open ZTV Link\\shell\\open\\command",
        "store ZTV Link\\shell\\open\\command '' 1",
        "close ZTV Link\\shell\\open\\command",
    };
    EXPECT_EQ(store.record, expected);
}

TEST(FileAssociationTest, PutsThePointBeforeAnExtensionWithoutOne) {
    RecordingStore store;
    Associate(store, QStringLiteral("ztv"));
    EXPECT_EQ(store.keys.count(".ztv"), 1U);
    EXPECT_EQ(store.keys.count("ztv"), 0U);
}

TEST(FileAssociationTest, TakesAnEmptyExtensionForAPoint) {
    RecordingStore store;
    Associate(store, QString());
    EXPECT_EQ(store.keys.count("."), 1U);
}

TEST(FileAssociationTest, NeverTouchesABindingThatIsThere) {
    RecordingStore store;
    store.keys = {".ztv", "Another", "Another\\shell\\open\\command"};
    Associate(store);
    EXPECT_EQ(store.record, (Record{"open .ztv", "close .ztv"}));
}

TEST(FileAssociationTest, RepairsNothingWhereOnlyTheExtensionIsThere) {
    RecordingStore store;
    store.keys = {".ztv"};
    Associate(store, QStringLiteral("ztv"));
    EXPECT_EQ(store.record, (Record{"open .ztv", "close .ztv"}));
    EXPECT_EQ(store.keys, (std::set<std::string>{".ztv"}));
}

TEST(FileAssociationTest, DoesntFollowAProgramThatHasMoved) {
    RecordingStore store;
    Associate(store);
    const auto before = store.values;
    FileAssociation::CreateAssociation(store, QStringLiteral(".ztv"), QStringLiteral("ZTV Link"),
                                       QStringLiteral("Zentrova File"), QStringLiteral("D:\\New\\ZtvLink"));
    EXPECT_EQ(store.values, before);
}

TEST(FileAssociationTest, GoesOnSilentlyWithoutRightsAndTriesAgain) {
    RecordingStore store;
    store.writable = false;
    Associate(store);
    EXPECT_TRUE(store.keys.empty());
    EXPECT_TRUE(store.values.empty());
    store.writable = true;
    Associate(store);
    EXPECT_EQ(store.values.size(), 3U);
}

TEST(FileAssociationTest, LooksAtNoResultOfAStore) {
    RecordingStore store;
    store.status = 5;
    Associate(store);
    EXPECT_EQ(store.values.size(), 3U);
}

TEST(FileAssociationTest, TellsAKeyOfTheClassesThatIsThere) {
    RecordingStore store;
    FileAssociation::CreateKey(store, QStringLiteral("a\\b"), RootKey::ClassesRoot);
    EXPECT_TRUE(FileAssociation::KeyExists(store, QStringLiteral("a\\b")));
    EXPECT_TRUE(FileAssociation::KeyExists(store, QStringLiteral("a")));
    EXPECT_FALSE(FileAssociation::KeyExists(store, QStringLiteral("b")));
    EXPECT_EQ(store.record.back(), "open b");
}

TEST(FileAssociationTest, CreatesAKeyUnderTheGivenRoot) {
    RecordingStore store;
    FileAssociation::CreateKey(store, QStringLiteral("a"), RootKey::CurrentUser);
    EXPECT_EQ(store.keys, (std::set<std::string>{"USER:a"}));
    EXPECT_FALSE(FileAssociation::KeyExists(store, QStringLiteral("a")));
}

TEST(FileAssociationTest, StoresAValueByItsName) {
    RecordingStore store;
    store.keys = {"a"};
    FileAssociation::SetKeyValue(store, QStringLiteral("a"), QStringLiteral("n"), 7, ValueType::Dword);
    FileAssociation::SetKeyValue(store, QStringLiteral("gone"), QStringLiteral("n"), 7, ValueType::Dword);
    EXPECT_EQ(store.values, (std::map<std::string, QByteArray>{{"a 'n' 4", QByteArray("\7\0\0\0", 4)}}));
}

class StoreValueTest : public testing::Test {
protected:
    StoreValueTest() { store_.keys = {"k"}; }

    StoreStatus Store(ValueType type, const FileAssociation::Value &value) {
        return FileAssociation::StoreValue(*store_.Open(RootKey::ClassesRoot, QStringLiteral("k")), QString(),
                                           type, value);
    }

    RecordingStore store_;
};

TEST_F(StoreValueTest, EndsATextInOneNulThatCounts) {
    EXPECT_EQ(Store(ValueType::Sz, QStringLiteral("ab")), 0);
    EXPECT_EQ(store_.values["k '' 1"], QByteArray("ab\0", 3));
    Store(ValueType::Sz, QString());
    EXPECT_EQ(store_.values["k '' 1"], QByteArray("\0", 1));
    Store(ValueType::Sz, QStringLiteral("\u00e4"));
    EXPECT_EQ(store_.values["k '' 1"], QStringLiteral("\u00e4").toLocal8Bit() + '\0');
}

TEST_F(StoreValueTest, StoresANumberInFourBytes) {
    EXPECT_EQ(Store(ValueType::Dword, 0x01020304), 0);
    EXPECT_EQ(store_.values["k '' 4"], QByteArray("\4\3\2\1", 4));
    Store(ValueType::Dword, -1);
    EXPECT_EQ(store_.values["k '' 4"], QByteArray("\xff\xff\xff\xff", 4));
}

TEST_F(StoreValueTest, TurnsAValueIntoItsType) {
    Store(ValueType::Sz, -12);
    EXPECT_EQ(store_.values["k '' 1"], QByteArray("-12\0", 4));
    Store(ValueType::Dword, QStringLiteral("258"));
    EXPECT_EQ(store_.values["k '' 4"], QByteArray("\2\1\0\0", 4));
}

TEST_F(StoreValueTest, StoresNoTextThatIsNoNumberAsOne) {
    EXPECT_NE(Store(ValueType::Dword, QStringLiteral("many")), 0);
    EXPECT_NE(Store(ValueType::Dword, QStringLiteral("3000000000")), 0);
    EXPECT_TRUE(store_.values.empty());
}

TEST_F(StoreValueTest, StoresNothingOfAnyOtherTypeAndGives0) {
    store_.status = 5;
    for (const std::uint32_t type : {0U, 2U, 3U, 5U, 7U, 11U}) {
        EXPECT_EQ(Store(static_cast<ValueType>(type), QStringLiteral("ab")), 0);
    }
    EXPECT_TRUE(store_.values.empty());
}

TEST_F(StoreValueTest, GivesTheStatusOfTheStore) {
    store_.status = 5;
    EXPECT_EQ(Store(ValueType::Sz, QStringLiteral("ab")), 5);
    EXPECT_EQ(Store(ValueType::Dword, 1), 5);
}

} // namespace ztv
