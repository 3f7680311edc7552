#pragma once
#include <QString>
#include <QStringList>

#include "burn/MediumChecks.h"
#include "platform/Alerts.h"

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
AlertRequest noDiscToCopy();              // duplication start: insert a media to copy
AlertRequest wrongMedia(DataDisc kind);

// What the medium check chain says for these operations: a blank of the
// data disc's family, and the disc to copy (an image or a copy needs a blank:
// MediumRefusals::forBlank).
MediumRefusals dataDiscRefusals(DataDisc kind);
MediumRefusals sourceRefusals();

// The copy-count question: a text field holding "1", "OK" and "Cancel".
AlertRequest copyCountQuestion();
// "Burn Copy <done + 1> of <count>" / "Cancel", warning style.
AlertRequest insertBlankQuestion(int copiesDone, int numberOfCopies);
QString burnCopyButton(int copiesDone, int numberOfCopies);

// The last sheet when a tool failed.
inline const QString DiscNotWritten = QStringLiteral("The disc could not be written.");
inline const QString ImageNotMade = QStringLiteral("The image could not be made.");
inline const QString CopyImageNotMade = QStringLiteral("The disc could not be copied: its image could not be made.");
QString copyNotWritten(int copyNumber, int numberOfCopies);  // "Copy 2 of 3 could not be written."

// Staging for a data disc met errors (a full disk, an unreadable file):
// nothing was recorded.
AlertRequest stagingFailed(const QStringList &errors);

// Listed folders that are gone by the time of the burn: nothing is recorded.
AlertRequest foldersGone(const QStringList &folders);

} // namespace ImageMessages
