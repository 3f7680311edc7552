#include "images/ImageMessages.h"

namespace ImageMessages {

static AlertRequest closeAlert(const QString &message, const QString &informative)
{
    AlertRequest r;
    r.messageText = message;
    r.informativeText = informative;
    r.buttons = QStringList{QStringLiteral("Close")};
    return r;
}

DataDiscTexts dataDisc(DataDisc kind)
{
    switch (kind) {
    case DataDisc::CD:
        return {QStringLiteral("CD"), QStringLiteral("Media not CD"),
                QStringLiteral("The media on the drive is not a CD. insert a writable CD on the drive and try again."),
                QStringLiteral("Warning 0070.")};
    case DataDisc::DVD:
        return {QStringLiteral("DVD"), QStringLiteral("Media not DVD"),
                QStringLiteral("The media on the drive is not a DVD. insert a writable DVD on the drive and try again."),
                QStringLiteral("Warning 0020.")};
    case DataDisc::Bluray:
        return {QStringLiteral("BD"), QStringLiteral("Media not Blu-ray"),
                QStringLiteral("The media on the drive is not a Blu-ray. insert a writable Blu-ray on the drive and try again."),
                QStringLiteral("Warning 0090.")};
    }
    return {};
}

AlertRequest noFolders()
{
    return closeAlert(QStringLiteral("No folders on the list"),
                      QStringLiteral("There are no folders on the list. Add folders to the list and try again."));
}

AlertRequest noDiscToCopy()
{
    return closeAlert(QStringLiteral("No disc"),
                      QStringLiteral("There is no disc on the drive. insert a media on the drive to copy and try again."));
}

AlertRequest wrongMedia(DataDisc kind)
{
    const DataDiscTexts t = dataDisc(kind);
    return closeAlert(t.wrongTitle, t.wrongText);
}

MediumRefusals dataDiscRefusals(DataDisc kind)
{
    MediumRefusals r = MediumRefusals::forBlank(DiscRoom::Subject::Compilation);
    r.wrongMedium = wrongMedia(kind);
    r.debugCode = dataDisc(kind).debugText;
    return r;
}

MediumRefusals sourceRefusals()
{
    MediumRefusals r;
    r.noDisc = noDiscToCopy();
    return r;
}

AlertRequest copyCountQuestion()
{
    AlertRequest r;
    r.messageText = QStringLiteral("Enter Number of Copies");
    r.informativeText = QString();
    r.buttons = QStringList{QStringLiteral("OK"), QStringLiteral("Cancel")};
    r.hasInput = true;
    r.inputDefault = QStringLiteral("1");
    return r;
}

QString burnCopyButton(int copiesDone, int numberOfCopies)
{
    return QStringLiteral("Burn Copy %1 of %2").arg(copiesDone + 1).arg(numberOfCopies);
}

AlertRequest insertBlankQuestion(int copiesDone, int numberOfCopies)
{
    AlertRequest r;
    r.messageText = QStringLiteral("Insert a writable media and click OK or click Cancel to stop the media duplication.");
    r.informativeText = r.messageText;
    r.buttons = QStringList{burnCopyButton(copiesDone, numberOfCopies), QStringLiteral("Cancel")};
    r.warningStyle = true;
    return r;
}

QString copyNotWritten(int copyNumber, int numberOfCopies)
{
    return QStringLiteral("Copy %1 of %2 could not be written.").arg(copyNumber).arg(qMax(copyNumber, numberOfCopies));
}

AlertRequest stagingFailed(const QStringList &errors)
{
    AlertRequest r;
    r.messageText = QStringLiteral("The folders could not be copied for the disc.");
    QStringList shown = errors.mid(0, 5);
    if (errors.size() > shown.size())
        shown << QStringLiteral("… and %1 more.").arg(errors.size() - shown.size());
    r.informativeText = QStringLiteral("Nothing was written to the disc.\n%1").arg(shown.join(QLatin1Char('\n')));
    return r;
}

AlertRequest foldersGone(const QStringList &folders)
{
    AlertRequest r;
    r.messageText = QStringLiteral("A folder on the list is no longer there.");
    r.informativeText = QStringLiteral("Nothing was written to the disc. Put the folder back, or take it off the "
                                       "list, and burn again.\n%1")
                            .arg(folders.join(QLatin1Char('\n')));
    return r;
}

} // namespace ImageMessages
