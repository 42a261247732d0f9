// A window with all that lies in it, as one picture.
#pragma once
#include <memory>

class CSurface;
class CWindowSystem;
class CWnd;

/// What the user sees of a window, each child in its place, later ones upon earlier ones. Edit controls,
/// which the system draws by itself, stand there as black text on white.
std::shared_ptr<CSurface> PictureOfWindow(const CWindowSystem& system, const CWnd& window);
