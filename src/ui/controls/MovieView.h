// Shows the pictures of a movie, centred in their own proportions on black. It looks for a new one a little more often
// than a screen does, and only while it is visible; the movie makes pictures only for as long as it looks. The movie
// must be taken away with setMovie() before it goes. Main thread only.
#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

#include "engine/api/QTMovie.h"

namespace qm {

class MovieView : public QWidget {
    Q_OBJECT

public:
    explicit MovieView(QWidget* parent = nullptr);
    ~MovieView() override;

    void setMovie(QTMovie* movie);  // null for none
    QTMovie* movie() const { return m_movie; }

    // Where the picture is painted, in the view's coordinates; empty without one.
    QRectF pictureRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void watch(bool watch);
    void look();

    QTMovie* m_movie = nullptr;
    std::shared_ptr<const VideoPicture> m_picture;
    QTimer m_timer{this};
};

}  // namespace qm
