// A model as text, to look at and to compare.
#pragma once
#include <cstddef>
#include <string>

class CGridDataBase;

struct TextTally {
    std::size_t nodes = 0, lines = 0, plates = 0;
    std::size_t leftOut = 0;  // written: plates of which a line is gone; read: plates that could not be resolved
};

/// Writes the blocks of all nodes, lines and plates by ascending identity, numbers in GBK and ASCII alike. Lines that
/// begin with ; are comments. Throws DataFailure; the file before stands then.
TextTally SaveModelText(const std::string& path, CGridDataBase& db);

/// Reads such blocks into an empty model. The places of nodes don't come back: the reader of a node's block scans no
/// coordinates, and all nodes lie at (0, 0). Throws DataFailure with the byte when a block makes no sense, and when the
/// model isn't empty; it is empty afterwards.
TextTally LoadModelText(const std::string& path, CGridDataBase& db);
