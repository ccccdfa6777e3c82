// platform/desktop/CComposing.cpp
// Whether an input method is at work in a field.

#include "platform/desktop/CComposing.h"

#include <QInputMethodEvent>

void CComposing::Watch(const QEvent& Event)
{
    if (Event.type() == QEvent::InputMethod)
        m_isOn = !static_cast<const QInputMethodEvent&>(Event).preeditString().isEmpty();
    else if (Event.type() == QEvent::FocusOut) // not every input method says that it gives up
        m_isOn = false;
}
