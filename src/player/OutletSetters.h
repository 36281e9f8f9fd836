// Writing to an outlet that may be absent: each function does nothing when its control is null. Main thread only.
#pragma once

#include <QLabel>
#include <QString>

#include "library/PlayListArrays.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/Outlets.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TextAttributes.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/TitleButton.h"

namespace qm {

inline void showImage(ImageView* view, const QString& name) {
    if (view) view->setImageName(name);
}

inline void showImage(ImageButton* button, const QString& name) {
    if (button) button->setImageName(name);
}

inline void showState(ImageButton* button, const QString& imageName, bool on) {
    if (button) button->showState(imageName, on);
}

inline void showValue(Slider* slider, double value) {
    if (slider) slider->setValue(value);
}

inline void showText(TimeLabel* label, const QString& text) {
    if (label) label->setText(text);
}

inline void showText(QLabel* label, const QString& text) {
    if (label) label->setText(text);
}

inline void showPlainTitle(TitleButton* button, const QString& title) {
    if (button) button->setPlainTitle(title);
}

inline void showAttributedTitle(TitleButton* button, const QString& title, const TextAttributes& attributes) {
    if (button) button->setAttributedTitle(title, attributes);
}

inline void reloadTable(PlayListView* table) {
    if (table) table->reloadData();
}

// The selected row of the play list; -1 when there is none, or none that the arrays know.
inline int selectedRow(const PlayListOutlet& outlet, const PlayListArrays& list) {
    const int row = outlet.playList ? outlet.playList->selectedRow() : -1;
    return row < list.count() ? row : -1;
}

}  // namespace qm
