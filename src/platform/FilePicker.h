#pragma once
#include <QString>
#include <QStringList>

// One open panel: files or a folder, one or many, an optional list of
// allowed extensions (matched without regard to case) under a readable name
// ("Audio files"), a title that says what the panel is for, a message and a
// starting folder.
struct PickRequest {
    enum class Kind { Files, Folder };
    Kind kind = Kind::Files;
    bool multiple = false;
    QStringList allowedExtensions;  // empty: anything
    QString filterName;             // what the allowed files are: "Audio files"
    QString title;                  // the panel's title; empty: the message
    QString message;
    QString startFolder;
};

// Returns the chosen absolute paths in the panel's order; empty means the
// user cancelled (or chose nothing).
class FilePicker {
public:
    virtual ~FilePicker() = default;
    virtual QStringList pick(const PickRequest &request) = 0;
};
