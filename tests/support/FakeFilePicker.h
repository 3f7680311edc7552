#pragma once
#include <QList>
#include <QQueue>

#include "platform/FilePicker.h"

// Records every panel and answers from a queue (empty queue = Cancel).
class FakeFilePicker : public FilePicker {
public:
    QStringList pick(const PickRequest &request) override
    {
        requests.append(request);
        return answers.isEmpty() ? QStringList() : answers.dequeue();
    }
    QList<PickRequest> requests;
    QQueue<QStringList> answers;
};
