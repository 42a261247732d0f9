// The components of a model in the order of its file.
#pragma once
#include <cstddef>
#include <map>
#include <vector>

class CGouJianEx;
class CGridDataBase;

/// All components by ascending identity, borrowed.
struct ModelContent {
    std::vector<CGouJianEx*> nodes, lines, plates;
    std::map<unsigned char, std::vector<CGouJianEx*>> others;  // by type byte
};

ModelContent ContentOf(CGridDataBase& db);
