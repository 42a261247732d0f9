// Ready-made commands: one line of text, one selection, the text height.
#pragma once
#include "platform/containers.h"
#include "platform/string.h"
#include "view/dt_work_ex.h"

class CGouJianEx;
class CTvoViewMgr;

/// Asks for one line of text and gives it to a function.
class CCmdSimpleInput : public CDtWorkEx {
public:
    using EndFunction = void (*)(CTvoDataBase* db, CTvoViewMgr* view, CString text);

    CCmdSimpleInput(CTvoDataBase* db, CTvoViewMgr* view);
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnQueryState() override;
    void OnComplete() override;

    CString m_strInput;
    int m_bDone = 0;
    EndFunction m_pEnd = nullptr;
    CString m_strDefault;  // of an empty answer, with m_bHasDefault
};

/// Asks for a selection and gives it to a function.
class CCmdSimpleSelect : public CDtWorkEx {
public:
    using EndFunction = void (*)(CTvoDataBase* db, CTvoViewMgr* view, CArray<CGouJianEx*, CGouJianEx*>& objects);
    /// 0 refuses the object, for the reason in `error`.
    using CheckFunction = int (*)(CTvoDataBase* db, CGouJianEx* object, CString& error);

    CCmdSimpleSelect(CTvoDataBase* db, CTvoViewMgr* view, unsigned char filter, int kind);
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnQueryState() override;
    void OnComplete() override;  // calls the function, not the base

    EndFunction m_pEnd = nullptr;
    CheckFunction m_pCheck = nullptr;
    unsigned char m_byteType;                         // the filter
    int m_bDone = 0;
    CArray<CGouJianEx*, CGouJianEx*> m_arrObject;     // what was selected; borrowed
};

/// Sets a text height given in metres: the view's, or that of all texts of the model.
class CCmdSetTextHeight : public CDtWorkEx {
public:
    CCmdSetTextHeight(CTvoDataBase* db, CTvoViewMgr* view, int bView);
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    unsigned OnQueryState() override;

    int m_bDone = 0;
    int m_bView;
};
