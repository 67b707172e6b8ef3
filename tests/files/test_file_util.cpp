// Tests of file locks (within a process and across processes), the safe replacement
// sequence and file signatures.
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/files/OSW_Execute.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>

using namespace PL_FileUtil;

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

PL_FileSpec fileSpec(const QString& path) {
    return PL_FileSpec(UT_String(path));
}

} // namespace

TEST(FileLocker, TwoLockersInOneProcessAreTwoHolders) {
    QTemporaryDir dir;
    const QString path = dir.filePath("scene.lock");
    FileLocker first(path, ExclusiveLock); // creates the file
    ASSERT_TRUE(first.isLocked());
    EXPECT_EQ(QFileInfo(path).size(), 0);
    EXPECT_EQ(QFileInfo(path).permissions() &
                  (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther),
              QFile::ReadOwner | QFile::WriteOwner);
    FileLocker second;
    EXPECT_FALSE(second.Lock(path, ExclusiveLock, false));
    EXPECT_FALSE(second.Lock(path, SharedLock, false));
    first.Unlock();
    EXPECT_TRUE(second.Lock(path, SharedLock, false));
    EXPECT_TRUE(first.Lock(path, SharedLock, false)); // readers share
    EXPECT_FALSE(FileLocker().Lock(path, ExclusiveLock, false));

    // A read-only file is made writable first.
    const QString readOnly = dir.filePath("ro.lock");
    writeFile(readOnly, "x");
    QFile::setPermissions(readOnly, QFile::ReadOwner);
    EXPECT_TRUE(FileLocker().Lock(readOnly, ExclusiveLock, false));
    EXPECT_TRUE(QFileInfo(readOnly).isWritable());

    RecordingInstall install;
    for (int type : {2, 7})
        EXPECT_FALSE(FileLocker().Lock(path, static_cast<LockType>(type), false));
    ASSERT_EQ(install.centre->reports.size(), 2u);
    EXPECT_EQ(install.centre->reports[0].kind, 'T');
    EXPECT_EQ(install.centre->reports[0].text, "Invalid lock type");
}

TEST(FileLocker, AnotherProcessHoldingTheLock) {
    QTemporaryDir dir;
    const QString path = dir.filePath("shared.lock");
    OSW_Execute holder;
    holder.setDetached(true);
    holder.enableStdioPipes(true);
    holder.execm(QStringLiteral(PLUMVALE_PROC_CHILD), "lock", path);
    char line[7];
    ASSERT_EQ(holder.readFromStdout(sizeof line, line), 7u); // "locked\n"
    FileLocker mine;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(mine.Lock(path, SharedLock, false));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
    holder.closeStdin(); // the holder lets go 200 ms later
    EXPECT_TRUE(mine.Lock(path, ExclusiveLock, true));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
    EXPECT_EQ(holder.waitForProcEnd(), 0);
}

TEST(PL_FileUtil, SafeReplacementSequence) {
    QTemporaryDir dir;
    const QString name = dir.filePath("scene.pvs");
    const PL_FileSpec file = fileSpec(name);
    EXPECT_EQ(NewFileSpec(file).GetFilePath().ToQString(), name + "+");
    EXPECT_TRUE(BackupFile(file)); // nothing to save
    EXPECT_FALSE(QFileInfo::exists(name + "~"));
    EXPECT_FALSE(RestoreBackupFile(file, true)); // no backup

    writeFile(name, "old");
    writeFile(name + "~", "older backup");
    writeFile(name + "+", "new");
    EXPECT_FALSE(RenameNewFile(file)); // the old file is still in the way
    ASSERT_TRUE(BackupFile(file));
    EXPECT_EQ(readFile(name + "~"), "old");
    EXPECT_FALSE(QFileInfo::exists(name));
    ASSERT_TRUE(RenameNewFile(file));
    EXPECT_EQ(readFile(name), "new");
    EXPECT_FALSE(QFileInfo::exists(name + "+"));
    EXPECT_FALSE(RenameNewFile(file));            // nothing new any more
    EXPECT_FALSE(RestoreBackupFile(file, false)); // the file is there
    ASSERT_TRUE(RestoreBackupFile(file, true));
    EXPECT_EQ(readFile(name), "old");
}

TEST(PL_FileSignature, DigestsAndTheirOrder) {
    QTemporaryDir dir;
    struct Case {
        QByteArray bytes;
        const char* md5;
    } cases[] = {
        // RFC 1321's test suite.
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const Case& c : cases) {
        writeFile(dir.filePath("f"), c.bytes);
        PL_FileSignature signature;
        ASSERT_TRUE(signature.computeSignature(fileSpec(dir.filePath("f"))));
        EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(signature.digest()), 16).toHex(), c.md5);
    }
    // Longer than one read piece.
    QByteArray big(3 << 20, 'q');
    big[123456] = 'z';
    writeFile(dir.filePath("big"), big);
    PL_FileSignature bigSignature;
    ASSERT_TRUE(bigSignature.computeSignature(fileSpec(dir.filePath("big"))));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(bigSignature.digest()), 16),
              QCryptographicHash::hash(big, QCryptographicHash::Md5));

    writeFile(dir.filePath("empty"), QByteArray());
    PL_FileSignature empty, missing, other;
    EXPECT_FALSE(empty.computeSignature(fileSpec(dir.filePath("empty"))));
    EXPECT_FALSE(missing.computeSignature(fileSpec(dir.filePath("missing"))));
    EXPECT_TRUE(empty == missing);
    EXPECT_TRUE(empty < missing && missing < empty); // kept as the family's programs order
    EXPECT_TRUE(empty < bigSignature && !(bigSignature < empty));
    other.computeSignature(fileSpec(dir.filePath("f")));
    EXPECT_TRUE(other != bigSignature);
    EXPECT_NE(other < bigSignature, bigSignature < other);
}
