#pragma once
// Records of the Audio, Video and Data lists, made up for a test.
#include <QString>
#include <QUrl>

#include "compilation/Measurements.h"
#include "compilation/NodeDataFolder.h"
#include "compilation/NodeMediaFile.h"

// A media file as the burns read it: its path and its length.
inline NodeMediaFile mediaFile(const QString &path, qint64 seconds)
{
    NodeMediaFile f;
    f.s_File_Path = path;
    f.i_Duration_in_Seconds = seconds;
    return f;
}

// A track in /music as the lists show it: name, folder, address and length.
inline NodeMediaFile musicTrack(const QString &name, qint64 seconds = 60)
{
    NodeMediaFile n;
    n.s_File_Path = QStringLiteral("/music/") + name;
    n.s_File_URL = QUrl::fromLocalFile(n.s_File_Path);
    n.s_File_Name_With_Extension = name;
    n.s_Folder_Path = QStringLiteral("/music");
    n.i_Duration_in_Seconds = seconds;
    return n;
}

// A folder of the Data list said to hold `kb` KiB.
inline NodeDataFolder folderRecord(const QString &path, quint64 kb = 0)
{
    NodeDataFolder f;
    f.s_Path = path;
    f.i_Size_in_KBytes = kb;
    return f;
}

// A folder of the Data list, measured as the Add Folder button does.
inline NodeDataFolder measuredFolder(const QString &path)
{
    return folderRecord(path, Measurements::folderSize(path) >> 10);
}
