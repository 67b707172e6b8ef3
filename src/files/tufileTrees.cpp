// tufile's shell-style operations: whole-tree moves and deletes.
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/tufile.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include "files/FileSystem.h"
#include "files/tufileSupport.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <QWidget>

#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>

namespace sys = plumvale::files;
using namespace plumvale::files::tufileSupport;

namespace {

// While alive, on the main thread of a widget application, an invisible application-modal
// widget keeps the user's input away from the windows; elsewhere it does nothing.
class InputBlocker {
public:
    InputBlocker() {
        auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
        if (!app || QThread::currentThread() != app->thread()) return;
        m_widget = std::make_unique<QWidget>();
        m_widget->setAttribute(Qt::WA_DontShowOnScreen);
        m_widget->setWindowModality(Qt::ApplicationModal);
        m_widget->show();
    }

private:
    std::unique_ptr<QWidget> m_widget;
};

// Runs a shell-style operation, again after a transient failure (a busy file), four
// attempts at most: 0 or the last negated errno.
template <typename Operation>
int withRetries(Operation operation) {
    const InputBlocker blocker;
    int result = 0;
    for (int attempt = 1; attempt <= 4; ++attempt) {
        result = operation();
        if (result != -EBUSY && result != -ETXTBSY) break;
        if (attempt < 4) std::this_thread::sleep_for(std::chrono::milliseconds(50 * attempt));
    }
    return result;
}

QString childOf(const QString& folder, const UT_String& name) {
    return tufile::mergePart(folder, name.ToQString());
}

bool isEntry(const QFileInfo& info) {
    return info.exists() || info.isSymLink();
}

bool isRealFolder(const QFileInfo& info) {
    return info.isDir() && !info.isSymLink();
}

// Copies a file or a whole folder to a name that is free: 0 or the first negated errno.
int copyTree(const QString& from, const QString& to) {
    if (!isRealFolder(QFileInfo(from))) return sys::copyFile(from, to, sys::ExistingTarget::Refuse);
    std::vector<UT_String> names;
    if (const int r = sys::listFolder(from, names)) return r;
    if (const int r = sys::makeFolder(to)) return r;
    for (const UT_String& name : names)
        if (const int r = copyTree(childOf(from, name), childOf(to, name))) return r;
    return 0;
}

// Moves `from` to the name `to` (known not to be taken, or to be replaced): a rename, or
// across file systems a copy that is then removed (the partial copy removed on failure).
int moveEntry(const QString& from, const QString& to) {
    const int r = sys::moveFile(from, to, true);
    if (r != -EXDEV || !isRealFolder(QFileInfo(from))) return r;
    if (const int copied = copyTree(from, to)) {
        sys::removeTree(to);
        return copied;
    }
    return sys::removeTree(from);
}

// Moves `from` onto the taken name `to`: folders merge, files replace files.
int mergeInto(const QString& from, const QString& to) {
    const QFileInfo source(from), target(to);
    if (!isRealFolder(source) || !isRealFolder(target))
        return isRealFolder(target) ? -EISDIR : moveEntry(from, to);
    std::vector<UT_String> names;
    if (const int r = sys::listFolder(from, names)) return r;
    for (const UT_String& name : names) {
        const QString inner = childOf(to, name);
        const int r = isEntry(QFileInfo(inner)) ? mergeInto(childOf(from, name), inner)
                                                : moveEntry(childOf(from, name), inner);
        if (r != 0) return r;
    }
    return sys::removeFolder(from);
}

int moveTree(const QString& from, const QString& to, bool replace) {
    const QFileInfo source(from);
    if (!isEntry(source)) return -ENOENT;
    QString target = to;
    if (QFileInfo(to).isDir())
        target = tufile::mergePart(to, QFileInfo(QDir::cleanPath(from)).fileName());
    const QFileInfo existing(target);
    if (!isEntry(existing)) return moveEntry(from, target);
    // A move onto itself would merge a folder into itself and lose its empty folders.
    if (existing.canonicalFilePath() == source.canonicalFilePath()) return -EINVAL;
    return replace ? mergeInto(from, target) : -EEXIST;
}

void moveDir(const QString& from, const QString& to, bool replace, const MSG_Text& failure) {
    UT_LogIO::add(UT_Log::Move, from, to);
    const QString source = prepared(from), target = prepared(to);
    if (withRetries([&] { return moveTree(source, target, replace); }) != 0) fail(failure);
}

} // namespace

namespace tufile {

void MoveDir(const QString& from, const QString& to) {
    moveDir(from, to, true, message("Cannot move: %1 to: %2").arg(from, to));
}

void MoveDir2(const QString& from, const QString& to, bool confirm) {
    moveDir(from, to, !confirm, message("Cannot move: \"%1\" to \"%2\"").arg(from, to));
}

void RmDir(const QString& path) {
    UT_LogIO::add(UT_Log::Delete, path);
    const QString target = prepared(path);
    if (withRetries([&] { return sys::removeTree(target); }) != 0)
        fail(message("Cannot delete: %1").arg(path));
}

} // namespace tufile
