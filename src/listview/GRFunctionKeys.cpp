#include "GRFunctionKeys.h"

#include <QKeyEvent>

int FunctionKeyForEvent(const QKeyEvent *event, bool allowModifiers)
{
    if (!event)
        return 0;
    const int key = event->key();
    if (key < Qt::Key_F1 || key > Qt::Key_F16)
        return 0;
    constexpr Qt::KeyboardModifiers held =
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!allowModifiers && (event->modifiers() & held))
        return 0;
    return key - Qt::Key_F1 + 1;
}
