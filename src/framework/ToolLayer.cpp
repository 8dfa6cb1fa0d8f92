#include "ToolLayer.h"

ToolLayer::ToolLayer() {
    setFlag(ItemHasNoContents);
    setAcceptedMouseButtons(Qt::NoButton);
}
