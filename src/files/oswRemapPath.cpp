// Path remapping: the configuration, the connections, the rule table and the shortcut cache.
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include "files/MountTable.h"
#include "files/PathText.h"
#include "files/ProfileFile.h"
#include "files/SystemInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cerrno>

namespace sys = plumvale::files;

namespace {

const char* const kConnectionPrefix = "Connection";
constexpr unsigned kConnectionMax = 100;
const char* const kConfigFileName = "orvacfg.ini";
const char* const kFamilyDatabaseRoot = "/orva_db"; // as the family writes it, lower-cased
constexpr int kShortcutHops = 40;                   // a loop of links ends here

struct Connection {
    QString share;      // as written, for the reports
    QString shareRoot;  // "//server/share", lower-cased
    QString mountPoint; // the local folder, or empty when unknown
    QString drive;      // "s:", or empty
};

struct State {
    QString configOverride;
    bool loaded = false;
    QString configPath;
    std::vector<Connection> connections;
    unsigned connectCount = 0;
    // The rule table: lower-cased prefix -> index in `rules`, and the prefix lengths in use,
    // so a lookup tries only the path's '/' boundaries of those lengths.
    std::vector<oswRemapPath::Rule> rules;
    QHash<QString, int> ruleIndex;
    QSet<int> ruleLengths;
    int longestRule = 0;
    QHash<QString, QString> shortcuts; // prefix -> target, empty for "not a shortcut"
};

State& state() {
    static State s;
    return s;
}

QString slashed(QString path) {
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

// A folder as rules hold it: '/'-separated, cleaned, without a trailing '/'. A leading "//"
// (a share) is kept, which QDir::cleanPath would fold on this platform.
QString folderKey(const QString& text) {
    const QString path = slashed(text.trimmed());
    const bool share = sys::shareRootLength(path) > 0;
    QString key = share ? QLatin1Char('/') + QDir::cleanPath(path.mid(1)) : QDir::cleanPath(path);
    while (key.size() > 1 && key.endsWith(QLatin1Char('/')))
        key.chop(1);
    return key;
}

bool underFolder(const QString& path, const QString& folder, Qt::CaseSensitivity cs) {
    return path.startsWith(folder, cs) &&
           (path.size() == folder.size() || path[folder.size()] == QLatin1Char('/') ||
            folder.endsWith(QLatin1Char('/')));
}

// The case folding of rule keys, unit by unit with an ASCII fast path: QString::toLower
// handles whole strings far more slowly, and keys and lookups must fold alike.
QString folded(QStringView text) {
    QString out(text.size(), Qt::Uninitialized);
    QChar* to = out.data();
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        *to++ = u < 0x80 ? QChar(u >= 'A' && u <= 'Z' ? u + ('a' - 'A') : u) : c.toLower();
    }
    return out;
}

void reportConnection(const Connection& c, int result) {
    if (result == 0) {
        MSG_Scope report("oswRemapPath", "Established connection to %1.", MSG_Scope::Debug,
                         ErrorCode::NoError);
        report.arg(c.share);
        return;
    }
    const int error = -result;
    const char* text = nullptr;
    if (error == ENOENT || error == ENOTDIR)
        text = "Could not connect to %1. Network is unavailable or Bad Path.";
    else if (error == EACCES || error == EPERM)
        text = "Could not connect to %1. Access Denied.";
    if (text) {
        MSG_Scope report("oswRemapPath", text, MSG_Scope::Error, ErrorCode::NoError);
        report.arg(c.share);
    } else {
        MSG_Scope report("oswRemapPath",
                         "Could not connect to %1. WNetAddConnection2 returned 0x%2.",
                         MSG_Scope::Error, ErrorCode::NoError);
        report.arg(c.share).arg(error, 0, 16);
    }
}

// Reaching the mount folder is this platform's connection: the system mounts the share
// (fstab, autofs, the desktop), and touching the folder wakes an automounter.
int makeConnection(Connection& c, const std::vector<sys::Mount>& mounts) {
    if (c.mountPoint.isEmpty()) {
        for (const sys::Mount& m : mounts)
            if (sys::isNetworkFileSystem(m.type) &&
                folderKey(m.source).compare(c.shareRoot, Qt::CaseInsensitive) == 0)
                c.mountPoint = m.folder;
    }
    return c.mountPoint.isEmpty() ? -ENOENT : sys::probeFolder(c.mountPoint);
}

void addRule(State& s, const QString& from, const QString& to, const char* kind) {
    if (from.isEmpty() || to.isEmpty() || s.ruleIndex.contains(from)) return;
    s.ruleIndex.insert(from, static_cast<int>(s.rules.size()));
    s.ruleLengths.insert(static_cast<int>(from.size()));
    s.longestRule = std::max(s.longestRule, static_cast<int>(from.size()));
    s.rules.push_back({from, to, QString::fromLatin1(kind)});
}

QString databaseAliases(const QString& database) {
    QFile file(database + QStringLiteral("/Manager.conf"));
    if (!file.open(QIODevice::ReadOnly)) return QString();
    for (const QByteArray& line : file.read(1 << 20).split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0 &&
            line.left(equals).trimmed().toLower() == QByteArrayLiteral("scene_dir_pattern"))
            return QString::fromUtf8(line.mid(equals + 1).trimmed());
    }
    return QString();
}

QString findConfigFile(const State& s) {
    if (!s.configOverride.isEmpty()) return s.configOverride;
    const QString etc = BAPP_SharedSpecialFolders()->etc();
    for (const QString& folder : {etc, QStringLiteral("/etc")}) {
        const QString candidate = folder + QLatin1Char('/') + QLatin1String(kConfigFileName);
        if (!folder.isEmpty() && QFileInfo(candidate).isFile()) return candidate;
    }
    return QString();
}

// Reads the configuration, makes the connections (the first failure stops further
// attempts) and builds the rule table; once per configuration.
State& loaded() {
    State& s = state();
    if (s.loaded) return s;
    s.loaded = true;
    s.configPath = findConfigFile(s);
    QByteArray bytes;
    if (!s.configPath.isEmpty()) {
        QFile file(s.configPath);
        if (file.open(QIODevice::ReadOnly)) bytes = file.read(4 << 20);
    }
    const sys::ProfileFile config = sys::ProfileFile::parse(bytes);
    const std::vector<sys::Mount> mounts = sys::parseMountInfo(sys::readMountTable());
    bool failed = false;
    for (unsigned i = 0; i < kConnectionMax; ++i) {
        const QString section = QLatin1String(kConnectionPrefix) + QString::number(i);
        if (!config.listsSection(section)) continue;
        Connection c;
        c.share = config.value(section, QStringLiteral("Sharename"));
        if (c.share.isEmpty()) continue;
        const QString root = folderKey(c.share);
        c.shareRoot = sys::isShareRoot(root) ? folded(root) : QString();
        c.mountPoint = folderKey(config.value(section, QStringLiteral("MountPoint")));
        if (c.mountPoint == QLatin1String(".")) c.mountPoint.clear();
        QString drive = folded(config.value(section, QStringLiteral("Drive")).trimmed());
        if (drive.size() == 1) drive += QLatin1Char(':');
        if (drive.size() == 2 && sys::isValidDrive(drive)) c.drive = drive;
        // The credentials ("Username", "Password") belong to the system's mount; they are
        // neither used nor ever written anywhere here.
        if (!failed) {
            const int result = makeConnection(c, mounts);
            reportConnection(c, result);
            if (result == 0)
                ++s.connectCount;
            else
                failed = true;
        }
        s.connections.push_back(c);
    }
    for (const Connection& c : s.connections) {
        if (c.mountPoint.isEmpty()) continue;
        addRule(s, c.shareRoot, c.mountPoint, "share");
        addRule(s, c.drive, c.mountPoint, "drive");
    }
    const QString database = folderKey(BAPP_SharedSpecialFolders()->database());
    if (!database.isEmpty()) {
        if (database.compare(QLatin1String(kFamilyDatabaseRoot), Qt::CaseInsensitive) != 0)
            addRule(s, QLatin1String(kFamilyDatabaseRoot), database, "database");
        for (const QString& alias : databaseAliases(database).split(QLatin1Char(';')))
            if (!alias.trimmed().isEmpty()) addRule(s, folded(folderKey(alias)), database, "alias");
    }
    return s;
}

// The longest rule prefix of `path` that ends at a '/' boundary (or the end); -1 for none.
int matchRule(const State& s, const QString& path, int& length) {
    // Only the boundaries whose length some rule has are looked up, so the cost follows the
    // path's length, not the number of rules; the lower-cased copy is made on the first one.
    QString lower;
    int found = -1;
    const int last = std::min(static_cast<int>(path.size()), s.longestRule);
    for (int end = 1; end <= last; ++end) {
        if (end < path.size() && path[end] != QLatin1Char('/')) continue;
        if (!s.ruleLengths.contains(end)) continue;
        if (lower.isNull()) lower = folded(QStringView(path).left(last));
        const auto it = s.ruleIndex.constFind(lower.left(end));
        if (it != s.ruleIndex.constEnd()) {
            found = it.value();
            length = end;
        }
    }
    return found;
}

// The target of `prefix` when it is a symbolic link or a ".lnk" shell link; empty when not.
QString shortcutTarget(State& s, const QString& prefix) {
    const auto cached = s.shortcuts.constFind(prefix);
    if (cached != s.shortcuts.constEnd()) return cached.value();
    const OSW_FileInfo info(prefix);
    QString target;
    if (info.isSymLink() || (sys::hasLinkSuffix(prefix) && info.isFile()))
        target = slashed(info.readLink());
    s.shortcuts.insert(prefix, target);
    return target;
}

bool resolveShortcuts(State& s, QString& path) {
    bool changed = false;
    for (int hop = 0; hop < kShortcutHops; ++hop) {
        const int root = static_cast<int>(sys::rootLength(path));
        bool replaced = false;
        for (int end = root + 1; end <= path.size(); ++end) {
            if (end < path.size() && path[end] != QLatin1Char('/')) continue;
            const QString target = shortcutTarget(s, path.left(end));
            if (target.isEmpty()) continue;
            path = folderKey(target) + path.mid(end);
            replaced = changed = true;
            break;
        }
        if (!replaced) break;
    }
    return changed;
}

void convert(char* path, char from, char to) {
    if (!path) return;
    for (; *path; ++path)
        if (*path == from) *path = to;
}

} // namespace

bool oswRemapPath::RemapPath(QString& path, bool resolve) {
    bool changed = false;
    if (path.contains(QLatin1Char('\\'))) {
        BackSlashToSlash(path);
        changed = true;
    }
    State& s = loaded();
    int length = 0;
    const int rule = matchRule(s, path, length);
    if (rule >= 0) {
        path.replace(0, length, s.rules[static_cast<size_t>(rule)].to);
        changed = true;
    }
    if (resolve && resolveShortcuts(s, path)) changed = true;
    return changed;
}

QString oswRemapPath::RemapPath2(const QString& path, bool resolveShortcuts) {
    QString out = path;
    RemapPath(out, resolveShortcuts);
    return out;
}

bool oswRemapPath::MakeUNCPath(QString& path) {
    const State& s = loaded();
    // Local folders (and drives) of shares: the configured ones, then the mounted ones.
    std::vector<std::pair<QString, QString>> shares; // folder -> "//server/share"
    for (const Connection& c : s.connections) {
        if (c.shareRoot.isEmpty()) continue;
        if (!c.mountPoint.isEmpty()) shares.emplace_back(c.mountPoint, folderKey(c.share));
        if (!c.drive.isEmpty()) shares.emplace_back(c.drive, folderKey(c.share));
    }
    for (const sys::Mount& m : sys::parseMountInfo(sys::readMountTable()))
        if (sys::isNetworkFileSystem(m.type) && sys::isShareRoot(folderKey(m.source)))
            shares.emplace_back(m.folder, folderKey(m.source));
    const QString p = slashed(path);
    const std::pair<QString, QString>* best = nullptr;
    for (const auto& share : shares) {
        const bool isDrive = share.first.size() == 2 && share.first[1] == QLatin1Char(':');
        if (underFolder(p, share.first, isDrive ? Qt::CaseInsensitive : Qt::CaseSensitive) &&
            (!best || share.first.size() > best->first.size()))
            best = &share;
    }
    if (!best) return false;
    path = best->second + p.mid(best->first.size());
    return true;
}

bool oswRemapPath::isLocalDrive(const QString& path) {
    const QString real = QFileInfo(path).canonicalFilePath();
    const std::vector<sys::Mount> mounts = sys::parseMountInfo(sys::readMountTable());
    const sys::Mount* mount = sys::mountOf(mounts, real.isEmpty() ? folderKey(path) : real);
    return !mount || !sys::isNetworkFileSystem(mount->type);
}

void oswRemapPath::BackSlashToSlash(QString& path) {
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

void oswRemapPath::BackSlashToSlash(char* path) {
    convert(path, '\\', '/');
}

void oswRemapPath::SlashToBackSlash(QString& path) {
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

void oswRemapPath::SlashToBackSlash(char* path) {
    convert(path, '/', '\\');
}

void oswRemapPath::ClearShortcutCache() {
    state().shortcuts.clear();
}

QString oswRemapPath::tr(const char* source, const char* disambiguation, int n) {
    return QCoreApplication::translate("oswRemapPath", source, disambiguation, n);
}

QString oswRemapPath::trUtf8(const char* source, const char* disambiguation, int n) {
    return tr(source, disambiguation, n);
}

void oswRemapPath::setConfigFile(const QString& file) {
    State& s = state();
    s = State();
    s.configOverride = file;
}

QString oswRemapPath::configFile() {
    return loaded().configPath;
}

std::vector<oswRemapPath::Rule> oswRemapPath::rules() {
    std::vector<Rule> table = loaded().rules;
    std::stable_sort(table.begin(), table.end(),
                     [](const Rule& a, const Rule& b) { return a.from.size() > b.from.size(); });
    return table;
}

unsigned oswRemapPath::connectionCount() {
    return loaded().connectCount;
}
