// Fuzz target: the shell-link reader on bytes written to a real ".lnk" file, read both from
// the bytes and through the file as a listing and readLink() reach it.
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static QTemporaryDir dir;
    FUZZ_CHECK(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("fuzzed.lnk"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    {
        QFile f(path);
        FUZZ_CHECK(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        FUZZ_CHECK(f.write(bytes) == bytes.size());
    }
    const QString parsed = OSW_FileInfo::parseShellLink(bytes);
    FUZZ_CHECK(!parsed.contains(QLatin1Char('\\')));
    const QString read = OSW_FileInfo(path).readLink();
    // readLink() reads the same bytes; a relative target is only resolved against the folder.
    FUZZ_CHECK(read.isEmpty() == parsed.isEmpty());
    if (QDir::isAbsolutePath(parsed) || parsed.contains(QLatin1Char(':')))
        FUZZ_CHECK(read == parsed);
    // Status and listing reach the same reader; the file stays a shortcut file.
    const PL_FileSpec fileSpec{UT_String(path)};
    FUZZ_CHECK(fileSpec.IsSymbolicLink());
    int entries = 0;
    for (PL_FileSpec_iterator it(PL_FileSpec(UT_String(dir.path()))), end; it != end; ++it)
        ++entries;
    FUZZ_CHECK(entries == 1);
    return 0;
}
