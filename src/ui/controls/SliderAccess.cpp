#include "ui/controls/SliderAccess.h"

#include <QAccessibleWidget>

#include "ui/controls/Slider.h"

namespace qm {

namespace {

class SliderAccess : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SliderAccess(Slider* slider) : QAccessibleWidget(slider, QAccessible::Slider), m_slider(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? m_slider->spokenValue() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return m_slider->value(); }
    QVariant minimumValue() const override { return m_slider->minimum(); }
    QVariant maximumValue() const override { return m_slider->maximum(); }
    QVariant minimumStepSize() const override { return m_slider->step(); }
    void setCurrentValue(const QVariant& value) override { m_slider->moveByUser(value.toDouble()); }

private:
    Slider* m_slider;
};

QAccessibleInterface* sliderAccessFor(const QString&, QObject* object) {
    auto* slider = qobject_cast<Slider*>(object);
    return slider ? new SliderAccess(slider) : nullptr;
}

}  // namespace

void makeSlidersAccessible() {
    static const bool installed = (QAccessible::installFactory(sliderAccessFor), true);
    Q_UNUSED(installed)
}

}  // namespace qm
