// oswUtil, TUOSWMemory and the dynamic-library functions: the portable rules and reports.
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/OSW_Dll.h>
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/OSW_SystemError.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/files/oswUtil.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include "files/FileSystem.h"
#include "files/MountTable.h"
#include "files/PathText.h"
#include "files/SystemInfo.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace sys = plumvale::files;

namespace {

oswUtil::MachineNameSource s_machineNameSource = nullptr;

bool systemMachineName(char* buffer, unsigned size) {
    std::string name;
    if (!sys::hostName(name)) return false;
    std::strncpy(buffer, name.c_str(), size - 1);
    return true;
}

BAPP_SpecialFolders& folders() {
    return *BAPP_SharedSpecialFolders();
}

constexpr std::uint64_t kMB = 1024 * 1024;

unsigned megabytes(std::uint64_t bytes) {
    return static_cast<unsigned>(std::min<std::uint64_t>(bytes / kMB, UINT_MAX));
}

QString fileName() {
    const QString path = QString::fromUtf8(__FILE__);
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

bool oswUtil::getShortMachineName(char* out, unsigned len) {
    char name[256] = {}; // 255 usable bytes, always terminated
    const MachineNameSource source = s_machineNameSource ? s_machineNameSource : systemMachineName;
    if (!source(name, 255)) {
        MSG_Scope("oswUtil", "getShortMachineName: could not get machine name.", MSG_Scope::Trace,
                  ErrorCode::NoError);
        return false;
    }
    for (char& c : name)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    // host.local stays whole: it is how such machines are named on the local network.
    if (char* dot = std::strchr(name, '.'); dot && std::strcmp(dot + 1, "local") != 0) *dot = '\0';
    if (len != 0 && std::strlen(name) > len) {
        MSG_Scope report("oswUtil",
                         "getShortMachineName: Truncating host name %1 to %2 characters.",
                         MSG_Scope::Debug, ErrorCode::NoError);
        report.arg(name).arg(len);
        name[len] = '\0';
    }
    std::strncpy(out, name, len);
    return true;
}

void oswUtil::setMachineNameSource(MachineNameSource source) {
    s_machineNameSource = source;
}

bool oswUtil::isSameMachineName(const char* a, const char* b) {
    std::vector<unsigned char> first, second;
    for (const auto& [name, address] : {std::pair{a, &first}, std::pair{b, &second}}) {
        if (!sys::firstHostAddress(name, *address)) {
            MSG_Scope report("oswUtil", "gethostbyname failed for %1", MSG_Scope::Warning,
                             ErrorCode::NoError);
            report.arg(name ? name : "");
            return false;
        }
    }
    return first == second;
}

bool oswUtil::getTempDir(QString& out) {
    const QString root = sys::userTempRoot();
    if (root.isEmpty()) return false;
    out = root;
    return true;
}

bool oswUtil::getUserName(QString& out) {
    QString name = sys::effectiveUserName();
    if (name.isEmpty()) name = qEnvironmentVariable("USER");
    if (name.isEmpty()) return false;
    out = name;
    return true;
}

bool oswUtil::AdminOrRoot() {
    return sys::isSuperUser();
}

bool oswUtil::setWritable(const char* path) {
    return path && sys::addOwnerWrite(path) == 0;
}

QString oswUtil::pathReplace(QString path, QString from, QString to) {
    return from.isEmpty() ? path : path.replace(from, to);
}

QString oswUtil::ORVARoot() {
    return folders().root();
}

QString oswUtil::ORVADir(bool perUser) {
    return perUser ? folders().userConfig() : folders().config();
}

QString oswUtil::ORVAEtc() {
    return folders().etc();
}

QString oswUtil::ORVAResources() {
    return folders().resource();
}

QString oswUtil::ORVAResources(const QString& name) {
    const QString base = folders().resource();
    return name.isEmpty() ? base : base + QLatin1Char('/') + name;
}

QString oswUtil::getAppDir() {
    return folders().app();
}

QString oswUtil::getBinDir() {
    return folders().bin();
}

QString oswUtil::getBin32Dir() {
    return folders().bin32();
}

QString oswUtil::getLibDir() {
    return folders().library();
}

bool oswUtil::getDiskInfo(const char* path, QString* report, float neededMB) {
    const QString where = QString::fromUtf8(path ? path : "");
    sys::DiskSpace space;
    if (const int rc = sys::diskSpace(where, space); rc < 0) {
        MSG_Scope failure("oswUtil", "%1(%2):  GetDiskFreeSpaceEx() on %3 failed >> %4 (%5)\n",
                          MSG_Scope::Error, ErrorCode::NoError);
        failure.arg(fileName()).arg(__LINE__).arg(where);
        failure.arg(oswSystemErrorText(-rc)).arg(-rc);
        return false;
    }
    const QString real = QFileInfo(where).canonicalFilePath();
    const std::vector<sys::Mount> mounts = sys::parseMountInfo(sys::readMountTable());
    const sys::Mount* mount = sys::mountOf(mounts, real.isEmpty() ? where : real);
    const QString mountPoint = mount ? mount->folder : QStringLiteral("/");
    const std::uint64_t totalMB = space.total / kMB;
    const std::uint64_t freeMB = space.available / kMB;
    for (const auto& [figure, text] :
         {std::pair{totalMB, "%1(%2):  Overflowed on disk space use\n"},
          std::pair{freeMB, "%1(%2):  Overflowed on free disk space\n"}}) {
        if (figure > UINT_MAX) {
            MSG_Scope overflow("oswUtil", text, MSG_Scope::Error, ErrorCode::NoError);
            overflow.arg(fileName()).arg(__LINE__);
            return false;
        }
    }
    if (report) {
        const unsigned used =
            space.total == 0 ? 0u
                             : static_cast<unsigned>(100 - (space.available * 100) / space.total);
        *report = QString::number(used) + QStringLiteral("% in use, mounted on ") + mountPoint +
                  QStringLiteral(", ") + QString::number(freeMB) +
                  QStringLiteral(" Mbytes free, ") + QString::number(totalMB) +
                  QStringLiteral(" Mbytes total");
    }
    return static_cast<double>(freeMB) >= static_cast<double>(neededMB);
}

bool oswUtil::ntGetDiskInfo(const QString& path, QString* report) {
    return getDiskInfo(path.toUtf8().constData(), report, 0.0f);
}

bool oswUtil::ntGetDocumentsPath(QString& out) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty()) return false;
    out = documents;
    return true;
}

unsigned oswUtil::setUmaskFromEnvironment() {
    if (!qEnvironmentVariableIsSet("ORVA_UMASK")) {
        const unsigned current = sys::setFileCreationMask(0);
        sys::setFileCreationMask(current);
        return current;
    }
    const QByteArray value = qgetenv("ORVA_UMASK");
    unsigned mask = 0;
    if (std::sscanf(value.constData(), "%o%*s", &mask) != 1) {
        MSG_Scope report("oswUtil",
                         "Unable to set umask from $%1=\"%2\" is not an octal integer. "
                         "umask was set to 0",
                         MSG_Scope::Warning, ErrorCode::NoError);
        report.arg(QStringLiteral("ORVA_UMASK"), QString::fromLocal8Bit(value));
        mask = 0;
    }
    sys::setFileCreationMask(mask);
    return mask & 0777;
}

bool oswUtil::createShortcut(const QString& target, const QString& link) {
    const int error =
        -(sys::hasLinkSuffix(link) ? sys::writeWholeFile(link, OSW_FileInfo::makeShellLink(target))
                                   : sys::makeSymbolicLink(target, link));
    if (error == 0) return true;
    MSG_Scope report("oswUtil", "nt_create_shortcut: Save failed. Windows error %d\n",
                     MSG_Scope::Error, ErrorCode::NoError);
    report.replace(QStringLiteral("%d"), QString::number(error));
    return false;
}

namespace {

QStringList& dynamicLibPath() {
    static QStringList path;
    return path;
}

} // namespace

void oswUtil::addDynamicLibPath(const QString& folder, bool first) {
    if (folder.isEmpty()) return;
    QStringList& path = dynamicLibPath();
    path.removeAll(folder);
    if (first)
        path.prepend(folder);
    else
        path.append(folder);
}

QString oswUtil::getDynamicLibPath(const QString& name) {
    for (const QString& folder : dynamicLibPath()) {
        const QString candidate = folder + QLatin1Char('/') + name;
        if (QFile::exists(candidate)) return candidate;
    }
    return QString();
}

namespace {

unsigned memoryFigure(std::uint64_t sys::MemoryStatus::*first,
                      std::uint64_t sys::MemoryStatus::*second = nullptr) {
    sys::MemoryStatus status;
    if (!sys::memoryStatus(status)) return 0;
    return megabytes(status.*first + (second ? status.*second : 0));
}

QString& asText(QString& out, unsigned megabytes) {
    out = QString::number(megabytes) + QStringLiteral(" MB");
    return out;
}

} // namespace

unsigned TUOSWMemory::getTotalPhysicalMemoryMB() {
    return memoryFigure(&sys::MemoryStatus::totalPhysical);
}

unsigned TUOSWMemory::getFreePhysicalMemoryMB() {
    return memoryFigure(&sys::MemoryStatus::availablePhysical);
}

unsigned TUOSWMemory::getTotalVirtualMemoryMB() {
    return memoryFigure(&sys::MemoryStatus::totalPhysical, &sys::MemoryStatus::totalSwap);
}

unsigned TUOSWMemory::getFreeVirtualMemoryMB() {
    return memoryFigure(&sys::MemoryStatus::availablePhysical, &sys::MemoryStatus::freeSwap);
}

QString& TUOSWMemory::getTotalPhysicalMemoryMB(QString& out) {
    return asText(out, getTotalPhysicalMemoryMB());
}

QString& TUOSWMemory::getFreePhysicalMemoryMB(QString& out) {
    return asText(out, getFreePhysicalMemoryMB());
}

QString& TUOSWMemory::getTotalVirtualMemoryMB(QString& out) {
    return asText(out, getTotalVirtualMemoryMB());
}

QString& TUOSWMemory::getFreeVirtualMemoryMB(QString& out) {
    return asText(out, getFreeVirtualMemoryMB());
}

namespace {

char s_dllError[1024];
bool s_dllErrorPending = false;

void keepLoaderError() {
    const std::string text = sys::takeLibraryError();
    if (text.empty()) return;
    std::strncpy(s_dllError, text.c_str(), sizeof s_dllError - 1);
    s_dllError[sizeof s_dllError - 1] = '\0';
    s_dllErrorPending = true;
}

} // namespace

DllModule DllOpen(QString name) {
    name += QStringLiteral(".so");
    const QString path = oswRemapPath::RemapPath2(name, false);
    DllModule module = sys::openLibrary(path.toUtf8().toStdString());
    if (!module && !path.contains(QLatin1Char('/'))) {
        keepLoaderError();
        const QString found = oswUtil::getDynamicLibPath(path);
        if (!found.isEmpty()) module = sys::openLibrary(found.toUtf8().toStdString());
    }
    if (module)
        sys::takeLibraryError(); // a failure of the first try is no longer pending
    else
        keepLoaderError();
    if (module) s_dllErrorPending = false;
    return module;
}

void* DllSymbol(DllModule module, const char* symbol) {
    sys::takeLibraryError();
    void* address = sys::librarySymbol(module, symbol);
    if (!address) {
        keepLoaderError();
        if (!module || !symbol) {
            std::strncpy(s_dllError, "DllSymbol: no module or no symbol name",
                         sizeof s_dllError - 1);
            s_dllErrorPending = true;
        }
    }
    return address;
}

void DllClose(DllModule module) {
    if (module && sys::closeLibrary(module) != 0) keepLoaderError();
}

const char* DllError() {
    if (!s_dllErrorPending) return nullptr;
    s_dllErrorPending = false;
    return s_dllError;
}

QString DllBuildFrameworkName(const char* name) {
    return name ? QString::fromUtf8(name) : QStringLiteral("dummy");
}
