// BAPP_SpecialFolders: where the installation's folders are, resolved once per process.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QObject>
#include <QString>

/// The installation's folders (root, configuration, resources, languages, plug-ins,
/// temporary files ...), as '/'-separated paths; empty when unknown.
///
/// Conventions: the folders are resolved once from the running executable's path; a
/// subfolder that does not exist resolves to its parent, the nearest existing ancestor.
/// Fifteen folders are also read-only Qt properties named as their accessors. Not locked:
/// made and changed on the main thread.
class PLUMVALE_EXPORT BAPP_SpecialFolders : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString root READ root)
    Q_PROPERTY(QString config READ config)
    Q_PROPERTY(QString resource READ resource)
    Q_PROPERTY(QString etc READ etc)
    Q_PROPERTY(QString lang READ lang)
    Q_PROPERTY(QString platform READ platform)
    Q_PROPERTY(QString app READ app)
    Q_PROPERTY(QString bin READ bin)
    Q_PROPERTY(QString bin32 READ bin32)
    Q_PROPERTY(QString library READ library)
    Q_PROPERTY(QString legacyPlugins READ legacyPlugins)
    Q_PROPERTY(QString plugins READ plugins)
    Q_PROPERTY(QString temp READ temp)
    Q_PROPERTY(QString userConfig READ userConfig)
    Q_PROPERTY(QString htmlHelp READ htmlHelp)

public:
    /// A folder set with `parent` as its Qt parent.
    explicit BAPP_SpecialFolders(QObject* parent = nullptr) : QObject(parent) {}
    ~BAPP_SpecialFolders() override;

    /// @{
    /// The installation root, its configuration, resources, etc and translation folders.
    virtual QString root() const = 0;
    virtual QString config() const = 0;
    virtual QString resource() const = 0;
    virtual QString etc() const = 0;
    virtual QString lang() const = 0;
    /// @}
    /// Replaces the translation folder (the "-langdir" option).
    virtual void setLang(const QString& folder) = 0;
    /// @{
    /// The platform folder (one above bin), the application, executable, 32-bit executable
    /// and library folders, the old-style and current plug-in folders, the temporary folder.
    virtual QString platform() const = 0;
    virtual QString app() const = 0;
    virtual QString bin() const = 0;
    virtual QString bin32() const = 0;
    virtual QString library() const = 0;
    virtual QString legacyPlugins() const = 0;
    virtual QString plugins() const = 0;
    virtual QString temp() const = 0;
    /// @}
    /// The per-user configuration folder joined with `relative` (a '/' between them unless
    /// the folder ends with one); the folder alone when either is empty.
    virtual QString userConfig(const QString& relative) const = 0;
    /// The per-user configuration folder: empty until the application sets it.
    virtual QString userConfig() const = 0;
    /// Sets the per-user configuration folder.
    virtual void setUserConfig(const QString& folder) = 0;
    /// The shared database root.
    virtual QString database() const = 0;
    /// Replaces the database root.
    virtual void setDatabase(const QString& folder) = 0;
    /// The help folder of the default language.
    virtual QString help() const = 0;
    /// The application's own help pages.
    virtual QString htmlHelp() const = 0;
};

/// The folder set resolved from an executable path, one QString per folder.
///
/// Resolution (each step only fills a folder still empty): bin is the executable's folder,
/// platform its parent, root the platform's parent; etc, resources, "lang" and "help/en" are
/// subfolders of root; "lib" of platform; legacy plug-ins are platform's or else root's
/// "plugins"; current plug-ins are root's "Plugins" (from root's parent when root ends with
/// "Tessary"); bin32 is bin's grandparent's "win32/bin". A platform folder ending with
/// "_vapo" or "_quelin" that has a "bin" but no "plugins" subfolder is a one-application
/// install: its suffix is cut off. The database is `ORVADB` (backslashes made '/'), or else
/// "/ORVA_DB", which is then also set as `ORVADB` for this process and its children. Temp is
/// `TEMP`, else `TMP`, as given, else "/tmp". An executable path without '/' leaves every
/// folder empty.
class PLUMVALE_EXPORT BAPP_SpecialFoldersImpl : public BAPP_SpecialFolders {
    Q_OBJECT
public:
    /// Resolves every folder from `executablePath` (with '/' separators) at once.
    explicit BAPP_SpecialFoldersImpl(const QString& executablePath, QObject* parent = nullptr);
    ~BAPP_SpecialFoldersImpl() override;

    /// @{
    /// See BAPP_SpecialFolders.
    QString root() const override { return m_root; }
    QString config() const override { return m_config; }
    QString resource() const override { return m_resource; }
    QString etc() const override { return m_etc; }
    QString lang() const override { return m_lang; }
    void setLang(const QString& folder) override { m_lang = folder; }
    QString platform() const override { return m_platform; }
    QString app() const override { return m_app; }
    QString bin() const override { return m_bin; }
    QString bin32() const override { return m_bin32; }
    QString library() const override { return m_library; }
    QString legacyPlugins() const override { return m_legacyPlugins; }
    QString plugins() const override { return m_plugins; }
    QString temp() const override { return m_temp; }
    QString userConfig(const QString& relative) const override;
    QString userConfig() const override { return m_userConfig; }
    void setUserConfig(const QString& folder) override { m_userConfig = folder; }
    QString database() const override { return m_database; }
    void setDatabase(const QString& folder) override { m_database = folder; }
    QString help() const override { return m_help; }
    QString htmlHelp() const override { return m_htmlHelp; }
    /// @}

private:
    void resolve(const QString& executablePath);
    void setBin(const QString& folder);

    QString m_root, m_config, m_resource, m_etc, m_lang, m_platform, m_app, m_bin, m_bin32,
        m_library, m_legacyPlugins, m_plugins, m_temp, m_userConfig, m_database, m_help, m_htmlHelp;
};

/// The process's folder set, made on the first call (as a child of the Qt application
/// object, which must exist) from QCoreApplication::applicationFilePath(); never destroyed
/// before the application object.
PLUMVALE_EXPORT BAPP_SpecialFolders* BAPP_SharedSpecialFolders();
