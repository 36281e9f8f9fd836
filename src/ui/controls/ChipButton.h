// The small push button of the cards: a word, a number or a line icon. Lit while it names the present value.
// Main thread only.
#pragma once

#include <QColor>

#include "ui/controls/FaceButton.h"
#include "ui/controls/PushFace.h"

namespace qm {

class ChipButton : public FaceButton {
    Q_OBJECT

public:
    explicit ChipButton(const QString& text, const QString& iconName = {}, QWidget* parent = nullptr);

    void setLit(bool lit);
    bool isLit() const { return m_lit; }
    // Lit it says that it is on; otherwise nothing, for it cannot be switched off.
    std::optional<bool> onState() const override { return m_lit ? std::optional(true) : std::nullopt; }
    void setQuiet(bool quiet);  // no ground at rest
    void setTextSize(double pixels);
    void setInk(const QColor& color, int weight);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {22, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintGround(QPainter& painter, const QRectF& face) const;
    double contentWidth() const;

    QString m_iconName;
    QColor m_ink;
    bool m_lit = false;
    bool m_quiet = false;
};

// One tool of the toolbar: a line icon and a word, without ground at rest, aqua while its window is shown.
class ToolButton : public FaceButton {
    Q_OBJECT

public:
    ToolButton(const QString& text, const QString& iconName, QWidget* parent = nullptr);
    void setOn(std::optional<bool> on);  // off is none for a tool that switches nothing off
    bool isOn() const { return m_on.value_or(false); }
    std::optional<bool> onState() const override { return m_on; }
    double exactWidth() const;  // sizeHint() is this in whole pixels
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_iconName;
    std::optional<bool> m_on;
};

// A full-size push button; the primary one is filled with aqua, and there is at most one of those in a window.
class PushButton : public FaceButton {
    Q_OBJECT

public:
    explicit PushButton(const QString& text, bool primary = false, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    PushFace::Kind m_kind;
};

}  // namespace qm
