// A value field that is a button: the current value as its title, right-aligned with steady digits, and a small reset
// arrow at the left. Main thread only.
#pragma once

#include <optional>

#include "ui/controls/FaceButton.h"
#include "ui/controls/TextAttributes.h"

namespace qm {

class TitleButton : public FaceButton {
    Q_OBJECT

public:
    explicit TitleButton(const QString& title = {}, QWidget* parent = nullptr);

    void setPlainTitle(const QString& title);  // drops an earlier attributed style
    void setAttributedTitle(const QString& title, const TextAttributes& attributes);
    QString title() const { return text(); }
    std::optional<TextAttributes> titleAttributes() const { return m_attributes; }

    void setTight(bool tight);  // smaller margins, for the narrow fields

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::optional<TextAttributes> m_attributes;
    bool m_tight = false;
};

}  // namespace qm
