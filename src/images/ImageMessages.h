#pragma once
#include <QString>

#include "app/Alerts.h"

// The alerts of data burning, image burning and duplication, word for word.
namespace ImageMessages {

enum class DataDisc { CD, DVD, Bluray };

struct DataDiscTexts {
    QString mediaWord;     // what the medium's family must be: "CD", "DVD", "BD"
    QString wrongTitle;    // "Media not CD"
    QString wrongText;     // "The media on the drive is not a CD. ..."
    QString debugText;     // "Warning 0070."
};
DataDiscTexts dataDisc(DataDisc kind);

AlertRequest noFolders();                 // empty data list
AlertRequest noDisc();                    // burns: insert a writable media
AlertRequest noDiscToCopy();              // duplication start: insert a media to copy
AlertRequest notWritable();
AlertRequest wrongMedia(DataDisc kind);
AlertRequest wrongMediaDebug(DataDisc kind, const QString &detectedFamily);

// The copy-count question: a text field holding "1", "OK" and "Cancel".
AlertRequest copyCountQuestion();
// "Burn Copy <done + 1> of <count>" / "Cancel", warning style.
AlertRequest insertBlankQuestion(int copiesDone, int numberOfCopies);
QString burnCopyButton(int copiesDone, int numberOfCopies);

} // namespace ImageMessages
