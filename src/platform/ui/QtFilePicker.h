#pragma once
#include <QPointer>
#include <QWidget>

#include "platform/FilePicker.h"

class QFileDialog;

// Open panels as the platform draws them.
class QtFilePicker : public FilePicker {
public:
    explicit QtFilePicker(QWidget *parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget *parent) { m_parent = parent; }
    QStringList pick(const PickRequest &request) override;

    // The panel for a request, ready to run: title, mode, folder, filter.
    static void configure(QFileDialog &dialog, const PickRequest &request);
    // "Audio files (*.wma *.wav …)": the filter as the panel shows it;
    // empty when any file will do.
    static QString nameFilter(const PickRequest &request);
    // The panel's title: the request's, else its message, else what it chooses.
    static QString title(const PickRequest &request);

private:
    QPointer<QWidget> m_parent;
};
