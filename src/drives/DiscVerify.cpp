#include "drives/DiscVerify.h"

#include <QRegularExpression>

namespace DiscVerify {

namespace {

// At most this many files are named on the sheet; Details has them all.
constexpr int NamedFiles = 10;

} // namespace

QString copyMismatchMessage(int copyNumber, int numberOfCopies)
{
    return QStringLiteral("Copy %1 of %2 was written, but verifying it found differences.")
        .arg(copyNumber)
        .arg(numberOfCopies);
}

QString messageFor(const VerifyResult &result)
{
    return result.outcome == VerifyResult::Outcome::NotChecked ? NotCheckedMessage : MismatchMessage;
}

OperationFailure failure(const QString &message, const VerifyResult &result)
{
    if (result.cancelled) {
        OperationFailure f = OperationFailure::cancellation(QStringLiteral("Verifying was cancelled."),
                                                            QStringLiteral("The disc was written, but it was not verified."));
        f.details = result.details;
        return f;
    }
    OperationFailure f;
    f.message = message;
    f.informative = result.what;
    f.details = result.details;
    return f;
}

ToolCommand md5CheckCommand(const QString &xorriso, const QString &device, const QStringList &discPaths)
{
    QStringList args{QStringLiteral("-drive_access"), QStringLiteral("shared:readonly"), QStringLiteral("-md5"),
                     QStringLiteral("on"), QStringLiteral("-indev"), device, QStringLiteral("-check_md5_r"),
                     QStringLiteral("SORRY")};
    args << (discPaths.isEmpty() ? QStringList{QStringLiteral("/")} : discPaths);
    args << QStringLiteral("--");
    return ToolCommand{xorriso, args};
}

QStringList mismatchedFiles(const QString &output)
{
    static const QRegularExpression line(QStringLiteral(R"(^MD5 MISMATCH: '(.*)'\s*$)"),
                                         QRegularExpression::MultilineOption);
    QStringList files;
    QRegularExpressionMatchIterator it = line.globalMatch(output);
    while (it.hasNext())
        files << it.next().captured(1);
    return files;
}

VerifyResult readMd5Check(const ToolVerdict &verdict)
{
    VerifyResult r;
    r.details = OperationFailure::fromVerdict(QString(), verdict).details;
    const QString out = verdict.output;
    const QStringList files = mismatchedFiles(out);
    if (!files.isEmpty()) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        QStringList named = files.mid(0, NamedFiles);
        QString what = files.size() == 1 ? QStringLiteral("This file on the disc does not match what was written:")
                                         : QStringLiteral("These files on the disc do not match what was written:");
        what += QLatin1Char('\n') + named.join(QLatin1Char('\n'));
        if (files.size() > named.size())
            what += QStringLiteral("\n… and %1 more").arg(files.size() - named.size());
        r.what = what;
        return r;
    }
    if (out.contains(QLatin1String("Checksum mismatch in System Area, Volume Descriptors, or directory tree"))
        || out.contains(QLatin1String("MD5 mismatch of image tree data"))) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        r.what = QStringLiteral("The disc's folders and file names do not match what was written.");
        return r;
    }
    if (out.contains(QLatin1String("Mismatch detected between file contents and MD5 checksums"))
        || out.contains(QLatin1String("MD5 MISMATCH"))) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        r.what = QStringLiteral("The disc's contents do not match what was written.");
        return r;
    }
    if (verdict.ok() && out.contains(QLatin1String("File contents and their MD5 checksums match."))) {
        r.outcome = VerifyResult::Outcome::Verified;
        return r;
    }
    r.outcome = VerifyResult::Outcome::NotChecked;
    if (out.contains(QLatin1String("Not a single file with MD5 checksum was found"))) {
        r.what = QStringLiteral("The disc holds no checksums to compare with.");
        return r;
    }
    r.what = ToolMessages::toolWords(verdict);
    if (r.what.isEmpty())
        r.what = QStringLiteral("The disc could not be read back.");
    return r;
}

bool saysVerifying(const QString &reports)
{
    return reports.contains(QLatin1String("Verifying")) || reports.contains(QLatin1String("DRStatusStateVerifying"));
}

bool failedWhileVerifying(const ToolVerdict &verdict)
{
    return !verdict.ok() && verdict.outcome != ToolVerdict::Outcome::FailedToStart
        && verdict.outcome != ToolVerdict::Outcome::Stopped && saysVerifying(verdict.output);
}

} // namespace DiscVerify
