#pragma once
// The box layout of an arrangement's widget. After each pass it writes the
// places it gave the widgets back into their nodes' rectangles, which lays
// out nested arrangements at once even while nothing is shown (Qt would
// wait for the widgets' resize events until they show).

#include <zephui/UI_Node.h>

#include <QBoxLayout>

namespace zepheve
{

class ArrangementLayout : public QBoxLayout
{
public:
    // owner: the node whose widget holds this layout.
    ArrangementLayout(Direction direction, zephui::UI_Node* owner, QWidget* widget);

    // Adds the child node's widget. grow: the directions in which the child
    // takes spare room; in the others it keeps its natural size and sits by
    // `alignment`.
    void AddNode(zephui::UI_Node* child, Qt::Orientations grow, Qt::Alignment alignment);

    void setGeometry(QRect const& rect) override;

private:
    zephui::UI_Node* owner;
};

// The layout of a node's widget, if it is an arrangement's.
ArrangementLayout* LayoutOf(zephui::UI_Node const* node);

} // namespace zepheve
