#pragma once
// The adapter through which a Qt application shows a node tree: a QWidget
// that holds the root node, gives it its whole area, shows it, and follows
// its own resizes.

#include "zephui/UI_Node.h"
#include "zephui/zephui_export.h"

#include <QWidget>

namespace zephui
{

class ZEPHUI_EXPORT NodeHostWidget : public QWidget
{
    Q_OBJECT
public:
    explicit NodeHostWidget(UI_NodePtr root = nullptr, QWidget* parent = nullptr);
    ~NodeHostWidget() override;

    // Replaces the hosted node; the former one leaves the widget tree alive.
    void SetRootNode(UI_NodePtr root);
    UI_Node* GetRootNode() const { return root.get(); }

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Detach();
    UI_NodePtr root;
};

} // namespace zephui
