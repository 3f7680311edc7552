#include "platform/ui/QtAlerts.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <QGridLayout>

AlertAnswer QtAlerts::show(const AlertRequest &request)
{
    QMessageBox box(m_parent);
    // The title says what the alert is about: its own, else its message.
    box.setWindowTitle(!request.title.isEmpty()         ? request.title
                       : !request.messageText.isEmpty() ? request.messageText
                                                        : QStringLiteral("Tamblo"));
    box.setWindowModality(Qt::ApplicationModal);
    box.setIcon(request.warningStyle ? QMessageBox::Warning : QMessageBox::Information);
    box.setText(request.messageText);
    box.setInformativeText(request.informativeText);
    box.setTextFormat(Qt::PlainText);
    box.setAccessibleName(request.messageText);
    box.setAccessibleDescription(request.informativeText);

    QList<QAbstractButton *> buttons;
    const QStringList titles = request.buttons.isEmpty() ? QStringList{QStringLiteral("OK")} : request.buttons;
    for (int i = 0; i < titles.size(); ++i) {
        // The first button is the default; a "Cancel" button answers Escape.
        const auto role = (titles[i] == QLatin1String("Cancel")) ? QMessageBox::RejectRole
                                                                  : QMessageBox::AcceptRole;
        QPushButton *b = box.addButton(titles[i], role);
        b->setAccessibleName(titles[i]);
        buttons << b;
        if (i == 0)
            box.setDefaultButton(b);
    }

    QLineEdit *field = nullptr;
    if (request.hasInput) {
        field = new QLineEdit(request.inputDefault, &box);
        field->setAccessibleName(request.messageText);
        field->setMinimumWidth(200);
        if (auto *grid = qobject_cast<QGridLayout *>(box.layout()))
            grid->addWidget(field, grid->rowCount(), 0, 1, grid->columnCount());
        field->selectAll();
        field->setFocus();
    }

    box.exec();
    AlertAnswer answer;
    answer.button = buttons.indexOf(box.clickedButton());
    if (field)
        answer.input = field->text();
    return answer;
}
