// JSON as tvo prints it: one object a line, keys in the order of writing, floats with 9 significant digits.
#pragma once
#include <nlohmann/json.hpp>
#include <ostream>

using Json = nlohmann::ordered_json;

/// A number that prints with at most 9 significant digits, which tell any two floats apart. NaN and infinity
/// become null, minus zero becomes zero.
Json JsonNumber(double value);

/// Writes one object and the end of the line. Bytes that are not UTF-8 come out as U+FFFD.
void PrintJsonLine(std::ostream& out, const Json& object);
