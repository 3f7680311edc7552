#pragma once
#include <QString>
#include <QUrl>
#include <QtGlobal>

// One audio or video file of the compilation.
struct NodeMediaFile {
    QUrl s_File_URL;
    QString s_File_Path;                 // absolute path
    QString s_Folder_Path;               // the path without its last component
    QString s_File_Name_With_Extension;  // last path component
    QString s_File_Extension;            // extension without the dot, case kept
    QString s_File_Size;                 // size text, "%4.2f %@"
    qint64 i_Duration_in_Seconds = 0;    // whole seconds from s_Duration
    QString s_Duration;                  // the 11 characters after "Duration:"
};
