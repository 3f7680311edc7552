#pragma once
#include <QString>

#include "platform/Alerts.h"

// The eight burn operations, in the order of the disc kinds.
enum class BurnOperation {
    AudioCD,
    MP3CD,
    MP3DVD,
    VideoDVD,
    VideoBluray,
    DataCD,
    DataDVD,
    DataBluray,
};

// What a burn tells the user when it refuses to start.
struct BurnTexts {
    QString emptyListMessage;        // check 1: nothing on the list
    QString emptyListInformative;
    QString family;                  // the medium the burn needs: "CD", "DVD" or "BD"
    QString wrongMediumMessage;      // check 4: another kind of disc
    QString wrongMediumInformative;
    QString debugCode;               // debug mode: the second alert's informative text
};

// The refusal texts of every burn, word for word ("insert" in lower case
// after a full stop is how the program has always put it).
namespace BurnMessages {

BurnTexts forOperation(BurnOperation operation);

// Checks 2 and 3, the same for every burn.
inline const QString NoDiscMessage = QStringLiteral("No disc");
inline const QString NoDiscInformative =
    QStringLiteral("There is no disc on the drive. insert a writable media on the drive and try again.");
inline const QString NotWritableMessage = QStringLiteral("Media not writable");
inline const QString NotWritableInformative =
    QStringLiteral("The media on the drive is not writable. insert a writable media on the drive and try again.");

// The last sheet of a burn whose recorder failed.
inline const QString DiscNotWritten = QStringLiteral("The disc could not be written.");

// A transcode that failed: nothing was recorded. Names the file and quotes
// the transcoder's own words.
AlertRequest transcodeFailed(const QString &file, const QString &toolWords);

// True for the burns that transcode the media list (audio, MP3, video).
bool isMediaBurn(BurnOperation operation);
bool isVideoBurn(BurnOperation operation);

} // namespace BurnMessages
