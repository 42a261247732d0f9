// The positions of the background grid on one axis, ready for painting.
#pragma once
#include <string>
#include <vector>

/// Running sums from an origin: one position more than there are spacings. Sums may leave the range of
/// floats.
struct GridPositions {
    /// Those of a text of spacings, as CBackgrnd reads it.
    GridPositions(const char* text, float origin);

    std::string text;              // what they were made from
    float origin;                  // the first
    float last;                    // the end of the sums
    std::vector<float> ascending;  // the finite ones, repeated ones as often as they come
    std::vector<float> wild;       // infinities and NaNs, in the order of the sums

    bool MadeFrom(const char* fromText, float fromOrigin) const;
    /// The wild ones, each kind once.
    std::vector<float> WildKinds() const;
};
