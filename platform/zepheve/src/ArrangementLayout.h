#pragma once
// The box layout of an arrangement's widget. After each pass it writes the
// places it gave the widgets back into their nodes' rectangles, which lays
// out nested arrangements at once even while nothing is shown (Qt would
// wait for the widgets' resize events until they show).

#include <zephui/UI_Node.h>

#include <QBoxLayout>
#include <QPointer>

#include <vector>

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
    // Places children again by whether the arrangements among them grow now:
    // an arrangement with a growing child grows across this one too.
    void RefreshAlignments();

    void setGeometry(QRect const& rect) override;

private:
    Qt::Alignment ItemAlignment(QWidget const* widget, Qt::Orientations grow) const;

    struct Placed
    {
        QPointer<QWidget> widget;
        Qt::Orientations grow;
    };
    zephui::UI_Node* owner;
    Qt::Alignment alignment;
    std::vector<Placed> placed;
};

// The layout of a node's widget, if it is an arrangement's.
ArrangementLayout* LayoutOf(zephui::UI_Node const* node);

} // namespace zepheve
