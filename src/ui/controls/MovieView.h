// Shows the pictures of a movie, centred in their own proportions on black. The movie tells it when the next one is
// due, and makes pictures, in the size of the view, only while the view is visible. The movie must be taken away with
// setMovie() before it goes. Main thread only.
#pragma once

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
    void resizeEvent(QResizeEvent* event) override;

private:
    void watch(bool watch);
    void showPicture();

    QTMovie* m_movie = nullptr;
    std::shared_ptr<const VideoPicture> m_picture;
};

}  // namespace qm
