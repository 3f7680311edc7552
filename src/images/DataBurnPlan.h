#pragma once
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include "compilation/NodeDataFolder.h"
#include "toolrun/ToolCommand.h"

// Where each listed folder of a data disc goes. The disc shows every folder
// under its own name at the top; a name met again lands one level deeper:
// the first "Photos" is DATA/Photos, the second DATA/Photos 1/Photos, the
// third DATA/Photos 2/Photos. A top-level name counts as taken when
// something exists at DATA/name or an earlier folder of the list took it.
struct StagingEntry {
    QString source;             // the listed folder
    QString destinationFolder;  // the copy lands in here, under the source's name
    QString base;               // DATA/name: where the copy is measured (also for numbered ones)
    quint64 recordedKiB = 0;    // the size recorded when the folder was listed
    QString discPath;           // the folder's place on the disc: "/Photos", "/Photos 1/Photos"
};

class DataBurnPlan {
public:
    // `caseSensitivity`: how taken names compare (insensitive where the
    // working folder's file system is). Listed folders that are no longer
    // there are left out when `skipMissing` is set (see skipped()).
    static DataBurnPlan make(const QList<NodeDataFolder> &folders, const QString &dataFolder,
                             Qt::CaseSensitivity caseSensitivity = Qt::CaseSensitive,
                             bool skipMissing = true);

    const QList<StagingEntry> &entries() const { return m_entries; }
    const QStringList &skipped() const { return m_skipped; }
    const QString &dataFolder() const { return m_dataFolder; }

    // macOS: drutil burn DATA -drive N, the staged working folder as it is
    // (drutil reads the disc back afterwards; without `verify` it is told
    // -noverify: drutil burn -noverify DATA -drive N).
    ToolCommand drutilBurnCommand(const QString &drutil, const QString &driveNumber, bool verify = false) const;

    // Linux: the same tree written straight from the listed folders, with no
    // copy: xorriso -outdev DEV -joliet on -volid NAME -map SRC /Photos
    // -map SRC2 "/Photos 1/Photos" ... -commit. The volume is named after the
    // working folder, as a burn of that folder would be. With `verify` the
    // files' checksums go onto the disc ("-md5 on" first).
    ToolCommand xorrisoBurnCommand(const QString &xorriso, const QString &device, bool verify = false) const;
    // The disc paths of the listed folders ("/Photos", "/Photos 1/Photos"):
    // what the read-back checks.
    QStringList discPaths() const;
    QString volumeId() const;

private:
    QString m_dataFolder;
    QList<StagingEntry> m_entries;
    QStringList m_skipped;
};
