// tufile::cp and tufile::CopyDir: file and folder copies with their options.
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/tufile.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include "files/FileSystem.h"
#include "files/tufileSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <optional>

namespace sys = plumvale::files;
using namespace plumvale::files::tufileSupport;

namespace {

// One copy request: its options, and the first failure kept while going on.
class Copier {
public:
    Copier(const QString& from, const QString& to, bool overwrite, bool recursive, bool keepGoing,
           const tufile::CopyProceed& proceed)
        : m_from(from), m_to(to), m_overwrite(overwrite), m_recursive(recursive),
          m_keepGoing(keepGoing), m_proceed(proceed) {}

    void copyFile(const QString& source, const QString& target) {
        if (m_proceed && !m_proceed(source))
            fail(message("Copy of %1 to %2 has been halted.\n").arg(m_from, m_to));
        if (!m_overwrite && (QFileInfo::exists(target) || QFileInfo(target).isSymLink()))
            return failed(message("Error during file copy. \"%1\" already exists.").arg(target));
        const auto existing =
            m_overwrite ? sys::ExistingTarget::Replace : sys::ExistingTarget::Refuse;
        if (const int r = sys::copyFile(source, target, existing))
            failed(copyFailure(source, target, r));
    }

    // Copies what `source` holds into `target`, made when missing; subfolders only when
    // recursive. A folder reached again through a link (a loop) is not entered.
    void copyFolder(const QString& source, const QString& target) {
        const QString real = QFileInfo(source).canonicalFilePath();
        if (m_open.contains(real)) return failed(copyFailure(source, target, -ELOOP));
        if (const int r = sys::makeFolder(target))
            return failed(
                message("Cannot create directory \"%1\": (%2)").arg(target, systemText(r)));
        std::vector<UT_String> names;
        if (const int r = sys::listFolder(source, names))
            return failed(copyFailure(source, target, r));
        m_open.append(real);
        for (const UT_String& name : names) {
            const QString from = tufile::mergePart(source, name.ToQString());
            const QString to = tufile::mergePart(target, name.ToQString());
            if (!QFileInfo(from).isDir())
                copyFile(from, to);
            else if (m_recursive)
                copyFolder(from, to);
        }
        m_open.removeLast();
    }

    // Raises the first failure kept while going on, if any.
    void finish() const {
        if (m_first) fail(*m_first);
    }

    void failed(const MSG_Text& text) {
        if (!m_keepGoing) fail(text);
        TUMessage::instance()->warning(text.getText(), text.getTranslatedText());
        if (!m_first) m_first = text;
    }

private:
    QString m_from, m_to;
    bool m_overwrite, m_recursive, m_keepGoing;
    const tufile::CopyProceed& m_proceed;
    QStringList m_open; // the folders being copied, outermost first, resolved
    std::optional<MSG_Text> m_first;
};

// Raises the missing-source message when nothing is at the prepared `source`.
void requireSource(const QString& source, const QString& from) {
    if (!QFileInfo::exists(source))
        fail(message("Error during file copy. \"%1\" does not exists.").arg(from));
}

// Whether `target` (which may not exist yet) lies inside the folder `source`: a copy there
// would copy itself again and again.
bool isInside(const QString& target, const QString& source) {
    const QFileInfo info(target);
    const QString parent = QFileInfo(info.absolutePath()).canonicalFilePath();
    const QString folder = QFileInfo(source).canonicalFilePath();
    return !parent.isEmpty() && !folder.isEmpty() &&
           (parent + QLatin1Char('/')).startsWith(folder + QLatin1Char('/'));
}

} // namespace

namespace tufile {

void cp(const QString& from, const QString& to, bool overwrite, bool recursive, bool keepGoing,
        const CopyProceed& proceed) {
    const QString source = prepared(from);
    QString target = prepared(to);
    UT_LogIO::add(UT_Log::Copy, source, target);
    requireSource(source, from);
    if (QFileInfo(target).isDir())
        target = mergePart(target, QFileInfo(QDir::cleanPath(source)).fileName());
    Copier copier(from, to, overwrite, recursive, keepGoing, proceed);
    if (!QFileInfo(source).isDir())
        copier.copyFile(source, target);
    else if (recursive && !isInside(target, source))
        copier.copyFolder(source, target);
    else if (recursive)
        copier.failed(copyFailure(source, target, -EINVAL));
    else
        copier.failed(copyFailure(source, target, -EISDIR));
    copier.finish();
}

void CopyDir(const QString& from, const QString& to, bool overwrite, bool recursive, bool keepGoing,
             const CopyProceed& proceed) {
    const QString source = prepared(from), target = prepared(to);
    UT_LogIO::add(UT_Log::Copy, source, target);
    requireSource(source, from);
    Copier copier(from, to, overwrite, recursive, keepGoing, proceed);
    if (!QFileInfo(source).isDir())
        copier.failed(copyFailure(source, target, -ENOTDIR));
    else if (!isInside(target, source))
        copier.copyFolder(source, target);
    else
        copier.failed(copyFailure(source, target, -EINVAL));
    copier.finish();
}

} // namespace tufile
