// platform/desktop/CComposing.h
// Whether an input method is at work in a field.

#ifndef DESKTOP_CCOMPOSING_H
#define DESKTOP_CCOMPOSING_H

class QEvent;

/// While an input method holds text that is not in the field yet, keys that reach the program all the same (Enter takes
/// what is composed, Esc drops it, the arrows choose) mean that text and nothing else.
class CComposing
{
public:
    /// To be told of every event that the field gets.
    void Watch(const QEvent& Event);
    bool IsOn() const { return m_isOn; }

private:
    bool m_isOn = false;
};

#endif
