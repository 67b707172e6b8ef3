// Fuzz target: the remapping configuration reader and RemapPath2 over a fixed rule table,
// with their invariants: values keep at most 1023 bytes, the section list fits its
// 16384-byte buffer, remapping leaves no backslash and is idempotent, and a share path
// lands under its mount folder.
//
// Input: byte 0 even: the rest is an INI file; odd: the rest is a UTF-8 path.
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>

#include "files/ProfileFile.h"

#include <QDir>
#include <QFile>

#include <cstdint>

namespace {

// A configuration whose targets match no rule, so remapping twice changes nothing more.
void setUpOnce() {
    static bool done = false;
    if (done) return;
    done = true;
    const QString folder = QDir::tempPath() + QStringLiteral("/plumvale-fuzz-remap");
    QDir().mkpath(folder + QStringLiteral("/mnt"));
    QFile config(folder + QStringLiteral("/orvacfg.ini"));
    if (config.open(QIODevice::WriteOnly | QIODevice::Truncate))
        config.write("[Connection0]\nSharename=\\\\srv\\share\nDrive=S:\nMountPoint=" +
                     QFile::encodeName(folder) + "/mnt\n");
    config.close();
    BAPP_SharedSpecialFolders()->setDatabase(folder + QStringLiteral("/db"));
    oswRemapPath::setConfigFile(config.fileName());
}

void checkProfile(const QByteArray& bytes) {
    const plumvale::files::ProfileFile file = plumvale::files::ProfileFile::parse(bytes);
    qsizetype listed = 1;
    for (const QString& name : file.sectionNames()) {
        listed += name.toUtf8().size() + 1;
        for (const char* key : {"Sharename", "Username", "MountPoint", "x"})
            FUZZ_CHECK(file.value(name, QLatin1String(key)).toUtf8().size() <= 3 * 1023);
    }
    // Invalid UTF-8 may grow when read back; valid names take their own size.
    FUZZ_CHECK(listed <= 3 * 16384);
}

void checkRemap(const QString& path) {
    const QString once = oswRemapPath::RemapPath2(path, false);
    FUZZ_CHECK(!once.contains(QLatin1Char('\\')));
    FUZZ_CHECK(oswRemapPath::RemapPath2(once, false) == once);
    QString slashed = path;
    slashed.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (slashed.startsWith(QLatin1String("//srv/share/"), Qt::CaseInsensitive))
        FUZZ_CHECK(once.endsWith(slashed.mid(11)) && once.contains(QLatin1String("/mnt/")));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    setUpOnce();
    const QByteArray rest(reinterpret_cast<const char*>(data) + 1,
                          static_cast<qsizetype>(size - 1));
    if (data[0] % 2 == 0)
        checkProfile(rest);
    else
        checkRemap(QString::fromUtf8(rest));
    return 0;
}
