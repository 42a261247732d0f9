// Plates under the pointer, and picking several of them.
#pragma once
#include <vector>

#include "geometry/fpoint.h"
#include "view/dt_work_ex.h"

class CMianGouJian;
class CTvoHostDataBase;

/// The smallest visible plate about a place; null when there is none.
CMianGouJian* PlateAt(CTvoHostDataBase& db, const CFPoint& at);

/// Picks plates by clicks inside them, which snap to nothing, or by typed places; a second click takes one
/// out again. A right click ends the picking, and the function gets what was picked, by identity.
class PlatePickCommand : public CDtWorkEx {
public:
    using EndFunction = void (*)(CTvoHostDataBase& db, const std::vector<CMianGouJian*>& plates,
                                 CDtWorkEx& command);

    PlatePickCommand(const char* name, const char* prompt, EndFunction end);
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnMouseNotify(unsigned event, unsigned keys, CFPoint point) override;
    unsigned OnQueryState() override;

private:
    void Toggle(const CFPoint& at);

    EndFunction m_end;
};

/// The place that a typed text tells; false when it is none.
bool ReadPlace(const char* text, CFPoint& at);
