// PL_FileSpec folders: special and temporary folders, folder creation and tree removal.
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include "files/FileSystem.h"
#include "files/PathText.h"

#include <QStandardPaths>

namespace {

UT_String underTemp(const char* component) {
    QString root = plumvale::files::userTempRoot();
    if (root.isEmpty()) return UT_String();
    if (!root.endsWith(QLatin1Char('/'))) root += QLatin1Char('/');
    return UT_String(root + QString::fromLatin1(component));
}

// Deletes a folder and everything in it; links are removed, never followed. Stops at the
// first entry that cannot be removed and returns its error.
int removeTree(const UT_String& path) {
    const PL_FileSpec tree(path);
    for (PL_FileSpec_iterator it(tree), end; it != end; ++it) {
        const bool folder = it->IsFolder() && !it->IsSymbolicLink();
        const int r = folder ? removeTree(it->GetFilePath()) : it->Delete();
        if (r != 0) return r;
    }
    return tree.Delete();
}

UT_String standardLocation(QStandardPaths::StandardLocation location) {
    return UT_String(QStandardPaths::writableLocation(location));
}

// A folder of the temporary root, made once per process. `fresh` empties a folder left by
// an earlier run first. 1 while not prepared, then 0 or the failure for good.
struct TempFolder {
    int status = 1;
    UT_String path;

    int prepare(const char* name, bool fresh) {
        if (status != 1) return status;
        path = underTemp(name);
        if (path.empty()) return status = -1;
        if (fresh) removeTree(path);
        return status = PL_FileSpec(path).CreateFolder();
    }
};

} // namespace

int PL_FileSpec::IFileSpec(SpecialFolderType type) {
    IFileSpec();
    switch (type) {
    case TempFile: {
        static TempFolder s_folder;
        static int s_counter = 0;
        if (const int status = s_folder.prepare("PlumvaleStudioTempDir", true)) return status;
        PL_FileSpec candidate;
        do {
            candidate.IFileSpec(s_folder.path);
            candidate.Add(UT_String(QStringLiteral("tmpfs_%1.tmp").arg(++s_counter)));
        } while (candidate.TestAccess(false) == 0);
        *this = candidate;
        return 0;
    }
    case UserFolder:
    case DocumentsFolder:
    case PicturesFolder:
    case MusicFolder:
    case MoviesFolder:
        IFileSpec(standardLocation(QStandardPaths::DocumentsLocation));
        return IsValid() ? 0 : -1;
    case AppDataFolder:
        IFileSpec(standardLocation(QStandardPaths::GenericDataLocation));
        return IsValid() ? 0 : -1;
    case SessionTempFolder: {
        static TempFolder s_folder;
        if (const int status = s_folder.prepare("PlumvaleSessionTempDir", false)) return status;
        IFileSpec(s_folder.path);
        return 0;
    }
    }
    return -1;
}

UT_String PL_FileSpec::WindowsPublicDocumentPath() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 4, 0)
    return standardLocation(QStandardPaths::PublicShareLocation);
#else
    return UT_String();
#endif
}

int PL_FileSpec::CreateFolder() const {
    // Levels are created below "/" or a "//server/share" root; a drive letter names no
    // folder this platform can create under.
    const std::size_t root = plumvale::files::rootLength(m_path);
    if (root == 0 || m_path[0] != u'/') return -1;
    UT_String current = m_path.substr(0, UT_String::size_type(root));
    UT_String::size_type start = UT_String::size_type(root);
    while (start < m_path.size()) {
        UT_String::size_type end = m_path.find(u'/', start);
        if (end == UT_String::npos) end = m_path.size();
        if (end > start) {
            if (!current.empty() && current.back() != u'/') current += u'/';
            current += m_path.substr(start, end - start);
            if (const int r = plumvale::files::makeFolder(current)) return r;
        }
        start = end + 1;
    }
    ResetInfo();
    return 0;
}
