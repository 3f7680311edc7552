#include "app/ui/AccessibleControls.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QRadioButton>

#include "toolrun/ui/DoubleProgressBar.h"

namespace {

QString withoutMnemonic(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&'))
            text.remove(i, 1);  // "&&" keeps one "&"
    }
    return text;
}

// A check box or radio button whose actions are clicks.
class AccessibleCheckButton : public QAccessibleWidget {
public:
    AccessibleCheckButton(QAbstractButton *button, QAccessible::Role role) : QAccessibleWidget(button, role)
    {
        addControllingSignal(QStringLiteral("toggled(bool)"));
    }

    QAbstractButton *button() const { return static_cast<QAbstractButton *>(widget()); }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name) {
            const QString name = widget()->accessibleName();
            return name.isEmpty() ? withoutMnemonic(button()->text()) : name;
        }
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.checkable = true;
        s.checked = button()->isChecked();
        return s;
    }

    QStringList actionNames() const override
    {
        return {QAccessibleActionInterface::toggleAction(), QAccessibleActionInterface::pressAction()};
    }

    void doAction(const QString &action) override
    {
        if (!widget()->isEnabled())
            return;
        if (action == QAccessibleActionInterface::toggleAction()
            || action == QAccessibleActionInterface::pressAction())
            button()->click();  // state, toggled and clicked, as under the pointer
    }

    QStringList keyBindingsForAction(const QString &) const override { return {}; }
};

// A progress bar that reports the range its owner set.
class AccessibleDoubleProgressBar : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleDoubleProgressBar(DoubleProgressBar *bar) : QAccessibleWidget(bar, QAccessible::ProgressBar) {}

    DoubleProgressBar *bar() const { return static_cast<DoubleProgressBar *>(widget()); }

    void *interface_cast(QAccessible::InterfaceType t) override
    {
        if (t == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(t);
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value) {
            if (bar()->isBusy())
                return QString();
            return QStringLiteral("%1 of %2").arg(bar()->doubleValue()).arg(bar()->maxDouble());
        }
        return QAccessibleWidget::text(t);
    }

    QVariant currentValue() const override { return bar()->isBusy() ? 0.0 : bar()->doubleValue(); }
    void setCurrentValue(const QVariant &) override {}  // shown, never set from outside
    QVariant maximumValue() const override { return bar()->isBusy() ? 0.0 : bar()->maxDouble(); }
    QVariant minimumValue() const override { return bar()->isBusy() ? 0.0 : bar()->minDouble(); }
    QVariant minimumStepSize() const override { return 0.0; }
};

QAccessibleInterface *describe(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    if (className == QLatin1String("QRadioButton"))
        return new AccessibleCheckButton(static_cast<QRadioButton *>(object), QAccessible::RadioButton);
    if (className == QLatin1String("QCheckBox"))
        return new AccessibleCheckButton(static_cast<QCheckBox *>(object), QAccessible::CheckBox);
    if (className == QLatin1String("DoubleProgressBar"))
        return new AccessibleDoubleProgressBar(static_cast<DoubleProgressBar *>(object));
    return nullptr;
}

} // namespace

namespace AccessibleControls {

void install()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(&describe);
}

} // namespace AccessibleControls
