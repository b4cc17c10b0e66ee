#include "cli/FileName.h"

#include "cli/DidYouMean.h"
#include "cli/Failure.h"

#include <QRegularExpression>
#include <QStringList>
#include <optional>

namespace ztv {

namespace {

const QString addressWord = QStringLiteral("{address}");
const QString serialWord = QStringLiteral("{serial}");

Failure UnknownWord(const QString &word) {
    const std::optional<QString> meant = NearestName(word, {addressWord, serialWord});
    return {ExitStatus::WrongUse,
            meant ? QStringLiteral("There is no %1: did you mean \"%2\"?").arg(word, *meant)
                  : QStringLiteral("There is no %1; a file's name may have %2 and %3")
                        .arg(word, addressWord, serialWord)};
}

} // namespace

FileName::FileName(const QString &text) : text_(text) {
    static const QRegularExpression wordInBraces(QStringLiteral("\\{\\w*\\}"));
    if (text.isEmpty()) {
        throw Failure(ExitStatus::WrongUse, QStringLiteral("The name of the file is empty"));
    }
    for (const QRegularExpressionMatch &match : wordInBraces.globalMatch(text)) {
        if (const QString word = match.captured(); word != addressWord && word != serialWord) {
            throw UnknownWord(word);
        }
    }
}

bool FileName::DependsOnSensor() const {
    return text_.contains(addressWord) || text_.contains(serialWord);
}

QString FileName::Of(std::int16_t address, std::int32_t serialNumber) const {
    return QString(text_)
        .replace(addressWord, QString::number(address))
        .replace(serialWord, QString::number(serialNumber));
}

} // namespace ztv
