// The table of the family's applications and the choice of the running one.
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/version.h>

#include <QtGlobal>

#include <atomic>

namespace {

const QString kVersion = QStringLiteral(PLUMVALE_VERSION_STRING);
const QString kBuild = QStringLiteral("Linux, Qt " QT_VERSION_STR);

BAPP_AppIdentity entry(const char* shortName, const char* fullName, const char* code,
                       const QStringList& extensions, const char* icon,
                       const QStringList& features) {
    BAPP_AppIdentity id;
    id.shortName = QString::fromLatin1(shortName);
    id.fullName = QString::fromLatin1(fullName);
    id.fullCode = QString::fromLatin1(code);
    id.version = kVersion;
    id.build = kBuild;
    id.sceneExtensions = extensions;
    for (const QString& extension : extensions)
        id.scenePatterns.append(QStringLiteral("*.") + extension);
    id.iconName = QString::fromLatin1(icon);
    id.features = features;
    return id;
}

const std::vector<BAPP_AppIdentity>& buildTable() {
    static const std::vector<BAPP_AppIdentity> table = {
        entry("plumvale", "Plumvale", "PLMV", {}, "plumvale", {}),
        entry("studio", "Plumvale Studio", "PVST", {QStringLiteral("pvs")}, "studio",
              {QStringLiteral("ink"), QStringLiteral("paint"), QStringLiteral("camera")}),
        entry("sketch", "Plumvale Sketch", "PVSK", {QStringLiteral("pvs")}, "sketch",
              {QStringLiteral("ink")}),
        entry("render", "Plumvale Render", "PVRN", {QStringLiteral("pvs")}, "render",
              {QStringLiteral("batch")}),
        entry("pvtool", "Plumvale Tool", "PVTL", {}, "pvtool", {QStringLiteral("batch")}),
    };
    return table;
}

std::atomic<std::size_t> g_current{0};

} // namespace

QString BAPP_AppIdentity::versionText() const {
    return fullName + QStringLiteral("\nVersion ") + version + QStringLiteral("\nBuild ") + build +
           QStringLiteral("\nPlumvaleBaseCore ") + kVersion + QStringLiteral("\n\n");
}

QString BAPP_AppIdentity::banner() const {
    return fullName + QLatin1Char(' ') + version + QStringLiteral(" (") + build + QLatin1Char(')');
}

const std::vector<BAPP_AppIdentity>& BAPP_Identity::table() {
    return buildTable();
}

bool BAPP_Identity::select(const QString& shortName) {
    const std::vector<BAPP_AppIdentity>& all = buildTable();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].shortName.compare(shortName, Qt::CaseInsensitive) == 0) {
            g_current.store(i);
            return true;
        }
    }
    g_current.store(0);
    return false;
}

const BAPP_AppIdentity& BAPP_Identity::current() {
    return buildTable()[g_current.load()];
}
