// The panes of the preferences window: its toolbar, whose delegate this is, and the window's change of size and content
// when another pane is chosen. Main thread only.
#pragma once

#include <QRect>
#include <memory>

#include "player/Uses.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/Outlets.h"
#include "ui/controls/PaneToolbar.h"

namespace qm {

// The frame that fits a pane of that size into the window: the same top left corner, with room for title bar and
// toolbar. Frames count y upwards from the bottom, in pixels.
QRect frameForPane(const QRect& frame, QSize pane);

class PreferencePanes : public ToolbarDelegate {
public:
    PreferencePanes(Uses<const PreferencePaneOutlets, const PreferencesWindowOutlet> outlets, ImageProvider images);

    // The step of start-up: makes the items and shows the general pane.
    void buildToolbar();

    void toggleGeneralPreferenceView();
    void toggleUpdatePreferenceView();
    void toggleAudioDefaultPreferenceView();

    // Puts the pane into the window in place of the one that is there. With `animate` the window takes a moment to
    // change its size and this returns afterwards; the user's input waits meanwhile.
    void setActivePrefView(QWidget* view, bool animate);

    std::optional<QStringList> toolbarDefaultItemIdentifiers(const PaneToolbar* toolbar) const override;
    std::optional<QStringList> toolbarAllowedItemIdentifiers(const PaneToolbar* toolbar) const override;
    std::optional<QStringList> toolbarSelectableItemIdentifiers(const PaneToolbar* toolbar) const override;
    ToolbarItem* toolbarItemForItemIdentifier(const PaneToolbar* toolbar, const QString& identifier,
                                              bool willBeInserted) const override;
    void toolbarWillAddItem(ToolbarItem& item) const override;

private:
    std::unique_ptr<ToolbarItem> makeItem(const char* identifier, const char* imageName, const char* label) const;
    std::optional<QStringList> identifiersFor(const PaneToolbar* toolbar) const;

    const PreferencePaneOutlets& m_outlets;
    const PreferencesWindowOutlet& m_prefsWindow;
    ImageProvider m_images;
    std::unique_ptr<ToolbarItem> generalToolbarItem;
    std::unique_ptr<ToolbarItem> updateToolbarItem;
    std::unique_ptr<ToolbarItem> audioDefaultToolbarItem;
};

}  // namespace qm
