#include "ui/controls/ControlAccess.h"

#include <QAccessibleWidget>
#include <cmath>

#include "ui/controls/Card.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/FaceButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/InputLevels.h"
#include "ui/controls/MeterView.h"
#include "ui/controls/MovieView.h"
#include "ui/controls/NoticeLine.h"
#include "ui/controls/ScaleSample.h"
#include "ui/controls/ScaleView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/ValueLabel.h"
#include "ui/controls/WaveformStrip.h"

namespace qm {

namespace {

// A slider says its value in words as its description too: the bus has no other place for words beside a number.
class SliderAccess : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SliderAccess(Slider* slider) : QAccessibleWidget(slider, QAccessible::Slider), m_slider(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        const bool speaks = kind == QAccessible::Value || kind == QAccessible::Description;
        return speaks ? m_slider->spokenValue() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return m_slider->value(); }
    QVariant minimumValue() const override { return m_slider->minimum(); }
    QVariant maximumValue() const override { return m_slider->maximum(); }
    QVariant minimumStepSize() const override { return m_slider->step(); }

    // One step more or less is taken as that step, so that it can lead across a gap.
    void setCurrentValue(const QVariant& value) override {
        const double steps = (value.toDouble() - m_slider->value()) / m_slider->step();
        const bool isOneStep = std::abs(std::abs(steps) - 1) < 0.01;
        isOneStep ? m_slider->stepByUser(steps > 0 ? 1 : -1) : m_slider->moveByUser(value.toDouble());
    }

private:
    Slider* m_slider;
};

// Whether a button is on is said in its description, too, because some buses do not carry the checkable state.
class ButtonAccess : public QAccessibleWidget {
public:
    explicit ButtonAccess(FaceButton* button) : QAccessibleWidget(button, QAccessible::Button), m_button(button) {}

    QAccessible::Role role() const override {
        if (!m_button->isCheckable()) return QAccessible::Button;
        return m_button->autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = m_button->isDown();
        state.checkable = m_button->isCheckable() || m_button->onState().has_value();
        state.checked = m_button->isChecked() || m_button->onState().value_or(false);
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name && m_button->accessibleName().isEmpty()) return m_button->text();
        const QString state = onOrOff();
        if (kind == QAccessible::Value) return state;
        if (kind == QAccessible::Description && !state.isEmpty())
            return state + QStringLiteral(". ") + QAccessibleWidget::text(kind);
        return QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override { return QStringList(pressAction()) + QAccessibleWidget::actionNames(); }

    // Queued, because the action may open a dialog, and the tool waits for the answer to its call.
    void doAction(const QString& name) override {
        if (name == pressAction())
            QMetaObject::invokeMethod(m_button, &QAbstractButton::click, Qt::QueuedConnection);
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QString onOrOff() const {
        if (!m_button->onState()) return {};
        return *m_button->onState() ? FaceButton::tr("on") : FaceButton::tr("off");
    }

    FaceButton* m_button;
};

// A text whose control has a name of its own says the name, and what it shows as its value.
template <typename Label>
class TextAccess : public QAccessibleWidget {
public:
    explicit TextAccess(Label* label) : QAccessibleWidget(label, QAccessible::StaticText), m_label(label) {}

    QString text(QAccessible::Text kind) const override {
        const bool named = !m_label->accessibleName().isEmpty();
        if (kind == QAccessible::Name) return named ? m_label->accessibleName() : m_label->text();
        if (kind == QAccessible::Value || kind == QAccessible::Description) return named ? m_label->text() : QString();
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = state.invisible || text(QAccessible::Name).isEmpty();  // says nothing now
        return state;
    }

private:
    Label* m_label;
};

// A notice to screen readers, which read it as soon as it is there, and the button that it may have.
class StatusAccess : public QAccessibleWidget {
public:
    explicit StatusAccess(NoticeLine* line) : QAccessibleWidget(line, QAccessible::Notification), m_line(line) {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
        return m_line->text().isEmpty() ? NoticeLine::tr("Message") : m_line->text();
    }

    int childCount() const override { return m_line->offersAct() ? 1 : 0; }
    QAccessibleInterface* child(int index) const override {
        return index < childCount() ? QAccessible::queryAccessibleInterface(m_line->button()) : nullptr;
    }

private:
    NoticeLine* m_line;
};

// A picture, whose children are hidden from assistive tools.
class PictureAccess : public QAccessibleWidget {
public:
    explicit PictureAccess(QWidget* view) : QAccessibleWidget(view, QAccessible::Graphic) {}

    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
};

// A slider with its scale is the slider: the figures below it repeat what its value says.
class ScaleAccess : public QAccessibleWidget {
public:
    explicit ScaleAccess(ScaleView* scale) : QAccessibleWidget(scale, QAccessible::Client), m_scale(scale) {}

    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_scale->slider()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child && child->object() == m_scale->slider() ? 0 : -1;
    }

private:
    ScaleView* m_scale;
};

// Everything else: a panel if it is a window, otherwise a grouping.
class PlainAccess : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override {
        return widget()->isWindow() ? QAccessible::Dialog : QAccessibleWidget::role();
    }
};

QAccessibleInterface* accessFor(const QString& className, QObject* object) {
    if (auto* slider = qobject_cast<Slider*>(object)) return new SliderAccess(slider);
    if (auto* button = qobject_cast<FaceButton*>(object)) return new ButtonAccess(button);
    if (auto* label = qobject_cast<TextLabel*>(object)) return new TextAccess(label);
    if (auto* label = qobject_cast<TimeLabel*>(object)) return new TextAccess(label);
    if (auto* value = qobject_cast<ValueLabel*>(object)) return new TextAccess(value);
    if (auto* line = qobject_cast<NoticeLine*>(object)) return new StatusAccess(line);
    if (auto* tag = qobject_cast<StateTag*>(object)) return new TextAccess(tag);
    if (auto* cap = qobject_cast<KeyCap*>(object)) return new TextAccess(cap);
    if (auto* scale = qobject_cast<ScaleView*>(object)) return new ScaleAccess(scale);
    if (auto* card = qobject_cast<Card*>(object)) return new QAccessibleWidget(card, QAccessible::Grouping);
    const bool picture = qobject_cast<WaveformStrip*>(object) || qobject_cast<ImageView*>(object) ||
                         qobject_cast<InputLevels*>(object) || qobject_cast<ScaleSample*>(object) ||
                         qobject_cast<MeterView*>(object) || qobject_cast<MovieView*>(object);
    if (picture) return new PictureAccess(static_cast<QWidget*>(object));
    return className == u"QWidget" ? new PlainAccess(static_cast<QWidget*>(object)) : nullptr;
}

}  // namespace

void makeControlsAccessible() {
    static const bool installed = (QAccessible::installFactory(accessFor), true);
    Q_UNUSED(installed)
}

}  // namespace qm
