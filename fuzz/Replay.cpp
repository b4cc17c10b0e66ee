// Runs a target once on each given file, and on each file of each given folder.

#include "fuzz/Harness.h"

#include <QDirIterator>
#include <cstdio>
#include <cstdlib>

namespace ztv {

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);

} // namespace ztv

using namespace ztv;

int main(int argc, char *argv[]) {
    LLVMFuzzerInitialize(&argc, &argv);
    QStringList files;
    for (int index = 1; index < argc; ++index) {
        const QString path = QString::fromLocal8Bit(argv[index]);
        if (QFileInfo(path).isFile()) {
            files.append(path);
        }
        for (QDirIterator folder(path, QDir::Files, QDirIterator::Subdirectories); folder.hasNext();) {
            files.append(folder.next());
        }
    }
    for (const QString &file : files) {
        std::printf("%s\n", qUtf8Printable(file));
        std::fflush(stdout);
        const QByteArray content = Fuzz::ReadFile(file);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.constData()),
                               static_cast<std::size_t>(content.size()));
    }
    std::printf("%lld inputs\n", static_cast<long long>(files.size()));
    return files.isEmpty() ? EXIT_FAILURE : EXIT_SUCCESS;
}
