// tufile: the single-file operations, folder creation and removal, and the path texts.
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/files/tufile.h>

#include "files/FileSystem.h"
#include "files/tufileSupport.h"
#include "platform/Platform.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace sys = plumvale::files;
using namespace plumvale::files::tufileSupport;

namespace plumvale::files::tufileSupport {

MSG_Text message(const char* source) {
    return MSG_Text("tufile", source);
}

void fail(const MSG_Text& text) {
    throw tufile::FileErr(text);
}

QString prepared(const QString& path) {
    QString p = oswRemapPath::RemapPath2(path, false);
    oswRemapPath::BackSlashToSlash(p);
    return p;
}

QString systemText(int negatedError) {
    return QString::fromLocal8Bit(plumvale::platform::errorText(-negatedError).c_str());
}

MSG_Text copyFailure(const QString& from, const QString& to, int negatedError) {
    return message("Cannot copy file \"%1\" to \"%2\": (%3)")
        .arg(from, to, systemText(negatedError));
}

} // namespace plumvale::files::tufileSupport

namespace {

void requireText(const QString& path) {
    if (path.isEmpty()) fail(message("Invalid path (empty)"));
}

} // namespace

namespace tufile {

void mv(const QString& from, const QString& to) {
    UT_LogIO::add(UT_Log::Move, from, to);
    const QString source = prepared(from), target = prepared(to);
    if (sys::moveFile(source, target, false) != 0)
        fail(message("Cannot move file: %1 to: %2").arg(source, target));
}

void rm(const QString& path) {
    UT_LogIO::add(UT_Log::Delete, path);
    if (sys::removeFile(prepared(path)) != 0) fail(message("Cannot delete file \"%1\".").arg(path));
}

void rmIfExists(const QString& path) {
    const QFileInfo info(prepared(path));
    if ((info.exists() || info.isSymLink()) && !info.isDir()) rm(path);
}

void Copy(const QString& from, const QString& to) {
    const QString source = prepared(from), target = prepared(to);
    UT_LogIO::add(UT_Log::Copy, source, target);
    if (const int r = sys::copyFile(source, target, sys::ExistingTarget::Replace))
        fail(copyFailure(source, target, r));
}

void mkdir(const QString& path) {
    requireText(path);
    const QString folder = prepared(path);
    if (QFileInfo(folder).isDir()) return;
    if (sys::makeFolder(folder) != 0) fail(message("Cannot create dir: %1").arg(path));
}

void rmdir(const QString& path) {
    requireText(path);
    const QString folder = prepared(path);
    if (!QFileInfo(folder).isDir()) return;
    if (sys::removeFolder(folder) != 0) fail(message("Cannot remove dir: %1").arg(path));
}

void lns(const QString&, const QString&) {
    fail(message("Sym link not supported"));
}

void lnh(const QString&, const QString&) {
    fail(message("Hard link not supported"));
}

void chmod(const QString&, int) {
    fail(message("Permissions change not supported"));
}

bool fileExists(QString path) {
    return QFileInfo::exists(prepared(path));
}

bool dirExists(QString path) {
    return QFileInfo(prepared(path)).isDir();
}

QString mergePart(const QString& a, const QString& b) {
    return a.endsWith(QLatin1Char('/')) ? a + b : a + QLatin1Char('/') + b;
}

QString unixPath(const QString& path, QString* drive) {
    QString result = path;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const auto colon = result.indexOf(QLatin1Char(':'), 1);
    if (colon > 0) {
        if (drive) *drive = result.left(colon + 1);
        result = QLatin1Char('/') + result.mid(colon + 1);
    }
    static const QRegularExpression runs(QStringLiteral("/+"));
    return result.replace(runs, QStringLiteral("/"));
}

void checkCreatePath(const QString& path, bool isFile) {
    requireText(path);
    QString folder = prepared(path);
    if (isFile) folder.truncate(std::max<qsizetype>(folder.lastIndexOf(QLatin1Char('/')), 0));
    // Each prefix ending before a '/' (and the whole) is made in turn, parents first.
    for (qsizetype end = 1; end <= folder.size(); ++end) {
        if (end < folder.size() && folder.at(end) != QLatin1Char('/')) continue;
        const QString prefix = folder.left(end);
        if (QFileInfo(prefix).isDir()) continue;
        if (const int r = sys::makeFolder(prefix))
            fail(message("Cannot create directory \"%1\": (%2)").arg(prefix, systemText(r)));
    }
}

} // namespace tufile
