// The bars of one channel: level indicators that only show, found by their tags, in a view that can be turned.
// Main thread only.
#pragma once

#include <QWidget>

namespace qm {

// A bar of cells, one for each unit of its range from 0 to 20. It grows to the right, and with the view that holds it
// turned, in the direction that right has become.
class LevelIndicator : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int tag READ tag)
    Q_PROPERTY(float floatValue READ floatValue WRITE setFloatValue)

public:
    static constexpr int kCells = 20;
    static constexpr int kThickness = 17;  // pixels

    LevelIndicator(int tag, QWidget* parent, int thickness = kThickness);

    int tag() const { return m_tag; }
    float floatValue() const { return m_value; }
    void setFloatValue(float value);  // as given; what lies outside the range shows no cell or all of them
    int litCells() const { return cellsOf(m_value); }
    void setPeakValue(float value);  // the one cell where it ends is lit, too

    void setQuarterTurns(int turns) { m_turns = turns; }
    QSize uprightSize() const;  // before any turn

protected:
    void paintEvent(QPaintEvent*) override;

private:
    static int cellsOf(float value);
    QRect placeOfCell(int cell) const;
    void updateCells(int one, int other);

    const int m_tag;
    const int m_thickness;
    float m_value = 0;
    float m_peak = 0;
    int m_turns = 0;
};

// Four indicators one below the other, tagged 3, 2, 1, 0 from the top. Turned by 90 degrees, which is to the left, they
// stand side by side in the same order and grow upward.
class MeterView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double frameRotation READ frameRotation WRITE setFrameRotation)

public:
    explicit MeterView(QWidget* parent = nullptr);

    double frameRotation() const { return m_rotation; }
    void setFrameRotation(double degrees);          // shown in quarter turns, the nearest
    LevelIndicator* viewWithTag(int wanted) const;  // null if there is none

private:
    void layOut();

    double m_rotation = 0;
};

}  // namespace qm
