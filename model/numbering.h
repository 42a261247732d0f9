// The order in which components get their numbers.
#pragma once
#include <cstdint>
#include <vector>

/// The point by which a component is put in order.
struct SortPoint {
    float x, y;
};

/// Orders points for numbering; element k of the result is the index of the point with number k + 1.
///
/// `byRows` numbers by rows: the lowest row first, points being in one row when their y differ by no more
/// than `tolerance`, and from small to large x within a row. Else by columns: from small to large x, exactly
/// equal x making a column, and by y within it.
std::vector<std::int32_t> NumberingOrder(const std::vector<SortPoint>& points, bool byRows, float tolerance);
