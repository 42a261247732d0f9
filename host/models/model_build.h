// A model built from what a file holds.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/models/model_format.h"

class CGridDataBase;
class ModelHost;
struct ModelPlan;

struct BuiltModel {
    std::size_t nodes = 0, lines = 0, plates = 0, others = 0;  // in the model now
    std::size_t unresolvedPlates = 0;  // left out: a line of their border is missing, or it does not close
    std::size_t unresolvedOthers = 0;  // left out: what they hang on is missing
    std::vector<std::string> leftOut;  // the first kMostNamed of these, by what people call them
    bool hostDataRead = true;

    static constexpr std::size_t kMostNamed = 20;

    /// What was left out, as a sentence for people; empty when nothing was.
    std::string Remarks() const;
};

/// Puts what was planned in the place of the model that stands in the data base: components with their storeys, stars,
/// index and display lists, counters of identities, net tolerance, current storey. Neither undo nor modified flag know
/// of it afterwards. Switches of the session stay as they are. Without a header the defaults stand for it. Should memory
/// run out, the data base is empty.
BuiltModel BuildModel(ModelPlan& plan, const std::optional<ModelHeader>& header, CGridDataBase& db, const ModelHost& host);

/// Frees all components with the undo log, and leaves the switches of the session as they are.
void EmptyModel(CGridDataBase& db);

/// Opens a model file. Throws DataFailure with the path, the section, the byte and the reason when anything is wrong
/// with it; the model in the data base stands untouched then. Plates that don't resolve are no reason, but counted.
BuiltModel OpenModel(const std::string& path, CGridDataBase& db, const ModelHost& host);
