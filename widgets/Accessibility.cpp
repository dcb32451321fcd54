// SPDX-License-Identifier: MIT

#include "widgets/Accessibility.h"

#include "widgets/CElidedLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QProgressBar>
#include <QVariant>

namespace {

constexpr char ToldPercent[] = "vx440ToldPercent";

bool IsBusy(const QProgressBar& bar)
{
    return bar.minimum() >= bar.maximum();
}

int Percent(const QProgressBar& bar)
{
    const double whole = double(bar.maximum()) - bar.minimum();
    return int(100 * (double(bar.value()) - bar.minimum()) / whole);
}

class BarInterface : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit BarInterface(QProgressBar& bar)
        : QAccessibleWidget(&bar, QAccessible::ProgressBar)
        , bar(bar)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = IsBusy(bar);
        state.readOnly = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value) {
            return IsBusy(bar) ? QStringLiteral("busy") : bar.text();
        }
        return QAccessibleWidget::text(kind);
    }
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        const bool hasValue = type == QAccessible::ValueInterface && !IsBusy(bar);
        return hasValue ? static_cast<QAccessibleValueInterface*>(this)
                        : QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return bar.value(); }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return bar.maximum(); }
    QVariant minimumValue() const override { return bar.minimum(); }
    QVariant minimumStepSize() const override { return 1; }

private:
    const QProgressBar& bar;
};

class StatusInterface : public QAccessibleWidget
{
public:
    explicit StatusInterface(CElidedLabel& label)
        : QAccessibleWidget(&label, QAccessible::AlertMessage)
        , label(label)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? label.text() : QAccessibleWidget::text(kind);
    }

private:
    const CElidedLabel& label;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object)
{
    if (auto* const bar = qobject_cast<QProgressBar*>(object)) {
        return new BarInterface(*bar);
    }
    if (auto* const label = qobject_cast<CElidedLabel*>(object)) {
        return new StatusInterface(*label);
    }
    return nullptr;
}

// Whether the listener has been told this percent of the bar already.
bool IsTold(QProgressBar& bar)
{
    if (IsBusy(bar)) {
        return true;
    }
    const QVariant percent = Percent(bar);
    const bool told = bar.property(ToldPercent) == percent;
    bar.setProperty(ToldPercent, percent);
    return told;
}

QAccessible::UpdateHandler nextHandler = nullptr; // null: the platform's

void PassOn(QAccessibleEvent* event)
{
    auto* const bar = qobject_cast<QProgressBar*>(event->object());
    if (bar != nullptr && event->type() == QAccessible::ValueChanged && IsTold(*bar)) {
        return;
    }
    QAccessible::installUpdateHandler(nextHandler);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(PassOn);
}

} // namespace

void InstallAccessibility()
{
    QAccessible::installFactory(MakeInterface);
    nextHandler = QAccessible::installUpdateHandler(PassOn);
}
