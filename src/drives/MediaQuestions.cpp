#include "drives/MediaQuestions.h"

#include <QPointer>

#include "app/Alerts.h"

MediaQuestions::MediaQuestions(DriveBackend &backend, Alerts &alerts, std::function<bool()> debugMode,
                               std::function<Object_Optical_Drive()> currentDrive, QObject *parent)
    : QObject(parent), m_backend(backend), m_alerts(alerts), m_debugMode(std::move(debugMode)),
      m_currentDrive(std::move(currentDrive))
{
}

void MediaQuestions::ask(std::function<void(const MediaStatus &)> answer)
{
    const Object_Optical_Drive drive = m_currentDrive ? m_currentDrive() : Object_Optical_Drive{};
    QPointer<MediaQuestions> self(this);
    m_backend.queryStatus(drive, [self, answer = std::move(answer)](const MediaStatus &status) {
        if (self)
            answer(status);
    });
}

void MediaQuestions::explainNo(const MediaStatus &status, const QString &warning)
{
    if (!m_debugMode || !m_debugMode())
        return;
    AlertRequest request;
    request.messageText = status.text;
    request.informativeText = warning;
    request.buttons = QStringList{QStringLiteral("OK")};
    m_alerts.show(request);
}

void MediaQuestions::IsDriveEmpty(std::function<void(bool)> done)
{
    ask([done = std::move(done)](const MediaStatus &status) {
        if (done)
            done(status.answers.driveEmpty);
    });
}

void MediaQuestions::IsMediaOneTimeWritable(std::function<void(bool)> done)
{
    ask([this, done = std::move(done)](const MediaStatus &status) {
        const bool yes = status.answers.oneTimeWritable;
        if (!yes)
            explainNo(status, QStringLiteral("Warning 0030."));
        if (done)
            done(yes);
    });
}

void MediaQuestions::IsMediaReWritable(std::function<void(bool)> done)
{
    ask([this, done = std::move(done)](const MediaStatus &status) {
        const bool yes = status.answers.reWritable;
        if (!yes)
            explainNo(status, QStringLiteral("Warning 0040."));
        if (done)
            done(yes);
    });
}

void MediaQuestions::TypeOfMediaInTheDrive(std::function<void(QString)> done)
{
    ask([done = std::move(done)](const MediaStatus &status) {
        if (done)
            done(status.answers.family);
    });
}

void MediaQuestions::checkMedium(const QString &family, std::function<void(MediumCheck)> done)
{
    QPointer<MediaQuestions> self(this);
    auto finish = [done](MediumCheck::Result result, const QString &detected = QString()) {
        MediumCheck check;
        check.result = result;
        check.detectedFamily = detected;
        if (done)
            done(check);
    };
    auto askFamily = [self, family, finish] {
        if (family.isEmpty()) {
            finish(MediumCheck::Ok);
            return;
        }
        self->TypeOfMediaInTheDrive([family, finish](const QString &detected) {
            finish(detected == family ? MediumCheck::Ok : MediumCheck::WrongFamily, detected);
        });
    };
    IsDriveEmpty([self, finish, askFamily](bool empty) {
        if (empty) {
            finish(MediumCheck::NoDisc);
            return;
        }
        self->IsMediaOneTimeWritable([self, finish, askFamily](bool writable) {
            if (writable) {
                askFamily();
                return;
            }
            self->IsMediaReWritable([finish, askFamily](bool rewritable) {
                if (!rewritable) {
                    finish(MediumCheck::NotWritable);
                    return;
                }
                askFamily();
            });
        });
    });
}
