#pragma once
#include <QString>
#include <QtGlobal>

// One folder of the data compilation.
struct NodeDataFolder {
    QString s_Path;                // absolute path as chosen
    quint64 i_Size_in_KBytes = 0;  // byte total >> 10
    QString s_Size;                // size text of the byte total
};
