#include "burn/TranscodeSequence.h"

#include <QPointer>
#include <QTimer>

#include "toolrun/ToolRunner.h"

TranscodeSequence::TranscodeSequence(ToolRunner &runner, QObject *parent) : QObject(parent), m_runner(runner) {}

void TranscodeSequence::start(const QList<Step> &steps, unsigned uTypeProgress)
{
    if (m_running)
        return;
    m_running = true;
    m_steps = steps;
    m_uTypeProgress = uTypeProgress;
    m_index = 0;
    // The first file starts from the event loop, as every later one does.
    QTimer::singleShot(0, this, [this] { next(); });
}

void TranscodeSequence::next()
{
    if (m_index >= m_steps.size()) {
        m_running = false;
        m_steps.clear();
        emit finished();
        return;
    }
    const int index = m_index;
    const Step step = m_steps.at(index);
    emit fileStarted(index, step.durationSeconds);

    QPointer<TranscodeSequence> self(this);
    m_runner.runWaited(
        step.command, m_uTypeProgress, step.durationSeconds,
        [self](float percent) {
            if (self)
                emit self->upperBar(percent);
        },
        [self, index] {
            if (!self)
                return;
            emit self->filesDone(index + 1);
            self->m_index = index + 1;
            self->next();
        });
}
