#pragma once

class QKeyEvent;

// 1 to 16 for F1 to F16, otherwise 0. Unless allowModifiers, an F-key held with Shift, Control,
// Alt or Meta is no store key either (the keypad flag does not count).
int FunctionKeyForEvent(const QKeyEvent *event, bool allowModifiers);
