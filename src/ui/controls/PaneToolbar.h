// The toolbar of a window with panes: centred items, an icon over a label each, exactly one selected. It asks its
// delegate which items there are and announces each one before it is added. Main thread only.
#pragma once

#include <QHash>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <optional>

#include "ui/controls/ChoiceButton.h"

namespace qm {

struct ToolbarItem {
    QString identifier;
    QString label;
    QImage image;
    QString toolTip = {};
    QString action = {};  // name of the action sent when the user chooses the item
};

class PaneToolbar;

class ToolbarDelegate {
public:
    virtual ~ToolbarDelegate() = default;

    // Each answers nothing for a toolbar that is not the delegate's own.
    virtual std::optional<QStringList> toolbarDefaultItemIdentifiers(const PaneToolbar* toolbar) const = 0;
    virtual std::optional<QStringList> toolbarAllowedItemIdentifiers(const PaneToolbar* toolbar) const = 0;
    virtual std::optional<QStringList> toolbarSelectableItemIdentifiers(const PaneToolbar* toolbar) const = 0;
    virtual ToolbarItem* toolbarItemForItemIdentifier(const PaneToolbar* toolbar, const QString& identifier,
                                                      bool willBeInserted) const = 0;

    virtual void toolbarWillAddItem(ToolbarItem& item) const = 0;
};

class PaneToolbar : public QWidget {
    Q_OBJECT

public:
    explicit PaneToolbar(QWidget* parent = nullptr);

    void setIdentifier(const QString& identifier) { m_identifier = identifier; }
    QString identifier() const { return m_identifier; }

    void setDelegate(ToolbarDelegate* delegate) { m_delegate = delegate; }
    void addDefaultItems();  // those that the delegate names, in its order

    void setSelectedItemIdentifier(const QString& identifier);  // sends nothing
    QString selectedItemIdentifier() const;
    QStringList itemIdentifiers() const { return m_order; }
    QAbstractButton* itemButton(const QString& identifier) const;  // null if there is none

signals:
    void itemChosen(const QString& action);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void addItem(const ToolbarItem& item, bool selectable);
    void putFirstInTabOrder();

    QString m_identifier;
    ToolbarDelegate* m_delegate = nullptr;
    QStringList m_order;
    QHash<QString, ChoiceButton*> m_buttons;
};

}  // namespace qm
