// TComponentInspector: a property grid over Qt's meta-object properties.
//
// Names and values in two columns, by category or in alphabetical order.
// Enumerations edit as drop-downs of their names, sets as check lists,
// booleans as check boxes, colours with a swatch, a name list and a picker;
// fonts, pens, brushes and sub-objects expand into their own properties;
// numbers are validated; read-only properties are shown greyed. Multi-line
// strings, pictures, fonts, colours, user data and the layer collection also
// open a modal editor (double-click the value, or OpenEditor).
//
// Linked to a canvas (SetCanvas) it follows the selection: the selected
// shapes, or the canvas itself when nothing is selected. An edit of shapes is
// one "ACT_CHANGE" undo step and repaints; with several objects, the grid
// shows the properties they share and an edit sets it on all of them as one
// step. A value a setter refuses is reported (OnError, a message box by
// default) and the old value is kept.
#pragma once

#include "platform/component.h"

#include <QVariant>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace faroven {

class TMyCAD;
struct TPropertyNode;

class TComponentInspector : public TComponentBase<QWidget> {
    Q_OBJECT
    Q_PROPERTY(bool SortByCategory READ SortByCategory WRITE SetSortByCategory)
public:
    explicit TComponentInspector(QWidget* owner = nullptr);
    ~TComponentInspector() override;

    // The canvas whose selection the grid follows; nullptr to stop following.
    TMyCAD* Canvas() const;
    void SetCanvas(TMyCAD* canvas);

    // Shows one object's properties, or those several objects share.
    void SetObjects(const std::vector<QObject*>& objects);
    void SetObject(QObject* object) { SetObjects(object ? std::vector<QObject*>{object} : std::vector<QObject*>{}); }
    std::vector<QObject*> Objects() const;

    // Grouped by category (true, the default) or in one alphabetical list.
    bool SortByCategory() const;
    void SetSortByCategory(bool byCategory);
    // The spelling uic calls for a form that sets the property.
    void setSortByCategory(bool byCategory) { SetSortByCategory(byCategory); }

    // Paths of the rows shown, in grid order: "Caption", "Pen", "Pen.Color".
    QStringList PropertyPaths() const;
    bool HasProperty(const QString& path) const;
    bool IsReadOnly(const QString& path) const;
    // The value of the first object, and its text as the grid shows it (empty
    // for a value the objects do not share).
    QVariant PropertyValue(const QString& path) const;
    QString PropertyText(const QString& path) const;

    // Sets a value exactly as an edit in the grid does. False, with
    // LastError() saying why, when the value is invalid or refused; then
    // every object keeps its old value and no undo step is left.
    bool SetPropertyValue(const QString& path, const QVariant& value);
    // Sets a value from text as typed into the grid (numbers, colour names,
    // enumeration names, "[fsBold,fsItalic]" for sets).
    bool SetPropertyText(const QString& path, const QString& text);
    QString LastError() const;

    // Opens the modal editor of a property (multi-line strings, pictures,
    // fonts, colours, user data, layers); true when it changed something.
    bool OpenEditor(const QString& path);
    bool HasEditor(const QString& path) const;

    // Rereads every value shown (after the objects changed elsewhere).
    void RefreshValues();

    // The node of a path, or nullptr (valid until the objects change).
    const TPropertyNode* PropertyNode(const QString& path) const;

    QTreeWidget* Grid() const;
    // The grid's row of a path, or nullptr.
    QTreeWidgetItem* ItemOf(const QString& path) const;

    // Reports a refused or invalid value; a message box when not set.
    std::function<void(const QString& message)> OnError;

signals:
    // A property of the objects shown was changed through the inspector.
    void propertyChanged(const QString& path);

protected:
    // Keeps the names readable as the grid grows or shrinks.
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
    friend struct Private;
};

}  // namespace faroven
