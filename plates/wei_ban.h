// CWeiBan: walks the faces of the net ("WeiBan": enclosing a plate).
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "net/star.h"
#include "platform/containers.h"

class CGjNetLine;
class CGjNetNode;
class CGouJianEx;
class CGridDataBase;
class CMianGouJian;
class CTvoFrameBase;
class CWalkNet;

/// Finds the closed walks that run through the lines entered, and has the data base make a plate of each. It
/// sees the net without its thorns ("Ci": lines that no closed walk can use), walks each line once on either
/// side, always turning to the next line clockwise from the one it came by. A walk that runs anticlockwise is a
/// plate; a clockwise one is the outer contour of a connected piece of net.
///
/// Lives for one run: SetData, AddElement as often as needed, DoWeiBan; then the results are the caller's. The
/// net must not change meanwhile. What the walks need of the net is looked at when they come by, so that a run
/// for a few lines costs the same in a small and a big net.
class CWeiBan {
public:
    CWeiBan();
    CWeiBan(const CWeiBan&) = delete;
    CWeiBan& operator=(const CWeiBan&) = delete;
    virtual ~CWeiBan();  // leaves the plates alone

    void SetData(CGridDataBase* db, CTvoFrameBase* frame);
    // Enters lines to start walks from: once each, and only those that CanJionWeiBan accepts.
    void AddElement(CGjNetLine* line);
    void AddElement(CArray<CGouJianEx*, CGouJianEx*>* lines);
    void AddElement(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>* lines);
    /// Gets ready for IsCi and the walks.
    void PrepareData();
    /// PrepareData and the walks. Results in m_arrBan and m_arrOuterBan.
    void DoWeiBan();
    /// Non-zero when the line is a thorn. After PrepareData.
    int IsCi(CGouJianEx* line);
    /// The line counts and is no thorn. After PrepareData.
    bool CanBorder(CGjNetLine* line);
    /// Debugging dump of the elements and of the stars without thorns. Silently nothing if the file can't be written.
    void PrintWeiBanData(const char* file);

    CGridDataBase* m_pDataBase = nullptr;  // borrowed
    CTvoFrameBase* m_pFrame = nullptr;     // is told the progress; borrowed, may be null
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapElement;  // lines from which walks start
    CArray<CMianGouJian*> m_arrBan;       // result: plates of the anticlockwise walks; the caller's
    CArray<CMianGouJian*> m_arrOuterBan;  // result: plates of the clockwise walks; the caller's
    /// The thorns that IsCi has named so far, by identity.
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapCi;
    int m_bShowProgress = 1;              // 0: m_pFrame is told nothing

private:
    std::vector<std::uint32_t> m_aElement;  // entries of the elements in m_net, by ascending identity
    std::unique_ptr<CWalkNet> m_net;  // stars without thorns, sides walked; null before PrepareData
};
