#include "SessionEndBlock.h"

class SessionEndBlock::Hold
{
};

SessionEndBlock::SessionEndBlock(QWidget* window, const QString& why)
{
    Q_UNUSED(window)
    Q_UNUSED(why)
}

SessionEndBlock::~SessionEndBlock() = default;
