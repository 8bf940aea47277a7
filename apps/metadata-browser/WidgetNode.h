#pragma once
// A node that shows a Qt widget: it lets a panel made of Qt widgets (a find
// box, a page chooser) sit inside a node view such as the splitter, and fill
// whatever rectangle the node is given.

#include <zephui/UI_SubView.h>

#include <QPointer>
#include <QVBoxLayout>
#include <QWidget>

namespace browser
{

class WidgetNode : public zephui::UI_SubView
{
public:
    explicit WidgetNode(QWidget* content) : content(content)
    {
        UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight |
                            zephui::kBindBottomEdgeToParentBottom);
        UI_Show(true);
    }

protected:
    QWidget* CreateWidget() override
    {
        QWidget* const own = UI_SubView::CreateWidget();
        auto* layout = new QVBoxLayout(own);
        layout->setContentsMargins(0, 0, 0, 0);
        if (content)
            layout->addWidget(content);
        return own;
    }

private:
    QPointer<QWidget> content;
};

} // namespace browser
