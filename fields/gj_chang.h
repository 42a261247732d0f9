// CGjChang: a field as a component of the model.
#pragma once
#include <cstdint>

#include "model/goujian.h"
#include "platform/canvas/dc.h"
#include "platform/string.h"

class CChang;

/// How a field is shown. Any value but the first two acts as digits.
enum FIELD_DISPLAY : int { FIELD_DISPLAY_CLOUD = 0, FIELD_DISPLAY_ISOLINE = 1, FIELD_DISPLAY_DIGIT = 2 };

/// Shows a CChang in the view as a colour cloud, as isolines or as digits, with a colour ruler in the view's
/// top left corner. Isolines and digits stand in the display list; the cloud is a bitmap, made once and
/// stretched from then on, and its list holds only a locator. Works without a view: then the bitmaps are made
/// when the component is painted.
///
/// A field is not stored with the model: the four functions for that do nothing and report success.
class CGjChang : public CGouJianEx {
public:
    CGjChang();
    CGjChang(const CGjChang&) = delete;
    CGjChang& operator=(const CGjChang&) = delete;

    ~CGjChang() override;
    void On_set_m_byteStatus(unsigned char) override {}
    int IsPhysicalGouJian() override { return 1; }
    CFRect GetFrect() override { return m_rect; }
    void OnCalcParameters() override;
    int HitTest(const CFRegion&, int) override { return 1; }
    int HitTest(const CFRect&, int) override { return IsVisable(); }
    int IndexHitTest(const CFRect&, int) override { return IsVisable(); }
    int DrawGraph(CDrawGraph* graph) override;
    /// Nothing for a cloud. Normal: the colour that belongs to the part's number in m_arrColor.
    void GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) override;
    /// Paints the cloud, if that is shown, and the ruler.
    int Draw(CDC* dc, CFCoor* coor) override;
    /// Makes bitmaps and display list anew; without a view the display list alone.
    int ReGen(CTvoViewMgr* mgr) override;
    int SaveData(std::FILE*) override { return 1; }
    int LoadData(std::FILE*) override { return 1; }
    int WriteBinary(std::FILE*) override { return 1; }
    int ReadBinary(std::FILE*) override { return 1; }

    void SetDisplayType(FIELD_DISPLAY display) { m_nDisplay = display; }
    /// Switches the picture and has it shown; the view may be null.
    void DisplayChang(CTvoViewMgr* mgr, FIELD_DISPLAY display);

    // --- the pictures ---
    void GenerateCloudGraph(CDC* dc, CFCoor* coor);  // puts the cloud on `dc`
    void CreateCloudBitmap(CDC* dc, CFCoor* coor);
    /// A zoom does not make the cloud anew: it is stretched.
    int NeedRecreateBitmap(float) { return 0; }
    void GenerateIsolineGraph(CDrawGraph* graph);
    void GenerateDigitGraph(CDrawGraph* graph);
    void DrawGrid(CDrawGraph* graph);   // the triangles
    void DrawValue(CDrawGraph* graph);  // the values at the nodes

    // For hosts that show fields in space; nothing here.
    void Show3dViewOptionDlg() {}
    void Close3dViewOptionDlg() {}

    CChang* m_pChang = nullptr;     // the field
    int m_bOwnChang = 0;            // the destructor deletes it
    int m_bShowCoord = 0;           // DrawValue adds the coordinates
    int m_bDrawGrid = 0;            // the triangles too
    int m_bDrawValue = 0;           // the values at the nodes too
    float m_fCoordScale = 1000.0f;  // model units per unit of the field's coordinates
    int m_nColorScheme = 1;         // given to the field before colours are taken
    CFPoint m_ptAnchor;             // lower left point of the bitmap, model units
    CFRect m_rect;                  // the field's box, model units
    float m_fValueScale =
        -1000.0f;  // of values shown; negative on purpose: a deflection is told downwards, in mm
    FIELD_DISPLAY m_nDisplay = FIELD_DISPLAY_CLOUD;  // the present picture
    CDC m_dcCloud;                                   // holds the cloud
    CDC m_dcRuler;                                   // holds the ruler
    int m_nBitmapWidth = 0;                          // of the cloud, pixels
    int m_nBitmapHeight = 0;
    float m_fBitmapScale = 1.0f;  // the view's scale when it was made
    int m_bBitmapMade = 0;        // there is a cloud
    int m_bRulerDirty = 1;        // the ruler must be made anew
    int m_nRulerWidth = 200;      // pixels
    int m_nRulerHeight = 500;
    CArray<std::int32_t> m_arrColor;  // colour of each colour index of the display list

private:
    void CreateScaleRuler(CDC* dc, CFCoor* coor);
    void DrawScaleRuler(CDC* dc, CFCoor* coor);
    void LevelColor(float value);  // appends to m_arrColor
};
