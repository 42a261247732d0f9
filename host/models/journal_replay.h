// Base and steps of a journal, made into the bytes of a model file.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "host/models/journal_format.h"
#include "host/models/model_sections.h"

/// The file that SaveModel would have written after the last of the steps. The base is a model file; null for
/// none.
std::string ReplaySteps(const ModelFile* base, const std::vector<JournalStep>& steps);
