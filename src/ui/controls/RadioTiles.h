// A row of radio tiles, each with a word and a swatch of the colour that it stands for; each has a tag. Main thread
// only.
#pragma once

#include <QColor>
#include <QString>
#include <vector>

#include "ui/controls/ChoiceButton.h"

namespace qm {

class RadioTile : public ChoiceButton {
    Q_OBJECT

public:
    RadioTile(const QString& text, const QColor& swatch, int tag, QWidget* parent);

    int tag() const { return m_tag; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QColor m_swatch;
    int m_tag;
};

class RadioTiles : public QWidget {
    Q_OBJECT

public:
    explicit RadioTiles(QWidget* parent = nullptr);

    RadioTile* addTile(const QString& text, const QColor& swatch, int tag);

    int selectedTag() const;          // -1 when no tile is selected
    void selectCellWithTag(int tag);  // sends nothing; without a tile of that tag the selection stays

signals:
    void action();  // the user chose a tile

private:
    std::vector<RadioTile*> m_tiles;
};

}  // namespace qm
