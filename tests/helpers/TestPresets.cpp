#include "tests/helpers/TestPresets.h"

#include <QFile>
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

namespace ztv {

QString ShippedPresetsFolder() {
    return QStringLiteral(ZTV_BIN_DIR);
}

ChangedPresets::ChangedPresets(const char *sql) {
    const QString file = folder_.filePath(QStringLiteral("Presets.fil"));
    EXPECT_TRUE(QFile::copy(ShippedPresetsFolder() + QStringLiteral("/Presets.fil"), file));
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    SQLite::Database database(file.toStdString(), SQLite::OPEN_READWRITE);
    database.exec(sql);
}

} // namespace ztv
