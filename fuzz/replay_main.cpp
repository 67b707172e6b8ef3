// Replays a fuzz target's corpus without a fuzzer: each file named, or each file in each
// folder named, is passed once to LLVMFuzzerTestOneInput. Fails when no input was found, so
// that a corpus which vanished cannot pass.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

namespace {

bool replay(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return false;
    }
    const QByteArray bytes = f.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
    return true;
}

} // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int a = 1; a < argc; ++a) {
        const QString arg = QString::fromLocal8Bit(argv[a]);
        QStringList files;
        if (QFileInfo(arg).isDir()) {
            QDirIterator it(arg, QDir::Files);
            while (it.hasNext())
                files.append(it.next());
            files.sort();
        } else {
            files.append(arg);
        }
        for (const QString& file : files) {
            if (!replay(file)) return 1;
            ++count;
        }
    }
    std::printf("replayed %d inputs\n", count);
    return count > 0 ? 0 : 1;
}
