#pragma once
#include <QPointer>
#include <QWidget>

#include "app/FilePicker.h"

// Open panels as the platform draws them.
class QtFilePicker : public FilePicker {
public:
    explicit QtFilePicker(QWidget *parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget *parent) { m_parent = parent; }
    QStringList pick(const PickRequest &request) override;

private:
    QPointer<QWidget> m_parent;
};
