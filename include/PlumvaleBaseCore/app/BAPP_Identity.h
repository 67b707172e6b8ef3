// Application identity: the table of the family's applications and the running one.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>
#include <QStringList>

#include <vector>

/// One application of the family.
struct PLUMVALE_EXPORT BAPP_AppIdentity {
    QString shortName;           ///< program name, as typed: "pvtool"
    QString fullName;            ///< as shown to the user: "Plumvale Tool"
    QString fullCode;            ///< stable short identifier: "PVTL"
    QString version;             ///< "major.minor.patch"
    QString build;               ///< build description
    QStringList sceneExtensions; ///< without dot: "pvs"
    QStringList scenePatterns;   ///< file-dialog patterns: "*.pvs"
    QString iconName;            ///< the icon resource name
    QStringList features;        ///< the feature switches that are on

    /// Whether the feature switch is on (exact, case-sensitive name).
    bool hasFeature(const QString& feature) const { return features.contains(feature); }
    /// Several lines: full name, version, build, libraries, ending with a blank line.
    QString versionText() const;
    /// One line printed at start-up: full name, version, build.
    QString banner() const;
};

/// The family's applications and the one running in this process.
class PLUMVALE_EXPORT BAPP_Identity {
public:
    /// Every application of the family; the first entry is the library default.
    static const std::vector<BAPP_AppIdentity>& table();
    /// Chooses the running application by short name (case-insensitive); an unknown name
    /// chooses the library default and returns false. Call once at start-up.
    static bool select(const QString& shortName);
    /// The running application (the library default until select() is called).
    static const BAPP_AppIdentity& current();
};
