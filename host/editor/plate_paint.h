// How plates look in the editor's view.
#pragma once

class CDC;
class CFCoor;
class CTvoHostDataBase;

/// Paints the plates that the view holds below everything else, in dark shades of the colours that they have
/// on paper, and their numbers where these fit. Plates have no picture of their own.
void PaintPlates(CTvoHostDataBase& db, CDC& dc, const CFCoor& coor);
