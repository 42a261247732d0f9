// CGdiObject: base of what can be selected into a device context.
#pragma once
#include "platform/canvas/gdi_types.h"

/// A pen, brush, font, bitmap or region. A device context copies what it needs when an object is selected, so
/// an object may be changed, deleted or destroyed while selected without harm to the context's drawing; only
/// the pointer that the next SelectObject hands back must not be used then.
class CGdiObject {
public:
    CGdiObject() = default;
    virtual ~CGdiObject() = default;
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    /// Takes the object back to its state at birth. 0 if it had not been created.
    BOOL DeleteObject();

    /// Turns into a copy of the stock object of this number; 0 if it is of another kind.
    virtual BOOL CreateStockObject(int) { return 0; }

    bool IsCreated() const { return m_bCreated; }
    HGDIOBJ GetSafeHandle() { return m_bCreated ? this : nullptr; }

protected:
    virtual void Reset() = 0;  // the state at birth, m_bCreated apart

    bool m_bCreated = false;  // a Create operation has succeeded
};

/// Stock pens, brushes and fonts; they live as long as the process. Null for other numbers.
CGdiObject* GetStockObject(int index);
