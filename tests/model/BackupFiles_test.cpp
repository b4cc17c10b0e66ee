#include "model/BackupFiles.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/TestPresets.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class BackupFilesTest : public testing::Test {
protected:
    QString Path(const QString &name) const { return QDir(files_.Folder()).filePath(name); }
    QStringList Names() const { return QDir(files_.Folder()).entryList(QDir::Files | QDir::Hidden); }

    void Save(std::int32_t serialNumber, const QDateTime &time) {
        files_.Save(zentrova_, serialNumber, time, [this](std::int16_t tag) {
            return tag == ParamDefines::FarDistance ? 31111 : zentrova_.ParamPreset(tag);
        });
    }

    QTemporaryDir folder_;
    BackupFiles files_{folder_.filePath(QStringLiteral("new/Backups"))};
    ClassZentrova zentrova_{ShippedPresetsFolder()};
    QDateTime time_{QDate(2026, 11, 22), QTime(5, 10, 33)};
};

TEST_F(BackupFilesTest, AreNamedBySerialNumberAndTimeAndOpenAsAnyFile) {
    EXPECT_FALSE(files_.HasAny());
    Save(10427, time_);
    EXPECT_EQ(Names(), QStringList{QStringLiteral("10427 2026-11-22 051033.ztv")});
    EXPECT_TRUE(files_.HasAny());
    ClassZentrova opened(ShippedPresetsFolder());
    EXPECT_EQ(opened.OpenFile(Path(Names().front())).result, FileOpened::Whole);
    EXPECT_EQ(opened.ParamValue(ParamDefines::FarDistance), 31111);
}

TEST_F(BackupFilesTest, LeaveTheTableItsValuesNotesAndChanges) {
    zentrova_.ParamValue(ParamDefines::FarDistance, 20000);
    zentrova_.FileNotes(QStringLiteral("line 4"));
    Save(10427, time_);
    EXPECT_TRUE(zentrova_.FileChangesNeedSaving());
    EXPECT_EQ(zentrova_.FileNotes(), QStringLiteral("line 4"));
    EXPECT_EQ(zentrova_.ParamValue(ParamDefines::FarDistance), 20000);
    EXPECT_EQ(zentrova_.EditedRows(), std::vector<std::int16_t>{ParamDefines::FarDistance});
}

TEST_F(BackupFilesTest, OpenWholeAlsoFromASensorThatReportsNoRows) {
    files_.Save(zentrova_, 1, time_, [](std::int16_t) { return 0; });
    ClassZentrova opened(ShippedPresetsFolder());
    opened.ParamUpdate(ParamDefines::Relay1OffThreshold, 4242);
    EXPECT_EQ(opened.OpenFile(Path(Names().front())).result, FileOpened::Whole);
    EXPECT_NE(opened.ParamValue(ParamDefines::Relay1OffThreshold), 4242);
}

TEST_F(BackupFilesTest, KeepTheLastTwentyOfEachSensor) {
    Save(7, time_);
    for (int minute = 0; minute < 25; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    QStringList expected{QStringLiteral("7 2026-11-22 051033.ztv")};
    for (int minute = 5; minute < 25; ++minute) {
        expected << QStringLiteral("10427 2026-11-22 05%1.ztv").arg((10 + minute) * 100 + 33);
    }
    expected.sort();
    QStringList names = Names();
    names.sort();
    EXPECT_EQ(names, expected);
}

TEST_F(BackupFilesTest, NeverDeleteOtherSensorsFilesOrFilesOfOtherNames) {
    const QStringList foreign = {QStringLiteral("10427.ztv"),
                                 QStringLiteral("10427 best.ztv"),
                                 QStringLiteral("10427 2020-01-01 000000.txt"),
                                 QStringLiteral("10427 2020-01-01 000000 copy.ztv"),
                                 QStringLiteral("x10427 2020-01-01 000000.ztv"),
                                 QStringLiteral("110427 2020-01-01 000000.ztv"),
                                 QStringLiteral("0 2020-01-01 000000.ztv"),
                                 QStringLiteral("notes.txt")};
    for (const QString &name : foreign) {
        WriteFile(Path(name), "mine");
    }
    ASSERT_TRUE(QDir().mkpath(Path(QStringLiteral("10427 2019-01-01 000000.ztv")))); // a folder
    for (int minute = 0; minute < 30; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    for (const QString &name : foreign) {
        EXPECT_EQ(ReadFile(Path(name)), "mine") << name.toStdString();
    }
    EXPECT_TRUE(QFileInfo(Path(QStringLiteral("10427 2019-01-01 000000.ztv"))).isDir());
    EXPECT_EQ(Names().size(), foreign.size() + BackupFiles::MostOfASensor);
}

TEST_F(BackupFilesTest, HaveAPlaceForTheSerialNumberZero) {
    for (int minute = 0; minute < 22; ++minute) {
        Save(0, time_.addSecs(minute * 60));
    }
    EXPECT_EQ(Names().size(), 20);
    EXPECT_EQ(Names().first(), QStringLiteral("0 2026-11-22 051233.ztv"));
}

TEST_F(BackupFilesTest, ReplaceNoneOfTheSameSecond) {
    for (int count = 0; count < 22; ++count) {
        Save(10427, time_);
    }
    EXPECT_EQ(Names().size(), 20);
    EXPECT_FALSE(Names().contains(QStringLiteral("10427 2026-11-22 051033.ztv")));
    EXPECT_TRUE(Names().contains(QStringLiteral("10427 2026-11-22 051033 (22).ztv")));
}

TEST_F(BackupFilesTest, KeepTheNewOneAlsoAfterTheClockWasSetBack) {
    for (int minute = 0; minute < 20; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    Save(10427, time_.addYears(-1));
    EXPECT_TRUE(Names().contains(QStringLiteral("10427 2025-11-22 051033.ztv")));
    EXPECT_EQ(Names().size(), 20);
}

TEST_F(BackupFilesTest, KeepTheNewestOnesInTheirOrderAfterTheClockWasSetBack) {
    for (int minute = 0; minute < 20; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    for (int minute = 0; minute < 5; ++minute) {
        Save(10427, time_.addYears(-1).addSecs(minute * 60));
    }
    EXPECT_EQ(Names().size(), 20);
    EXPECT_EQ(Names().filter(QStringLiteral("10427 2025-")).size(), 5); // the five that were written last
    EXPECT_FALSE(Names().contains(QStringLiteral("10427 2026-11-22 051433.ztv")));
    EXPECT_TRUE(Names().contains(QStringLiteral("10427 2026-11-22 051533.ztv")));
}

TEST_F(BackupFilesTest, NeverWriteThroughALinkOrOverWhatHasTheirName) {
    const QString precious = folder_.filePath(QStringLiteral("precious.ztv"));
    WriteFile(precious, "mine");
    ASSERT_TRUE(QDir().mkpath(Path(QStringLiteral("10427 2026-11-22 051033 (2).ztv")))); // a folder
    ASSERT_TRUE(QFile::link(precious, Path(QStringLiteral("10427 2026-11-22 051033.ztv"))));
    ASSERT_TRUE(QFile::link(folder_.filePath(QStringLiteral("nothing.ztv")),
                            Path(QStringLiteral("10427 2026-11-22 051033 (3).ztv"))));
    Save(10427, time_);
    EXPECT_EQ(ReadFile(precious), "mine");
    EXPECT_FALSE(QFile::exists(folder_.filePath(QStringLiteral("nothing.ztv"))));
    EXPECT_TRUE(QFileInfo(Path(QStringLiteral("10427 2026-11-22 051033 (4).ztv"))).isFile());
}

TEST_F(BackupFilesTest, ReplaceNoneInAFolderThatCannotBeListed) {
    const BackupFiles hidden(folder_.filePath(QStringLiteral("hidden")));
    ASSERT_TRUE(QDir().mkpath(hidden.Folder()));
    const QFile::Permissions all =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::WriteOther | QFile::ExeOther;
    QFile::setPermissions(folder_.path(), all);
    QFile::setPermissions(hidden.Folder(), all & ~QFile::Permissions(QFile::ReadOwner));
    {
        const AsNobody nobody;
        hidden.Save(zentrova_, 1, time_, [](std::int16_t) { return 1; });
        hidden.Save(zentrova_, 1, time_, [](std::int16_t) { return 2; });
    }
    QFile::setPermissions(hidden.Folder(), all);
    EXPECT_EQ(QDir(hidden.Folder()).entryList(QDir::Files).size(), 2);
}

TEST_F(BackupFilesTest, SpareTheOneThatIsBeingOpened) {
    for (int minute = 0; minute < 20; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    const QString oldest = QStringLiteral("10427 2026-11-22 051033.ztv");
    files_.Spare(Path(oldest));
    Save(10427, time_.addSecs(3600));
    EXPECT_TRUE(Names().contains(oldest));
    files_.Spare(folder_.filePath(oldest)); // of another folder
    Save(10427, time_.addSecs(7200));
    EXPECT_FALSE(Names().contains(oldest));
    EXPECT_EQ(Names().size(), 20);
}

TEST_F(BackupFilesTest, FaultWhereTheFolderCantBeMadeOrWritten) {
    WriteFile(folder_.filePath(QStringLiteral("new")), "a file in the folder's place");
    EXPECT_THROW(Save(10427, time_), Fault);
    EXPECT_FALSE(files_.HasAny());

    const BackupFiles readOnly(folder_.filePath(QStringLiteral("read only")));
    ASSERT_TRUE(QDir().mkpath(readOnly.Folder()));
    QFile::setPermissions(readOnly.Folder(), QFile::ReadOwner | QFile::ExeOwner);
    const AsNobody nobody;
    EXPECT_THROW(readOnly.Save(zentrova_, 1, time_, [](std::int16_t) { return 0; }), Fault);
    EXPECT_FALSE(readOnly.HasAny());
}

TEST_F(BackupFilesTest, AreKnownAlsoByALinkToThemOrToTheirFolder) {
    for (int minute = 0; minute < 20; ++minute) {
        Save(10427, time_.addSecs(minute * 60));
    }
    const QString oldest = QStringLiteral("10427 2026-11-22 051033.ztv");
    const QString folder = folder_.filePath(QStringLiteral("link"));
    const QString file = folder_.filePath(QStringLiteral("latest.ztv"));
    ASSERT_TRUE(QFile::link(files_.Folder(), folder));
    ASSERT_TRUE(QFile::link(Path(oldest), file));
    EXPECT_TRUE(files_.Contains(folder + u'/' + oldest));
    EXPECT_TRUE(files_.Contains(folder + QStringLiteral("/not there any more.ztv")));
    EXPECT_TRUE(files_.Contains(file));
    EXPECT_TRUE(BackupFiles(folder).Contains(Path(oldest)));
    files_.Spare(file);
    Save(10427, time_.addSecs(3600));
    EXPECT_TRUE(Names().contains(oldest));
}

TEST_F(BackupFilesTest, KnowTheirFolder) {
    EXPECT_TRUE(files_.Contains(Path(QStringLiteral("10427 2026-11-22 051033.ztv"))));
    EXPECT_TRUE(files_.Contains(Path(QStringLiteral("../Backups/mine.ztv"))));
    EXPECT_FALSE(files_.Contains(folder_.filePath(QStringLiteral("mine.ztv"))));
    const BackupFiles none{QString()};
    EXPECT_FALSE(none.Contains(QStringLiteral("mine.ztv")));
    EXPECT_FALSE(none.HasAny());
}

} // namespace ztv
