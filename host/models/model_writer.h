// Saving a model.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class CGridDataBase;
class ModelHost;

struct SavedModel {
    std::size_t nodes = 0, lines = 0, plates = 0, others = 0;
    std::size_t leftOut = 0;  // components of types that the host does not know
    std::uint64_t bytes = 0;
};

/// Writes the model to a file, as DurableFile does, and clears the modified flag. Throws DataFailure with the path and
/// the reason; the file before stands then. Selections are not saved.
SavedModel SaveModel(const std::string& path, CGridDataBase& db, const ModelHost& host, bool sync = true);

/// Per type byte in use the highest sequence number handed out, ascending.
std::vector<std::pair<std::uint32_t, std::uint32_t>> CountersOf(CGridDataBase& db);
