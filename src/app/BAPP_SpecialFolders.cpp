// The installation's folders, resolved from the executable's path and the environment.
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>

#include "platform/Platform.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

namespace {

// A subfolder when it exists, else the folder itself (the nearest existing ancestor).
QString descend(const QString& folder, const char* name) {
    const QString candidate = folder + QLatin1Char('/') + QLatin1String(name);
    return QFileInfo(candidate).isDir() ? candidate : folder;
}

bool hasSubfolder(const QString& folder, const char* name) {
    return QFileInfo(folder + QLatin1Char('/') + QLatin1String(name)).isDir();
}

// The text before the last '/', whether or not the folders exist; "/" stays "/".
QString parentOf(const QString& folder) {
    const int slash = static_cast<int>(folder.lastIndexOf(QLatin1Char('/')));
    if (slash < 0) return folder;
    return slash == 0 ? QStringLiteral("/") : folder.left(slash);
}

QString environment(const char* name) {
    return qEnvironmentVariable(name);
}

void setIfEmpty(QString& folder, const QString& value) {
    if (folder.isEmpty()) folder = value;
}

} // namespace

BAPP_SpecialFolders::~BAPP_SpecialFolders() = default;

BAPP_SpecialFoldersImpl::BAPP_SpecialFoldersImpl(const QString& executablePath, QObject* parent)
    : BAPP_SpecialFolders(parent) {
    setObjectName(QStringLiteral("specialFolders"));
    resolve(executablePath);
}

BAPP_SpecialFoldersImpl::~BAPP_SpecialFoldersImpl() = default;

void BAPP_SpecialFoldersImpl::setBin(const QString& folder) {
    m_bin = folder;
    m_bin32 = descend(descend(parentOf(parentOf(folder)), "win32"), "bin");
}

void BAPP_SpecialFoldersImpl::resolve(const QString& executablePath) {
    const int slash = static_cast<int>(executablePath.lastIndexOf(QLatin1Char('/')));
    if (slash < 0) return;
    const QString executableFolder = executablePath.left(slash);

    if (m_root.isEmpty()) {
        setBin(executableFolder);
        m_platform = parentOf(m_bin);
        m_root = parentOf(m_platform);
    }
    setIfEmpty(m_config, descend(m_root, "etc"));

    // A one-application install: the platform folder carries the application's suffix.
    for (const char* suffix : {"_vapo", "_quelin"}) {
        if (m_platform.isEmpty() || !m_platform.endsWith(QLatin1String(suffix))) continue;
        if (hasSubfolder(m_platform, "plugins") || !hasSubfolder(m_platform, "bin")) continue;
        if (m_bin.isEmpty()) setBin(descend(m_platform, "bin"));
        setIfEmpty(m_app, m_bin);
        m_platform.chop(static_cast<int>(qstrlen(suffix)));
        break;
    }

    setIfEmpty(m_platform, descend(m_root, "linux"));
    setIfEmpty(m_resource, descend(m_root, "resources"));
    setIfEmpty(m_etc, descend(m_root, "etc"));
    setIfEmpty(m_lang, descend(m_root, "lang"));
    const QString help = descend(descend(m_root, "help"), "en");
    setIfEmpty(m_htmlHelp, descend(help, BAPP_Identity::current().fullCode.toUtf8().constData()));
    setIfEmpty(m_help, help);
    setIfEmpty(m_library, descend(m_platform, "lib"));
    if (m_bin.isEmpty()) setBin(descend(m_platform, "bin"));
    setIfEmpty(m_app, m_bin);
    setIfEmpty(m_legacyPlugins, hasSubfolder(m_platform, "plugins")
                                    ? m_platform + QStringLiteral("/plugins")
                                    : descend(m_root, "plugins"));
    const QString pluginBase =
        m_root.endsWith(QLatin1String("Tessary")) ? parentOf(m_root) : m_root;
    setIfEmpty(m_plugins, descend(pluginBase, "Plugins"));

    if (m_database.isEmpty())
        m_database = environment("ORVADB").replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (m_temp.isEmpty()) m_temp = environment("TEMP");
    if (m_temp.isEmpty()) m_temp = environment("TMP");
    if (m_temp.isEmpty()) m_temp = QStringLiteral("/tmp");
    if (m_database.isEmpty()) {
        m_database = QStringLiteral("/ORVA_DB");
        qputenv("ORVADB", QByteArrayLiteral("/ORVA_DB")); // children inherit it
    }
}

QString BAPP_SpecialFoldersImpl::userConfig(const QString& relative) const {
    if (m_userConfig.isEmpty() || relative.isEmpty()) return m_userConfig;
    return m_userConfig.endsWith(QLatin1Char('/')) ? m_userConfig + relative
                                                   : m_userConfig + QLatin1Char('/') + relative;
}

BAPP_SpecialFolders* BAPP_SharedSpecialFolders() {
    // Made once and kept; a QPointer notices when the application object took it with it.
    static QPointer<BAPP_SpecialFolders> shared;
    if (!shared) {
        // Without an application object (a tool that never made one) the system names the
        // executable instead of Qt, which would only warn.
        QCoreApplication* app = QCoreApplication::instance();
        const QString executable =
            app ? QCoreApplication::applicationFilePath()
                : QString::fromStdString(plumvale::platform::executablePath());
        shared = new BAPP_SpecialFoldersImpl(executable, app);
    }
    return shared;
}
