// Spacings as people type them: "3600*5;6600*5;9000*2".
#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What may stand in a text of spacings.
struct SpacingRule {
    const char* label;   // of the field, for messages
    double least, most;  // a spacing
    int mostCount;       // of all spacings together
    int leastCount = 1;  // of one unit; 0: "0*0", which gives no spacing, is one too
};

/// So many spacings of one size.
struct SpacingUnit {
    double spacing = 0;
    int count = 1;
};

struct Spacings {
    std::vector<SpacingUnit> units;
    std::string wrong;  // what is wrong and where, for people; empty: nothing

    std::vector<double> All() const;  // each by itself
    double Total() const;
    std::string Text() const;  // the text once more, in its plain form
};

/// Takes a text apart. Units are set apart by ";", a unit is a spacing, or a spacing, "*" and a count.
/// Letters of full width, which Chinese input methods give, and the sign of multiplication stand for the
/// plain ones. With something wrong there are no units. However large the counts, no more work is done than
/// the rule allows.
Spacings ReadSpacings(std::string_view text, const SpacingRule& rule);

/// The number that a text is, blanks around it; nothing for anything else and for what is not finite.
std::optional<double> TypedNumber(std::string_view text);
/// The same for a field with bounds: what is wrong, empty for nothing.
std::string CheckNumber(std::string_view text, const char* label, double least, double most);
/// A number in as few digits as give it back.
std::string NumberText(double value);
std::string NumberText(float value);  // in those of a float: 22.1, not 22.100000381469727
/// Full width letters, blanks and signs of multiplication become plain ones.
std::string HalfWidth(std::string_view text);
