// The order that an exchange sort gives, ties included, in n log n.
#pragma once
#include <vector>

/// The plain procedure: each element in turn is compared with every later one and swapped when strictly
/// greater. It is not stable, and callers see which of several equal keys comes first. Element k of the
/// result is the index of the element that ends up at place k.
std::vector<int> ExchangeSortOrder(const std::vector<float>& keys);
