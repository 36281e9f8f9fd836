// The picture of the position slider: the sound's peaks, the A-B region with its flags, and the playhead. It is not a
// control. Positions are fractions of the track, 0 to 1. Main thread only. A moving playhead repaints only its columns.
#pragma once

#include <QWidget>
#include <optional>
#include <utility>
#include <vector>

namespace qm {

// Where a mark's flag stands, in pixels: its left edge, and whether it hangs to the right of its line.
struct FlagPlace {
    double left;
    bool hangsRight;
};

// Places the flags of two marks: inside the passage between them, or outside where it is too short for both. They
// never cover each other and stay inside the strip of that width.
std::pair<FlagPlace, FlagPlace> flagPlaces(double left, double right, double width);

class WaveformStrip : public QWidget {
    Q_OBJECT

public:
    explicit WaveformStrip(QWidget* parent = nullptr);

    void setPeaks(std::vector<float> peaks);  // 0 to 1, of equally long parts; empty draws the centre line
    const std::vector<float>& peaks() const { return m_peaks; }
    void setPosition(double position);
    double position() const { return m_position; }
    // Marks A and B, in either order; none draws neither region nor flags. While `looping` the sound outside them is
    // grey.
    void setLoop(std::optional<std::pair<double, double>> loop, bool looping = true);
    std::optional<std::pair<double, double>> loop() const { return m_loop; }
    void setActive(bool active);  // false: nothing loaded, no playhead
    bool isLooping() const { return m_looping; }
    bool isActive() const { return m_active; }

    QSize minimumSizeHint() const override { return {120, 40}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    double xOf(double fraction) const;
    int barCount() const;
    double sizeOfBar(int bar, int bars) const;
    QColor barColor(double fraction) const;
    void paintBars(QPainter& painter, const QRectF& clip) const;
    void paintMark(QPainter& painter, double x, const FlagPlace& place, QChar letter) const;
    void paintPlayhead(QPainter& painter) const;

    std::vector<float> m_peaks;
    double m_position = 0;
    double m_drawnPosition = 0;  // of the playhead on the screen, as near to the position as can be seen
    std::optional<std::pair<double, double>> m_loop;
    bool m_looping = false;
    bool m_active = false;
};

}  // namespace qm
