#include "model/SchemaEntries.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <optional>

namespace ztv {

namespace {

constexpr int mostEntries = 100;

constexpr qsizetype fileHeadBytes = 100; // at the start of the first page
constexpr qsizetype pageSizeAt = 16;

// The layout of a page of the tree that contains the schema.
constexpr char leafPage = 0x0D;
constexpr char innerPage = 0x05;
constexpr qsizetype cellCountAt = 3;
constexpr qsizetype lastChildAt = 8;
constexpr qsizetype innerHeadBytes = 12;

template <typename Number>
std::optional<Number> NumberAt(const QByteArray &bytes, qsizetype position) {
    if (position + static_cast<qsizetype>(sizeof(Number)) > bytes.size()) {
        return std::nullopt;
    }
    return qFromBigEndian<Number>(bytes.constData() + position);
}

class SchemaTree {
public:
    SchemaTree(QFile &file, qint64 pageSize) : file_(file), pageSize_(pageSize) {}

    // The root is the file's first page. The leaves of a schema with few entries are directly below it, or
    // the root is the only leaf.
    bool IsSmall() {
        const QByteArray root = Page(1);
        const char kind = root.size() > fileHeadBytes ? root[fileHeadBytes] : '\0';
        return kind == innerPage ? ChildrenAreSmall(root) : kind == leafPage && AddLeaf(root, fileHeadBytes);
    }

private:
    QByteArray Page(qint64 number) {
        return number >= 1 && file_.seek((number - 1) * pageSize_) ? file_.read(pageSize_) : QByteArray();
    }

    bool AddLeaf(const QByteArray &page, qsizetype head) {
        const auto cells = NumberAt<quint16>(page, head + cellCountAt);
        entries_ += cells.value_or(0);
        return entries_ <= mostEntries;
    }

    bool ChildrenAreSmall(const QByteArray &root) {
        const int cells = NumberAt<quint16>(root, fileHeadBytes + cellCountAt).value_or(0);
        if (cells > mostEntries || !ChildIsSmall(NumberAt<quint32>(root, fileHeadBytes + lastChildAt))) {
            return false;
        }
        for (qsizetype cell = 0; cell < cells; ++cell) {
            const auto at = NumberAt<quint16>(root, fileHeadBytes + innerHeadBytes + 2 * cell);
            if (!ChildIsSmall(at ? NumberAt<quint32>(root, *at) : std::nullopt)) {
                return false;
            }
        }
        return true;
    }

    bool ChildIsSmall(std::optional<quint32> number) {
        const QByteArray page = number && *number > 1 ? Page(*number) : QByteArray();
        return page.startsWith(leafPage) && AddLeaf(page, 0);
    }

    QFile &file_;
    qint64 pageSize_;
    int entries_ = 0;
};

// Returns the page size, 512 to 65536; 65536 is stored as 1. Returns nothing for a size that the engine
// rejects.
std::optional<qint64> PageSize(const QByteArray &head) {
    const unsigned stored = NumberAt<quint16>(head, pageSizeAt).value_or(0);
    const unsigned size = stored == 1 ? 0x10000 : stored;
    return size >= 512 && std::has_single_bit(size) ? std::optional<qint64>(size) : std::nullopt;
}

} // namespace

bool HasFewSchemaEntries(const QString &fileName) {
    QFile file(fileName);
    if (!file.open(QFile::ReadOnly)) {
        return true;
    }
    const QByteArray head = file.read(fileHeadBytes + 1);
    const std::optional<qint64> pageSize = PageSize(head);
    const bool isDatabase = head.size() > fileHeadBytes && head.startsWith("SQLite format 3");
    return !isDatabase || !pageSize || SchemaTree(file, *pageSize).IsSmall();
}

} // namespace ztv
