#pragma once
#include <QString>

#include "platform/FilePicker.h"

// The open panels of the ISO tab and duplication, and where a new image goes.
namespace IsoCreation {

// "Select a folder to export to ISO format.": one folder, no start folder.
PickRequest sourceRequest();
// "Select a folder to save the Image.iso file.": one folder, starting in
// the home folder's Documents.
PickRequest destinationRequest(const QString &homeFolder);
// "Select a ISO image to burn to media.": one file, "iso", "img" or "dmg".
PickRequest imageRequest();
// "Select a volume to duplicate.": one folder, no start folder.
PickRequest volumeRequest();

// DestPath + "/image.iso".
QString destPathISO(const QString &destPath);

// Deletes whatever is at `path` so a new image replaces it without a
// question. A missing file or a failure is not an error; returns whether
// something was removed.
bool removeOldImage(const QString &path);

} // namespace IsoCreation
